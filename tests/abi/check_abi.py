#!/usr/bin/env python3
"""Compares the binary interface of the built library with the one that was agreed on.

Usage: check_abi.py --library FILE --reference FILE.xz [--renew]

abidw describes what hosts see: exported symbols and, through the public headers, the layout of their types and the slots
of their virtual functions. abidiff says what became different. An addition is no problem, anything else is: a host that
was compiled before would break. --renew makes the reference anew, for a change that is meant and is in CHANGELOG.md.
"""

import argparse
import lzma
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
ABI_INCOMPATIBLE = 8  # a bit of abidiff's status
ABI_CHANGE = 4
SKIPPED = 77


def describe(library, description):
    headers = CHECKOUT / "xum"
    subprocess.run(["abidw", "--headers-dir", headers, "--drop-private-types", "--exported-interfaces-only",
                    "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--type-id-style", "hash",
                    "--out-file", description, library], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--library", required=True, type=Path)
    parser.add_argument("--reference", required=True, type=Path)
    parser.add_argument("--renew", action="store_true")
    options = parser.parse_args()
    if shutil.which("abidw") is None:
        print("abidw is not installed (Debian: abigail-tools)")
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="xum abi ") as folder:
        description = Path(folder) / "now.abi"
        describe(options.library, description)
        if options.renew:
            options.reference.write_bytes(lzma.compress(description.read_bytes(), preset=9))
            return 0
        reference = Path(folder) / "agreed.abi"
        reference.write_bytes(lzma.decompress(options.reference.read_bytes()))
        compared = subprocess.run(["abidiff", "--no-added-syms", reference, description], text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    print(compared.stdout, end="")
    if compared.returncode & ~(ABI_CHANGE | ABI_INCOMPATIBLE):
        print("abidiff failed")
        return 1
    if compared.returncode != 0:
        print("When this change of the binary interface is meant, the build target update-abi renews", options.reference)
    return 1 if compared.returncode != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
