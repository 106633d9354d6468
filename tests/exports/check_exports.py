#!/usr/bin/env python3
"""Compares what the shared library exports with a committed list: nothing becomes public, or ceases to be, unnoticed."""

import argparse
import re
import subprocess
import sys
from pathlib import Path

LINKER_MARKS = {"__bss_start", "_edata", "_end"}
# Every C++ library exports the instantiations of the standard library that its compiler did not inline.
WEAK_KINDS = {"V", "W"}
STANDARD_LIBRARY = re.compile(r"(^|[ *&])(std|__gnu_cxx)::")
# The first keeps the library loaded for ever, so that opening it again finds its old state; the second runs code while
# the library is being loaded.
REFUSED_KINDS = {"u": "unique", "i": "indirect"}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def read_symbols(*command):
    """(kind, name) of each exported symbol."""
    return [tuple(line.split(maxsplit=2)[1:]) for line in run(*command, "--dynamic", "--defined-only").splitlines()]


def is_ours(kind, name):
    head = name.partition("(")[0]
    return name not in LINKER_MARKS and not (kind in WEAK_KINDS and STANDARD_LIBRARY.search(head))


def find_broken_rules(symbols, dynamic_section, soname):
    rules = [f"{name} is {REFUSED_KINDS[kind]}" for kind, name in symbols if kind in REFUSED_KINDS]
    if any(name == "error" for _, name in symbols):
        rules.append('"error" has C linkage: it would replace the C library\'s for the whole process')
    if f"[{soname}]" not in dynamic_section:
        rules.append(f"the library is not named {soname}")
    return rules


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--library", required=True)
    parser.add_argument("--list", required=True, type=Path)
    parser.add_argument("--soname", required=True)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--renew", action="store_true", help="write the list instead of comparing with it")
    options = parser.parse_args()

    symbols = read_symbols(options.nm, options.library)
    readable = read_symbols(options.nm, "--demangle", options.library)
    # Several constructors of one class differ in their mangled names only.
    found = sorted({name for kind, name in readable if is_ours(kind, name)})
    if options.renew:
        options.list.write_text("\n".join(found) + "\n", encoding="utf-8")
        return 0

    problems = find_broken_rules(symbols, run(options.readelf, "--dynamic", options.library), options.soname)
    expected = options.list.read_text(encoding="utf-8").splitlines()
    problems += [f"is exported, but not listed: {name}" for name in found if name not in expected]
    problems += [f"is listed, but not exported: {name}" for name in expected if name not in found]
    print(*problems, sep="\n")
    if problems:
        print("When a change of the exported symbols is meant, the build target update-exports renews", options.list)
    print(f"{len(found)} exported symbols, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
