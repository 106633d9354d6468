#!/usr/bin/env python3
"""Makes the reference of the public headers with Doxygen, and sees to it that nothing a host can use is left out.

Usage: make_reference.py --version VERSION --output DIRECTORY HEADER...

The pages are in DIRECTORY/html, what a check can read in DIRECTORY/xml and DIRECTORY/tags.xml. What lies there from an
earlier run is removed. Returns 1 when something is not documented or Doxygen warns of something else, 77 when there is
no Doxygen.
"""

import argparse
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
PAGES = ["docs/reference/main_page.md", "docs/conventions.md"]
SKIPPED = 77


def quote(path):
    return '"' + str(path).replace('"', '\\"') + '"'


def run_doxygen(headers, version, output, more=""):
    """Doxygen's warnings, with the names of files as they are in the checkout."""
    names = [str(Path(header).resolve().relative_to(CHECKOUT)) for header in headers]
    settings = (CHECKOUT / "docs/reference/Doxyfile").read_text(encoding="utf-8") + f"""
PROJECT_NUMBER = {version}
INPUT = {" ".join(map(quote, PAGES + names))}
OUTPUT_DIRECTORY = {quote(output)}
GENERATE_TAGFILE = {quote(output / "tags.xml")}
STRIP_FROM_PATH = {quote(CHECKOUT)}
STRIP_FROM_INC_PATH = {quote(CHECKOUT)}
{more}"""
    result = subprocess.run(["doxygen", "-"], cwd=CHECKOUT, input=settings, capture_output=True, text=True, check=False)
    warnings = [line.replace(f"{CHECKOUT}/", "") for line in result.stderr.splitlines() if line.strip()]
    if result.returncode != 0 and not warnings:
        warnings.append(f"doxygen returned {result.returncode}")
    return warnings


def is_documented(element):
    return any("".join(element.find(part).itertext()).strip() for part in ("briefdescription", "detaileddescription"))


def find_silent_gaps(xml):
    """What Doxygen leaves out or bare without a warning: enumerators, and all of a file without a comment of its own."""
    problems = []
    for path in sorted(xml.glob("*.xml")):
        compound = ElementTree.parse(path).getroot().find("compounddef")
        if compound is None:
            continue
        members = compound.findall("sectiondef/memberdef")
        if compound.get("kind") == "file" and members and not is_documented(compound):
            problems.append(f"{compound.find('location').get('file')}: has no @file comment: what it declares outside "
                            "of classes is not in the reference")
        if compound.get("kind") == "namespace" and not is_documented(compound):
            problems.append(f"{compound.find('location').get('file')}: the namespace "
                            f"{compound.findtext('compoundname')} is not documented")
        for member in members:
            location = member.find("location")
            problems += [f"{location.get('file')}:{location.get('line')}: the enumerator {value.findtext('name')} is not "
                         "documented" for value in member.findall("enumvalue") if not is_documented(value)]
            if member.get("kind") == "enum" and not is_documented(member):
                problems.append(f"{location.get('file')}:{location.get('line')}: the enumeration "
                                f"{member.findtext('name')} is not documented")
    return sorted(set(problems))


def make_reference(headers, version, output):
    """Problems, as lines of text; none when all is well."""
    for part in ("html", "xml"):
        shutil.rmtree(output / part, ignore_errors=True)
    output.mkdir(parents=True, exist_ok=True)
    warnings = run_doxygen(headers, version, output)
    return warnings + find_silent_gaps(output / "xml")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--version", required=True, help="of the engine")
    parser.add_argument("--output", required=True, type=Path)
    parser.add_argument("headers", nargs="+", metavar="HEADER")
    options = parser.parse_args()
    if shutil.which("doxygen") is None:
        print("doxygen is not installed (Debian: doxygen)")
        return SKIPPED
    problems = make_reference(options.headers, options.version, options.output.resolve())
    print(*problems, sep="\n" if problems else "")
    print(f"{len(options.headers)} headers, {len(problems)} problems: {options.output / 'html' / 'index.html'}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
