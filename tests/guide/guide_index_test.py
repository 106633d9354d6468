"""docs/guide/README.md leaves out no guide and no public header."""

import re
import unittest
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
GUIDES = CHECKOUT / "docs" / "guide"
INDEX = (GUIDES / "README.md").read_text(encoding="utf-8")


class Index(unittest.TestCase):
    def test_names_every_guide(self):
        self.assertEqual({path.name for path in GUIDES.glob("*.md")} - {"README.md"},
                         set(re.findall(r"\(([a-z_]+\.md)\)", INDEX)))

    def test_names_every_public_header_once(self):
        headers = re.findall(r"#include <xum/(.*)>", (CHECKOUT / "xum" / "xum.h").read_text(encoding="utf-8"))
        self.assertEqual(sorted(re.findall(r"`((?:[a-z]+)/[a-z_]+\.h)`", INDEX)), sorted(headers))

    def test_each_header_is_at_home_in_the_guide_that_is_named(self):
        """A guide names at least one class or function of each header that the index lists for it."""
        for row in INDEX.splitlines():
            guides = re.findall(r"\(([a-z_]+\.md)\)", row)
            for header in re.findall(r"`((?:[a-z]+)/[a-z_]+\.h)`", row):
                text = "".join((GUIDES / guide).read_text(encoding="utf-8") for guide in guides)
                with self.subTest(header=header):
                    self.assertTrue(any(re.search(rf"\b{name}\b", text) for name in names_in(header)), names_in(header))

    def test_every_frame_is_used(self):
        marks = {mark for guide in GUIDES.glob("*.md")
                 for mark in re.findall(r"(?m)^<!-- in: (.*) -->$", guide.read_text(encoding="utf-8"))}
        frames = (CHECKOUT / "tests" / "guide" / "frames").iterdir()
        self.assertEqual({path.name for path in frames}, {f"{mark}.cpp.in" for mark in marks})

    def test_every_guide_has_a_program_and_a_sensible_length(self):
        for guide in GUIDES.glob("*.md"):
            text = guide.read_text(encoding="utf-8")
            if guide.name == "README.md":
                continue
            with self.subTest(guide=guide.name):
                self.assertRegex(text, r"(?m)^```cpp\n// [a-z0-9_]+\.cpp")
                self.assertLessEqual(text.count("\n"), 220)


def names_in(header):
    """The classes, structures, namespaces, types and functions that a header declares."""
    text = (CHECKOUT / "xum" / header).read_text(encoding="utf-8")
    return (re.findall(r"(?m)^(?:class|struct|namespace|enum class) (?:XUM_API )?(\w+)(?=[ :]*[:{])", text)
            + re.findall(r"(?m)^(?:\[\[noreturn\]\] )?XUM_API .*?(\w+)\(", text)
            + re.findall(r"(?m)^(?:class|struct) XUM_API (\w+)", text) + re.findall(r"(?m)^using (\w+) =", text))


if __name__ == "__main__":
    unittest.main()
