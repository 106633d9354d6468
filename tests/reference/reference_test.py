#!/usr/bin/env python3
"""Makes the reference of the public headers in a temporary folder: it warns of nothing, has no gap, and every exported
symbol is in it. Then small trees with one mistake each, to see that it is found."""

import argparse
import re
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(CHECKOUT / "docs" / "reference"))
from make_reference import SKIPPED, has_doxygen, make_reference, read_compounds, run_doxygen  # noqa: E402

TYPE_MARK = re.compile(r"^(?:typeinfo name|typeinfo|vtable|VTT) for (.*)")
options = None


def count_parameters(text):
    """Of what stands between the parentheses."""
    depth = 0
    commas = 0
    for character in text:
        depth += (character in "(<[{") - (character in ")>]}")
        commas += character == "," and depth == 0
    return commas + 1 if text.strip() not in ("", "void") else 0


def find_opening(text, end):
    """Of the parenthesis that closes at `end`."""
    depth = 0
    for at in range(end, -1, -1):
        depth += (text[at] == ")") - (text[at] == "(")
        if depth == 0:
            return at
    raise ValueError(text)


def without_template_arguments(name):
    head, operator, rest = name.partition("operator")
    return re.sub(r"\s*<[^<>]*>", "", head) + operator + rest


def parse_symbol(line):
    """(name, number of parameters) of a readable symbol; the number is None for a type and for a C function."""
    mark = TYPE_MARK.match(line)
    end = line.rfind(")")
    if mark is not None or end < 0:
        return (mark.group(1) if mark is not None else line, None)
    start = find_opening(line, end)
    name = re.sub(r"\[abi:\w+\]", "", line[:start])
    return without_template_arguments(name), count_parameters(line[start + 1:end])


def matches(symbol, declaration):
    return symbol[0] == declaration[0] and None in (symbol[1], declaration[1]) or symbol == declaration


class Declarations:
    """What the public headers declare, private members included."""

    def __init__(self, xml):
        self.are_private = {}
        for compound in read_compounds(xml):
            kind = compound.get("kind")
            scope = "" if kind == "file" else without_template_arguments(compound.findtext("compoundname"))
            is_private = compound.get("prot") == "private"
            if kind in ("class", "struct"):
                self.add((scope, None), is_private)
            for member in compound.findall("sectiondef/memberdef"):
                if member.get("kind") not in ("function", "variable"):
                    continue
                name = "::".join(filter(None, (scope, member.findtext("name").replace("operator ", "operator"))))
                self.add((name, len(member.findall("param"))), is_private or member.get("prot") == "private")

    def add(self, declaration, is_private):
        self.are_private.setdefault(declaration, []).append(is_private)

    def find(self, symbol):
        """Whether each declaration that the symbol can belong to is private; empty when there is none."""
        return [one for declaration, flags in self.are_private.items() if matches(symbol, declaration) for one in flags]


def read_tags(path):
    """What has a place in the pages."""
    tags = set()
    for compound in ElementTree.parse(path).getroot().findall("compound"):
        kind = compound.get("kind")
        scope = "" if kind == "file" else without_template_arguments(compound.findtext("name"))
        if kind in ("class", "struct"):
            tags.add((scope, None))
        for member in compound.findall("member"):
            arguments = member.findtext("arglist") or ""
            name = "::".join(filter(None, (scope, member.findtext("name").replace("operator ", "operator"))))
            if "(" in arguments:
                end = arguments.rfind(")")
                tags.add((name, count_parameters(arguments[find_opening(arguments, end) + 1:end])))
    return tags


def is_destructor(name):
    return "::~" in name


class Reference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory(prefix="xum-reference-")
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = Path(temporary.name)
        cls.problems = make_reference(options.headers, options.version, cls.folder, cls.folder)

    def test_everything_is_documented_and_nothing_is_warned_of(self):
        self.assertEqual(self.problems, [])

    def test_every_exported_symbol_is_in_it(self):
        everything = self.folder / "everything"
        run_doxygen(CHECKOUT, [str(Path(header).relative_to(CHECKOUT)) for header in options.headers], {
            "OUTPUT_DIRECTORY": everything, "GENERATE_HTML": "NO", "EXTRACT_ALL": "YES", "EXTRACT_PRIVATE": "YES",
            "USE_MDFILE_AS_MAINPAGE": "", "EXCLUDE_SYMBOLS": "", "WARNINGS": "NO", "WARN_AS_ERROR": "NO"})
        declarations = Declarations(everything / "xml")
        tags = read_tags(self.folder / "tags.xml")
        problems = []
        count = 0
        for line in options.exports.read_text(encoding="utf-8").splitlines():
            symbol = parse_symbol(line)
            if is_destructor(symbol[0]):
                symbol = (symbol[0].rpartition("::")[0], None)
            are_private = declarations.find(symbol)
            if not are_private:
                problems.append(f"no public header declares {line}")
            elif not all(are_private):
                count += 1
                if not any(matches(symbol, tag) for tag in tags):
                    problems.append(f"not in the reference: {line}")
        self.assertEqual(problems, [])
        self.assertGreater(count, 200)

    def test_the_pages_do_not_depend_on_the_machine(self):
        texts = [path for path in (self.folder / "html").rglob("*") if path.suffix in (".html", ".js")]
        self.assertGreater(len(texts), 200)
        found = [path.name for path in texts for text in [path.read_text(encoding="utf-8")]
                 if str(CHECKOUT) in text or str(self.folder) in text]
        self.assertEqual(found, [])

    def test_the_first_page_leads_to_the_others(self):
        text = (self.folder / "html" / "index.html").read_text(encoding="utf-8")
        for page in ("classEngine.html", "classRenderDevice.html", "md_docs_conventions.html", "log_8h.html"):
            self.assertIn(f'href="{page}', text)


HEADER = """#pragma once

/// @file
/// What this is about.

/// Something.
class XUM_API Thing {
public:
    /// A member.
    int member();

    ~Thing();

protected:
    int value; ///< a value

private:
    int hidden();
};

/// Kinds of things.
enum class Kind : int {
    Small = 0, ///< a small one
    Large = 1, ///< a large one
};

/// A place for names.
namespace Names {
/// Names.
enum : int {
    First = 1, ///< the first
};
}

/// A function.
XUM_API Thing* makeThing();
"""


class Gaps(unittest.TestCase):
    def problems(self, text):
        with tempfile.TemporaryDirectory(prefix="xum-reference-") as folder:
            tree = Path(folder).resolve()
            (tree / "docs" / "reference").mkdir(parents=True)
            (tree / "docs" / "reference" / "main_page.md").write_text("# Main\n", encoding="utf-8")
            (tree / "docs" / "conventions.md").write_text("# Conventions\n", encoding="utf-8")
            (tree / "xum").mkdir()
            (tree / "xum" / "thing.h").write_text(text, encoding="utf-8")
            return make_reference([tree / "xum" / "thing.h"], "1", tree / "out", tree / "details", tree)

    def assertFound(self, part, what):
        self.assertIn(part, HEADER)
        problems = self.problems(HEADER.replace(part, ""))
        self.assertNotEqual(problems, [])
        for problem in problems:
            self.assertRegex(problem, what)
            self.assertRegex(problem, "^xum/thing.h:")

    def test_a_complete_header_has_none(self):
        self.assertEqual(self.problems(HEADER), [])

    def test_a_class(self):
        self.assertFound("/// Something.\n", "Thing is not documented")

    def test_a_member(self):
        self.assertFound("    /// A member.\n", "member.* is not documented")

    def test_a_protected_member(self):
        self.assertFound(" ///< a value", "value.* is not documented")

    def test_a_function(self):
        self.assertFound("/// A function.\n", "makeThing.* is not documented")

    def test_an_enumeration(self):
        self.assertFound("/// Kinds of things.\n", "Kind.* is not documented|no comment on the enumeration Kind")

    def test_an_enumerator(self):
        self.assertFound(" ///< a large one", "no comment on the enumerator Large")

    def test_an_enumeration_without_a_name(self):
        self.assertFound("/// Names.\n", "no comment on the enumeration")

    def test_an_enumerator_of_an_enumeration_without_a_name(self):
        self.assertFound(" ///< the first", "no comment on the enumerator First")

    def test_a_namespace(self):
        self.assertFound("/// A place for names.\n", "no comment on the namespace Names")

    def test_a_file_whose_functions_would_be_lost(self):
        self.assertFound("/// @file\n/// What this is about.\n", "no @file comment")

    def test_a_mistake_in_a_comment(self):
        problems = self.problems(HEADER.replace("/// A function.", "/// A @ref nowhere."))
        self.assertRegex(" ".join(problems), "nowhere")


class Symbols(unittest.TestCase):
    def test_names_and_numbers_of_parameters(self):
        for line, expected in {
            "initEngine": ("initEngine", None),
            "typeinfo name for Window": ("Window", None),
            "BSP::calculateLeafArray()": ("BSP::calculateLeafArray", 0),
            "defaultDataRoot[abi:cxx11]()": ("defaultDataRoot", 0),
            "Image::FreePixels::operator()(Pixel*) const": ("Image::FreePixels::operator()", 1),
            "operator<<(std::ostream&, Fixed const&)": ("operator<<", 2),
            "Terrain::modify(std::function<Vector3<float> (int, int)> const&, int)": ("Terrain::modify", 2),
            "File<std::ifstream>::getSize()": ("File::getSize", 0),
        }.items():
            self.assertEqual(parse_symbol(line), expected)


def main():
    global options
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--version", required=True)
    parser.add_argument("--exports", required=True, type=Path)
    parser.add_argument("headers", nargs="+")
    options = parser.parse_args()
    if not has_doxygen():
        return SKIPPED
    return 0 if unittest.main(argv=sys.argv[:1], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
