#!/usr/bin/env python3
"""Compares the binary interface of the built library with the one that was agreed on.

Usage: check_abi.py --library FILE --compiler FILE --references FOLDER [--renew]

Two descriptions are compared with their references. abidw describes the library: its exported functions and the types
that these take and give. And it describes the classes of the public headers, as a host sees them: where their members
lie and which place each virtual function has. For that a small library is compiled that takes a pointer to each of
them: the interfaces of devices come from no exported function, so the first description knows little about them.
abidiff says what became different. An addition is no problem, anything else is: a host that was compiled before would
break. --renew makes the references anew, for a change that is meant and is in CHANGELOG.md.
"""

import argparse
import lzma
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(CHECKOUT / "tests" / "abi"))
from check_slots import public_classes  # noqa: E402

HEADERS = CHECKOUT / "xum"
# What stands for the parameter of a template that is not made for numbers.
ARGUMENTS = {"File": "std::ifstream", "BaseList": "BSPMesh", "BaseListNode": "BSPMesh"}
SKIPPED = 77


def describe(library, description, *options):
    subprocess.run(["abidw", "--headers-dir", HEADERS, "--drop-private-types", "--no-corpus-path", "--no-comp-dir-path",
                    "--no-show-locs", "--type-id-style", "hash", *options, "--out-file", description, library],
                   check=True)


def compile_interfaces(compiler, folder):
    """A library with a function for each class of the public headers, which takes a pointer to it."""
    source = folder / "interfaces.cpp"
    lines = ["#include <xum/xum.h>"]
    for found in public_classes(HEADERS):
        arguments = f"<{ARGUMENTS.get(found.name, 'float')}>" if found.template else ""
        # The keyword tells the type Polygon from a function of a system's; a template goes without.
        keyword = "" if found.template else "class "
        lines.append(f'extern "C" void see{found.name}({keyword}{found.name}{arguments}*) {{}}')
    source.write_text("\n".join(lines) + "\n", encoding="utf-8")
    library = folder / "libinterfaces.so"
    # All of each class is written down, also where another file would hold it.
    subprocess.run([compiler, "-std=c++17", "-g", "-O0", "-femit-class-debug-always", "-shared", "-fPIC",
                    f"-I{CHECKOUT}", source, "-o", library], check=True)
    return library


def differs(agreed, description, folder):
    reference = folder / "agreed.abi"
    reference.write_bytes(lzma.decompress(agreed.read_bytes()))
    # The status is a set of bits; any of them is a reason to look.
    compared = subprocess.run(["abidiff", "--no-added-syms", reference, description], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if compared.returncode == 0:
        return False
    print(compared.stdout)
    print(f"When this change of the binary interface is meant, the build target update-abi renews {agreed}")
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--library", required=True, type=Path)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--references", required=True, type=Path)
    parser.add_argument("--renew", action="store_true")
    options = parser.parse_args()
    if shutil.which("abidw") is None:
        print("abidw is not installed (Debian: abigail-tools)")
        return SKIPPED
    result = 0
    with tempfile.TemporaryDirectory(prefix="xum abi ") as name:
        folder = Path(name)
        library_description = folder / "library.abi"
        describe(options.library, library_description, "--exported-interfaces-only")
        interface_description = folder / "interfaces.abi"
        describe(compile_interfaces(options.compiler, folder), interface_description)
        for agreed, description in ((options.references / "xum-engine.abi.xz", library_description),
                                    (options.references / "interfaces.abi.xz", interface_description)):
            if options.renew:
                agreed.write_bytes(lzma.compress(description.read_bytes(), preset=9))
            elif differs(agreed, description, folder):
                result = 1
    return result


if __name__ == "__main__":
    sys.exit(main())
