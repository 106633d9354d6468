"""The checker of links against small sets of documents."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
import check_links  # noqa: E402


class Links(unittest.TestCase):
    def problems(self, **documents):
        """Of documents by name, without '.md'; '__' in a name stands for '/'."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in documents.items():
                path = Path(folder) / (name.replace("__", "/") + ".md")
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return check_links.check(Path(folder))

    def test_files_and_headings_are_found(self):
        self.assertEqual(self.problems(
            a="[b](docs/b.md) [part](docs/b.md#its-part) [self](#a-1) [far](https://example.org/x) [dir](docs)\n"
              "# A\n# A\n",
            docs__b="[a](../a.md) [![picture](b.md)](../a.md#a)\n## Its part\n"), [])

    def test_what_leads_nowhere_is_told(self):
        cases = {"[x](b.md)": "there is no b.md", "[x](#b)": "no heading #b", "[x](a.md#b)": "no heading #b",
                 "![x](b.png)": "there is no b.png", "[x](/etc)": "out of the project", "[x](../..)": "out of the",
                 "| [`x`](y) |": "there is no y"}
        for text, expected in cases.items():
            with self.subTest(text=text):
                problems = self.problems(a="one\n" + text + "\n")
                self.assertEqual(len(problems), 1)
                self.assertTrue(problems[0].startswith("a.md:2: "))
                self.assertIn(expected, problems[0])

    def test_code_holds_no_links_and_no_headings(self):
        self.assertEqual(self.problems(a="`[x](b)` and\n```cpp\n[x](b)\n```\n    [x](b)\n"), [])
        self.assertEqual(len(self.problems(a="[x](#b)\n```sh\n# b\n```\n")), 1)

    def test_headings_are_named_by_their_words(self):
        for heading, anchor in {"## The `xum` tool": "the-xum-tool", "# A, b and C!": "a-b-and-c",
                                "### `string-size`": "string-size", "# See [this](a.md) one": "see-this-one"}.items():
            with self.subTest(heading=heading):
                self.assertEqual(self.problems(a=f"[x](#{anchor})\n{heading}\n"), [])

    def test_build_folders_are_left_out(self):
        self.assertEqual(self.problems(build__a="[x](b)"), [])


if __name__ == "__main__":
    unittest.main()
