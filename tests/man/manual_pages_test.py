#!/usr/bin/env python3
"""Compares the manual pages with what the programs' --help prints, checks their form, and tries their examples.

In the section EXAMPLES the blocks between ".Bd -literal" and ".Ed" are tried, those of a page in one shell and in one
folder, where "data" is the data directory. A line that begins with "$ " is a command, with the lines of its here
document; it must succeed, and print what follows it up to the next command. Times such as "0.11 s" may differ.
Commands that wait for somebody stand outside of such blocks.
"""

import argparse
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "ENVIRONMENT", "FILES", "EXIT STATUS", "EXAMPLES", "SEE ALSO"]
COMMANDS = ["config", "font", "lisp", "map", "mesh", "pack"]
# What mandoc finds that is meant so: the foot of a page names the engine, and the pages are not installed yet.
ACCEPTED = re.compile(r"operating system explicitly specified|referenced manual not found|mandoc\.db lacks")
options = None


class Help:
    """What a program says of one of its commands."""

    def __init__(self, program, *command):
        done = subprocess.run([program, *command, "--help"], text=True, check=True, stdout=subprocess.PIPE)
        self.text = done.stdout
        self.subcommands = [line.split()[0] for line in self.part("Subcommands")]
        self.positionals = {line.split()[0].upper() for line in self.part("Positionals")}
        self.arguments = {}  # of options by their names; None for an option that takes none
        for line in self.part("Options"):
            names, argument = re.match(r"(\S+)(?: (?!Excludes|Needs)([A-Z][^ :]*))?", line).groups()
            for name in names.split(","):
                self.arguments[name] = argument

    def part(self, title):
        """Its lines that begin something; descriptions go on further right."""
        found = re.search(rf"^{title}:\n((?:  .*\n)+)", self.text, re.MULTILINE)
        return [line.strip() for line in found[1].splitlines() if re.match(r"  \S", line)] if found else []

    def exit_statuses(self):
        text = self.text[self.text.index("Exit status:"):]
        return set(re.findall(r"^  (\d+) ", text, re.MULTILINE) or re.findall(r"\b(\d) (?:when|for)\b", text))


class Page:
    """A page's source."""

    def __init__(self, path):
        self.path = path
        self.name = path.stem
        self.text = path.read_text(encoding="utf-8")
        parts = re.split(r"^\.Sh (.*)\n", self.text, flags=re.MULTILINE)
        self.sections = dict(zip(parts[1::2], parts[2::2]))
        self.titles = parts[1::2]

    def synopsis(self):
        """Options and arguments by command, "" for the program itself."""
        commands = {}
        for form in re.split(r"^\.Nm.*\n", self.sections["SYNOPSIS"], flags=re.MULTILINE)[1:]:
            command = re.search(r"^\.Cm (\w+)", form, re.MULTILINE)
            flags, positionals = commands.setdefault(command[1] if command else "", (set(), set()))
            for line in macro_lines(form):
                flags.update(flags_of(line))
                if "Fl" not in line:
                    positionals.update(word for word in arguments_of(line) if word.isupper())
        return commands

    def options(self):
        """The arguments of the options that the section describes."""
        described = {}
        for line in macro_lines(self.sections["OPTIONS"]):
            if line[:2] == ["It", "Fl"]:
                for form in " ".join(line[1:]).split(" , "):
                    words = form.split()
                    described[flags_of(words)[0]] = words[3] if "Ar" in words else None
        return described

    def commands(self):
        """Those that the description lists, with their arguments."""
        lines = macro_lines(self.sections["DESCRIPTION"])
        return {line[2]: set(arguments_of(line)) for line in lines if line[:2] == ["It", "Cm"]}

    def exit_statuses(self):
        return set(re.findall(r"^\.It (\d+)$", self.sections["EXIT STATUS"], re.MULTILINE))

    def examples(self):
        """Each command with what it prints."""
        found = []
        for block in re.findall(r"^\.Bd -literal.*\n((?:.*\n)*?)\.Ed$", self.sections["EXAMPLES"], re.MULTILINE):
            end = None  # of a here document
            for line in plain(block).splitlines():
                if end:
                    found[-1][0] += "\n" + line
                    end = None if line == end else end
                elif line.startswith("$ "):
                    found.append([line[2:], ""])
                    document = re.search(r"<<'(\w+)'", line)
                    end = document[1] if document else None
                else:
                    found[-1][1] += line + "\n"
        return found


def plain(text):
    """Without the escapes of the pages."""
    return text.replace("\\&", "").replace("\\(dq", '"').replace("\\-", "-").replace("\\e", "\\")


def macro_lines(text):
    """The words of each line that is no text."""
    return [line[1:].split() for line in text.splitlines() if line.startswith(".")]


def flags_of(line):
    return ["-" + after for word, after in zip(line, line[1:]) if word == "Fl"]


def arguments_of(line):
    """The words behind "Ar"."""
    found = []
    for i, word in enumerate(line):
        if word == "Ar":
            for after in line[i + 1:]:
                if not re.fullmatch(r"[A-Za-z][A-Za-z.]{2,}|IN|[A-Z]", after):
                    break
                found.append(after)
    return found


def without_times(text):
    return re.sub(r"\d+\.\d\d s$", "N s", text, flags=re.MULTILINE)


class ManualPages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        names = [path.name for path in (CHECKOUT / "docs" / "man").glob("*.1.in")]
        cls.known = {name[:-len(".1.in")] for name in names}
        cls.pages = [Page(path) for path in sorted(options.pages.glob("*.1"))]
        cls.helps = {page.name: cls.helps_of(page.name) for page in cls.pages}

    @staticmethod
    def helps_of(name):
        """By the command's name within the page, "" for that of the page itself."""
        if name in ("xum-game", "xum-editor"):
            return {"": Help(options.programs / name)}
        program = options.programs / "xum"
        if name == "xum":
            return {"": Help(program)}
        command = name[len("xum-"):]
        own = Help(program, command)
        return {"": own, **{sub: Help(program, command, sub) for sub in own.subcommands}}

    def options_of(self, page):
        return {name: argument for text in self.helps[page.name].values() for name, argument in text.arguments.items()}

    def test_each_program_and_command_has_a_page(self):
        names = {page.name for page in self.pages}
        self.assertLessEqual({"xum", *(f"xum-{command}" for command in COMMANDS)}, names)
        self.assertEqual(self.helps["xum"][""].subcommands, COMMANDS)
        for program in ("xum-game", "xum-editor"):
            self.assertEqual(program in names, (options.programs / program).exists(), program)

    def test_pages_have_their_sections_version_and_date(self):
        for page in self.pages:
            with self.subTest(page.name):
                self.assertEqual(page.titles, SECTIONS)
                head = page.text.splitlines()[:3]
                self.assertRegex(head[0], r"^\.Dd [A-Z][a-z]+ \d+, \d{4}$")
                self.assertEqual(head[1:], [f".Dt {page.name.upper()} 1", f".Os xum-engine {options.version}"])
                self.assertNotIn("@", page.text)

    def test_synopses_name_exactly_what_help_does(self):
        for page in self.pages:
            with self.subTest(page.name):
                synopsis = page.synopsis()
                for command, text in self.helps[page.name].items():
                    if command == "" and text.subcommands and not text.positionals:
                        continue  # nothing happens without a subcommand
                    flags, positionals = synopsis[command]
                    self.assertEqual(self.one_name_each(flags, text), self.one_name_each(text.arguments, text), command)
                    self.assertEqual(positionals, text.positionals, command)
                if page.name != "xum":
                    self.assertLessEqual(set(synopsis), set(self.helps[page.name]))

    @staticmethod
    def one_name_each(flags, text):
        """Without --help, which every command has; an option may be named by any of its names."""
        assert all(flag in text.arguments for flag in flags), f"{flags} against {list(text.arguments)}"
        return {flag for flag in flags if flag not in ("-h", "--help")}

    def test_options_are_described_with_their_arguments(self):
        for page in self.pages:
            with self.subTest(page.name):
                self.assertEqual(page.options(), self.options_of(page))

    def test_descriptions_list_the_commands(self):
        for page in self.pages:
            with self.subTest(page.name):
                listed = page.commands()
                own, *_ = self.helps[page.name].values()
                self.assertEqual(set(listed), set(own.subcommands))
                for command, text in list(self.helps[page.name].items())[1:]:
                    self.assertEqual(listed[command], text.positionals, command)

    def test_no_page_names_an_option_that_does_not_exist(self):
        everything = {name for page in self.pages for name in self.options_of(page)}
        for page in self.pages:
            with self.subTest(page.name):
                named = {flag for line in macro_lines(page.text) for flag in flags_of(line)}
                self.assertLessEqual(named, set(self.options_of(page)))
                self.assertLessEqual(set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", plain(page.text))), everything)

    def test_exit_statuses_are_those_of_help(self):
        for page in self.pages:
            with self.subTest(page.name):
                for text in self.helps[page.name].values():
                    self.assertEqual(page.exit_statuses(), text.exit_statuses())

    def test_pages_refer_to_pages_that_exist(self):
        for page in self.pages:
            with self.subTest(page.name):
                referred = set(re.findall(r"^\.Xr (xum\S*) 1", page.text, re.MULTILINE))
                self.assertLessEqual(referred, self.known - {page.name})

    def test_pages_are_well_formed(self):
        if not shutil.which("mandoc"):
            self.skipTest("there is no mandoc")
        for page in self.pages:
            with self.subTest(page.name):
                done = subprocess.run(["mandoc", "-T", "lint", page.path], text=True, stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT)
                self.assertEqual([line for line in done.stdout.splitlines() if not ACCEPTED.search(line)], [])

    def test_groff_has_nothing_to_say(self):
        if not shutil.which("groff"):
            self.skipTest("there is no groff")
        for page in self.pages:
            with self.subTest(page.name):
                done = subprocess.run(["groff", "-mandoc", "-Tutf8", "-ww", "-Z", page.path], text=True,
                                      stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
                self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_examples_do_what_is_shown(self):
        for page in self.pages:
            with self.subTest(page.name):
                examples = page.examples()
                self.assertGreater(len(examples), 0)
                with tempfile.TemporaryDirectory(prefix="xum manual ") as folder:
                    results = self.try_commands(examples, Path(folder))
                    for (command, expected), (status, output) in zip(examples, results):
                        self.assertEqual((status, without_times(output)), (0, without_times(expected)), command)

    @staticmethod
    def try_commands(examples, folder):
        """The status and the output of each."""
        (folder / "data").symlink_to(CHECKOUT / "data")
        script = "".join(f"{command}\nprintf '\\001%s\\002' $?\n" for command, _ in examples)
        kept = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "XUM_"))}
        environment = {**kept, "HOME": str(folder), "LC_ALL": "C.UTF-8", "LIBGL_ALWAYS_SOFTWARE": "1",
                       "PATH": f"{options.programs}:{os.environ['PATH']}", "XUM_DATA_ROOT": str(folder / "data"),
                       "XUM_MESSAGE_BOXES": "0"}
        done = subprocess.run(["sh", "-c", script], cwd=folder, env=environment, text=True, encoding="utf-8",
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=100)
        results = [(int(status), output) for output, status in re.findall(r"([^\1]*?)\001(\d+)\002", done.stdout)]
        assert len(results) == len(examples), f"{shlex.quote(script)} ended early:\n{done.stdout}"
        return results


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--pages", required=True, type=Path, help="where the pages are, ready to be installed")
    parser.add_argument("--programs", required=True, type=Path, help="where the programs are")
    parser.add_argument("--version", required=True, help="that of the engine")
    options, rest = parser.parse_known_args()
    options.programs = options.programs.resolve()
    unittest.main(argv=[sys.argv[0], *rest])
