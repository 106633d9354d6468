"""The reader of guides against small ones, the maker of sources, and the runner with programs of the shell."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
import make_sources  # noqa: E402
from guide_blocks import commands_of, read_guide  # noqa: E402
from run_guide import Trial  # noqa: E402


class Guides(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = Path(temporary.name)

    def guide(self, text):
        path = self.folder / "guide.md"
        path.write_text(text, encoding="utf-8")
        return path

    def kinds(self, text):
        blocks, problems = read_guide(self.guide(text))
        return [(block.kind, block.name) for block in blocks], [problem.split("guide.md:")[1] for problem in problems]

    def trial(self, text, **programs):
        """The problems of a guide whose programs are scripts of the shell."""
        bin_folder = self.folder / "bin"
        bin_folder.mkdir()
        for name, script in programs.items():
            (bin_folder / name).write_text("#!/bin/sh\n" + script, encoding="utf-8")
            (bin_folder / name).chmod(0o755)
        scratch = self.folder / "scratch"
        scratch.mkdir()
        trial = Trial(self.guide(text), bin_folder, bin_folder, scratch)
        trial.run_all()
        return trial.problems


class Reading(Guides):
    def test_every_kind_of_block_is_known(self):
        kinds, problems = self.kinds("```cpp\n// a_b.cpp: does it\nint main() {}\n```\nprints\n```text\n1\n```\n"
                                     "<!-- in: host -->\n```cpp\nx();\n```\n"
                                     "<!-- file: d/a.cfg -->\n```config\n<a>\n```\n"
                                     "```sh\nxum\n```\n<!-- not run: no compiler -->\n```sh\nc++\n```\n")
        self.assertEqual(kinds, [("program", "a_b"), ("output", "a_b"), ("fragment", "host"), ("file", "d/a.cfg"),
                                 ("commands", ""), ("left out", "no compiler")])
        self.assertEqual(problems, [])

    def test_what_nobody_tries_is_a_problem(self):
        for text in ("```cpp\nint a;\n```\n", "```text\na\n```\n", "```glsl\nx\n```\n", "```\na\n```\n",
                     "```cpp {.wide}\n// a.cpp\n", "<!-- file: ../a -->\n```text\n```\n", "```cpp\n```\n",
                     "<!-- not run: dull -->\n```cpp\n// a.cpp\n```\n"):
            with self.subTest(text=text):
                self.assertEqual(len(self.kinds(text)[1]), 1)

    def test_a_problem_names_its_line(self):
        self.assertTrue(self.kinds("a\n\n```glsl\nx\n```\n")[1][0].startswith("3: "))

    def test_a_text_belongs_to_the_block_above_alone(self):
        self.assertEqual(len(self.kinds("```cpp\n// a.cpp\n```\n```sh\nxum\n```\n```text\n1\n```\n")[1]), 1)

    def test_commands_come_with_their_output_and_status(self):
        blocks, _ = read_guide(self.guide("```sh\n$ a b\nc\n$ d\n(exit status 2)\n```\n```sh\n# why\ne\n```\n"))
        commands = [commands_of(block) for block in blocks]
        self.assertEqual([(c.text, c.output, c.status, c.line) for c in commands[0]],
                         [("a b", "c\n", 0, 2), ("d", "", 2, 4)])
        self.assertEqual([(c.text, c.output, c.status) for c in commands[1]], [("e", None, 0)])


class Sources(Guides):
    def make(self, text):
        out = self.folder / "out"
        make_sources.main(out, [self.guide(text)])
        return out

    def test_programs_and_fragments_know_their_lines(self):
        out = self.make("x\n```cpp\n// a.cpp\nint main() {}\n```\n<!-- in: scope -->\n```cpp\nint b;\n```\n")
        self.assertEqual((out / "a.cpp").read_text(), '#line 3 "docs/guide/guide.md"\n// a.cpp\nint main() {}\n')
        self.assertIn('#line 8 "docs/guide/guide.md"\nint b;\n', (out / "guide_fragments.cpp").read_text())
        self.assertEqual((out / "blocks.cmake").read_text(),
                         "set(guide_programs a)\nset(guides_with_fragments guide)\n")

    def test_an_unknown_frame_does_not_compile(self):
        out = self.make("<!-- in: nowhere -->\n```cpp\nint b;\n```\n")
        self.assertIn("#error", (out / "guide_fragments.cpp").read_text())

    def test_what_stays_the_same_is_not_written(self):
        text = "```cpp\n// a.cpp\n```\n"
        before = (self.make(text) / "a.cpp").stat().st_mtime_ns
        self.assertEqual((self.make(text) / "a.cpp").stat().st_mtime_ns, before)


class Running(Guides):
    def test_a_guide_that_is_right_has_no_problem(self):
        self.assertEqual(self.trial("```cpp\n// a.cpp\n```\n```text\nhello\n```\n"
                                    "<!-- file: d/f -->\n```text\nin it\n```\n"
                                    "```sh\n$ cat d/f\nin it\n$ b\n(exit status 3)\n```\n```sh\nb || true\n```\n",
                                    a="echo hello", b="exit 3"), [])

    def test_each_difference_is_told(self):
        program = "```cpp\n// a.cpp\n```\n"
        cases = [
            (program + "```text\nhello\n```\n", "echo hallo", "+hallo"),
            (program, "echo hello", "+hello"),
            (program, "echo why >&2; exit 1", "a ends with 1: why"),
            (program, "echo WARNING: odd > log.txt", "WARNING: odd"),
            ("```sh\n$ a\nhello\n```\n", "echo hallo", "+hallo"),
            ("```sh\n$ a\n```\n", "exit 1", "'a' ends with 1"),
            ("```sh\na\n```\n", "exit 1", "'a' ends with 1"),
            ("```sh\n$ a\n(exit status 1)\n```\n", "exit 0", "'a' ends with 0"),
            ("```glsl\n```\n", "", "nobody tries"),
        ]
        for text, script, expected in cases:
            with self.subTest(text=text, script=script):
                self.setUp()
                problems = self.trial(text, a=script)
                self.assertEqual(len(problems), 1)
                self.assertIn(expected, problems[0])

    def test_only_programs_that_take_arguments_get_one(self):
        self.assertEqual(self.trial("```cpp\n// a.cpp\nint main(int argc, char** argv)\n```\n```text\n1 3\n```\n"
                                    "```cpp\n// b.cpp\nint main()\n```\n```text\n0\n```\n",
                                    a='echo "$#" "$1"', b='echo "$#"'), [])


if __name__ == "__main__":
    unittest.main()
