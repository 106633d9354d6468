"""The code blocks of a guide, and what each of them is for.

A block begins with three backticks and a language. An HTML comment on the line above may say what it is:

    cpp                        a program, whose first line is a comment that begins with its name, "// NAME.cpp"
    cpp   <!-- in: FRAME -->   part of a program; tests/guide/frames/FRAME.cpp.in is the rest
    text                       behind a program: what that prints, all of it
    sh                         commands. Where some lines begin with "$ " these are the commands, and the lines below
                               each are what it prints; "(exit status N)" ends the output of one that is to fail
    sh    <!-- not run: WHY -->
    any   <!-- file: NAME -->  a file for the programs and commands below

Anything else is a problem: no block is left untried.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

FENCE = re.compile(r"^```(\w*)$")
MARK = re.compile(r"^<!-- ([a-z ]+): (.+) -->$")
PROGRAM_NAME = re.compile(r"^// ([a-z][a-z0-9_]*)\.cpp\b")
FILE_NAME = re.compile(r"^[\w.-]+(/[\w.-]+)*$")


@dataclass
class Block:
    kind: str  # "program", "fragment", "output", "commands", "left out" or "file"
    name: str  # of the program, the frame or the file; why it is left out
    line: int  # the number of the first line, counted from 1
    lines: list = field(default_factory=list)

    def text(self):
        return "".join(line + "\n" for line in self.lines)


def read_guide(path):
    """The blocks of a guide in order, and a line for each problem."""
    lines = Path(path).read_text(encoding="utf-8").split("\n")
    blocks, problems = [], []
    at = 0
    while at < len(lines):
        fence = FENCE.match(lines[at])
        if not fence:
            if lines[at].startswith("```"):
                problems.append(f"{path}:{at + 1}: a block without an end, or with more than a language behind its "
                                "backticks")
            at += 1
            continue
        end = at + 1
        while end < len(lines) and lines[end] != "```":
            end += 1
        mark = MARK.match(lines[at - 1]) if at > 0 else None
        contents = lines[at + 1:end]
        block = classify(fence[1], mark.groups() if mark else None, contents, blocks[-1] if blocks else None)
        if isinstance(block, str):
            problems.append(f"{path}:{at + 1}: {block}")
            blocks.append(Block("unknown", "", at + 2, contents))
        else:
            block.line, block.lines = at + 2, contents
            blocks.append(block)
        at = end + 1
    return blocks, problems


def classify(language, mark, contents, previous):
    """The block without its lines, or what is wrong with it."""
    if mark and mark[0] == "file":
        if not FILE_NAME.match(mark[1]) or ".." in mark[1]:
            return f"'{mark[1]}' is no name for a file"
        return Block("file", mark[1], 0)
    if language == "cpp":
        if mark and mark[0] == "in":
            return Block("fragment", mark[1], 0)
        name = PROGRAM_NAME.match(contents[0]) if contents else None
        if name and not mark:
            return Block("program", name[1], 0)
        return ("C++ that is neither a program (\"// NAME.cpp\" in its first line) nor in a frame "
                "(\"<!-- in: FRAME -->\")")
    if language == "text" and not mark:
        if previous and previous.kind == "program":
            return Block("output", previous.name, 0)
        return "a text that is neither the output of a program above it nor a file (\"<!-- file: NAME -->\")"
    if language == "sh":
        if mark and mark[0] == "not run":
            return Block("left out", mark[1], 0)
        if not mark:
            return Block("commands", "", 0)
    return f"a block of the language '{language}' that nobody tries"


@dataclass
class Command:
    text: str
    line: int
    output: str = None  # None where the guide does not show it
    status: int = 0


def commands_of(block):
    """The commands of a block of them."""
    if not any(line.startswith("$ ") for line in block.lines):
        return [Command(line, block.line + i) for i, line in enumerate(block.lines) if line and line[0] != "#"]
    commands = []
    for i, line in enumerate(block.lines):
        failure = re.match(r"^\(exit status (\d+)\)$", line)
        if line.startswith("$ "):
            commands.append(Command(line[2:], block.line + i, ""))
        elif failure and commands:
            commands[-1].status = int(failure[1])
        elif commands:
            commands[-1].output += line + "\n"
    return commands
