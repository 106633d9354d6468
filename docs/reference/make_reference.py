#!/usr/bin/env python3
"""Makes the reference of the public headers with Doxygen, and sees to it that nothing a host can use is left out.

Usage: make_reference.py --version VERSION --output DIRECTORY HEADER...

The pages are in DIRECTORY/html; those of an earlier run are removed. Returns 1 when something is not documented or
Doxygen warns of something else, 77 when there is no Doxygen.
"""

import argparse
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
PAGES = ["docs/reference/main_page.md", "docs/conventions.md"]
SKIPPED = 77


def has_doxygen():
    if shutil.which("doxygen") is not None:
        return True
    print("doxygen is not installed (Debian: doxygen)")
    return False


def quote(path):
    return '"' + str(path).replace('"', '\\"') + '"'


def run_doxygen(checkout, inputs, settings):
    """Doxygen's warnings, with the names of files as they are in the checkout. Later settings win over the Doxyfile."""
    all_settings = {
        "INPUT": " ".join(map(quote, inputs)),
        "STRIP_FROM_PATH": quote(checkout),
        "STRIP_FROM_INC_PATH": quote(checkout),
        **settings,
    }
    doxyfile = (CHECKOUT / "docs" / "reference" / "Doxyfile").read_text(encoding="utf-8")
    doxyfile += "\n" + "".join(f"{name} = {value}\n" for name, value in all_settings.items())
    done = subprocess.run(["doxygen", "-"], cwd=checkout, input=doxyfile, capture_output=True, text=True, check=False)
    warnings = [line.replace(f"{checkout}/", "") for line in done.stderr.splitlines() if line.strip()]
    if done.returncode != 0 and not warnings:
        warnings.append(f"doxygen returned {done.returncode}")
    return warnings


def read_compounds(xml):
    """The classes, namespaces, files and so on in Doxygen's XML output."""
    for path in sorted(xml.glob("*.xml")):
        compound = ElementTree.parse(path).getroot().find("compounddef")
        if compound is not None:
            yield compound


def is_documented(element):
    return any("".join(element.find(part).itertext()).strip() for part in ("briefdescription", "detaileddescription"))


def find_silent_gaps(xml):
    """What Doxygen leaves out or bare without a warning. What a file without a comment of its own declares outside of
    classes is not in the pages at all."""
    problems = []
    for compound in read_compounds(xml):
        members = compound.findall("sectiondef/memberdef")
        kind = compound.get("kind")
        if not is_documented(compound) and (kind == "namespace" or (kind == "file" and members)):
            name = compound.findtext("compoundname")
            what = "@file comment" if kind == "file" else f"comment on the namespace {name}"
            problems.append(f"{compound.find('location').get('file')}: no {what}")
        for member in members:
            if member.get("kind") != "enum":
                continue
            place = "{file}:{line}".format(**member.find("location").attrib)
            if not is_documented(member):
                problems.append(f"{place}: no comment on the enumeration {member.findtext('name')}")
            problems += [f"{place}: no comment on the enumerator {value.findtext('name')}"
                         for value in member.findall("enumvalue") if not is_documented(value)]
    return sorted(set(problems))  # an enumeration in a namespace is told of twice, there and in its file


def make_reference(headers, version, output, details, checkout=CHECKOUT):
    """Writes the pages into the folder output/html, and what a check can read into the folder details: xml, tags.xml.
    Returns the problems as lines of text; none when all is well."""
    pages = Path(output).resolve() / "html"
    shutil.rmtree(pages, ignore_errors=True)
    pages.mkdir(parents=True)
    names = [str(Path(header).resolve().relative_to(checkout)) for header in headers]
    warnings = run_doxygen(checkout, PAGES + names, {
        "PROJECT_NUMBER": version,
        "OUTPUT_DIRECTORY": quote(details),
        "HTML_OUTPUT": quote(pages),
        "GENERATE_TAGFILE": quote(Path(details) / "tags.xml"),
    })
    return warnings + find_silent_gaps(Path(details) / "xml")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--version", required=True, help="of the engine")
    parser.add_argument("--output", required=True, type=Path)
    parser.add_argument("headers", nargs="+", metavar="HEADER")
    options = parser.parse_args()
    if not has_doxygen():
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="xum-reference-") as details:
        problems = make_reference(options.headers, options.version, options.output, details)
    for problem in problems:
        print(problem)
    print(f"{len(options.headers)} headers, {len(problems)} problems: {options.output / 'html' / 'index.html'}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
