#!/usr/bin/env python3
"""Demands a slot test for each class with virtual functions in the public headers.

Hosts call virtual functions by their place in a table. For each of them a test names its place,
"slotOf(&Engine::update)" or another form with "&Engine::update"; and for each class a test tells how many places its
table has, "placesOf<Engine>()", which no function can be added without changing. A final class has no table that goes
on, and an override keeps the place of what it overrides.

Usage: check_slots.py [--headers FOLDER] [--tests FOLDER] [--list]
"""

import argparse
import re
import sys
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(CHECKOUT / "tools"))
from check_includes import listed_headers  # noqa: E402

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
CLASS = re.compile(r"\b(?<!enum )(?:class|struct)\s+(?:XUM_API\s+)?(\w+)\s*(final)?\s*(?::([^;{(]*))?\{")
TEMPLATE = re.compile(r"\btemplate\s*<[^<>]*>\s*$")
VIRTUAL = re.compile(r"\bvirtual\s+([^;{]*)")
OPERATION = re.compile(r"(~?\w+)\s*\(")


class HeaderClass:
    def __init__(self, header, name, template, final, bases, polymorphic, operations):
        self.header = header
        self.name = name
        self.template = template
        self.final = final
        self.bases = bases
        self.polymorphic = polymorphic  # by its own declarations
        self.operations = operations  # without the destructor and without overrides


def block(text, start):
    """The text from behind an opening brace to the brace that closes it."""
    depth = 1
    for place in range(start, len(text)):
        depth += {"{": 1, "}": -1}.get(text[place], 0)
        if depth == 0:
            return text[start:place]
    raise ValueError("a brace is never closed")


def classes_of(header, text):
    """The classes of a header, without those inside others."""
    text = COMMENT.sub("", text)
    end = 0
    for found in CLASS.finditer(text):
        if found.start() < end:
            continue
        name, final, bases = found.groups()
        body = block(text, found.end())
        end = found.end() + len(body)
        template = TEMPLATE.search(text[:found.start()]) is not None
        declared = [OPERATION.search(declaration) for declaration in VIRTUAL.findall(body)]
        operations = [operation[1] for operation in declared if operation is not None]
        base_names = re.findall(r"\b(?:public|private|protected)\s+(\w+)", bases or "")
        polymorphic = bool(operations) or re.search(r"\boverride\b", body) is not None
        yield HeaderClass(header, name, template, final is not None, base_names, polymorphic,
                          [each for each in operations if not each.startswith("~")])


def public_classes(folder):
    """All classes of the public headers in the folder xum."""
    public, _ = listed_headers(folder.parent)
    return [found for header in sorted(public)
            for found in classes_of(header, (folder / header).read_text(encoding="utf-8"))]


def polymorphic_classes(every):
    """Those that say so themselves, and those that are derived from one of them."""
    known = {found.name for found in every if found.polymorphic}
    grown = True
    while grown:
        derived = {found.name for found in every if known.intersection(found.bases)}
        grown = not derived <= known
        known |= derived
    return [found for found in every if found.name in known]


def problems_of(classes, tests):
    for found in classes:
        place = f"xum/{found.header}: {found.name}"
        if not found.final and not re.search(rf"\bplacesOf<{found.name}\b", tests):
            yield f"{place}: no test tells how many places its table has"
        for operation in found.operations:
            if not re.search(rf"&{found.name}::{operation}\b", tests):
                yield f"{place}: no test names the place of {operation}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--headers", type=Path, default=CHECKOUT / "xum")
    parser.add_argument("--tests", type=Path, default=CHECKOUT / "tests")
    parser.add_argument("--list", action="store_true", help="print what was found, too")
    options = parser.parse_args()
    classes = polymorphic_classes(public_classes(options.headers))
    tests = "".join(COMMENT.sub("", path.read_text(encoding="utf-8"))
                    for path in sorted(options.tests.rglob("*_test.cpp")))
    if options.list:
        for found in classes:
            print(f"{found.name}{' final' if found.final else ''}: {', '.join(found.operations)}")
    problems = list(problems_of(classes, tests))
    for problem in problems:
        print(problem)
    if not classes:
        problems.append("no class was found")
    print(f"{len(classes)} classes with virtual functions, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
