#!/usr/bin/env python3
"""Tries a guide from top to bottom in an empty folder: makes its files, runs its programs and its commands, and
compares what they print.

run_guide.py GUIDE --programs FOLDER --path FOLDER

A program that takes arguments gets the number 3, of frames: without it, it would run until its window is closed.
"""

import argparse
import difflib
import os
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
from guide_blocks import commands_of, read_guide  # noqa: E402

CHECKOUT = Path(__file__).resolve().parents[2]
SECONDS = 60


def environment(tool_folder):
    """Neither display nor sound card; `xum` and the data are found."""
    return {**os.environ, "XUM_DATA_ROOT": f"{CHECKOUT / 'data'}/",
            "SDL_VIDEODRIVER": "offscreen", "SDL_AUDIODRIVER": "dummy", "LIBGL_ALWAYS_SOFTWARE": "1",
            "XUM_MESSAGE_BOXES": "0", "LC_ALL": "C.UTF-8", "PATH": f"{tool_folder}{os.pathsep}{os.environ['PATH']}"}


class Trial:
    def __init__(self, guide, programs, tool_folder, folder):
        self.guide = guide
        self.programs = programs
        self.folder = folder
        self.environment = environment(tool_folder)
        self.problems = []

    def report(self, line, text):
        self.problems.append(f"{self.guide}:{line}: {text}")

    def compare(self, line, shown, printed):
        if shown == printed:
            return
        difference = difflib.unified_diff(shown.splitlines(), printed.splitlines(), "shown", "printed", lineterm="")
        self.report(line, "prints something else\n" + "\n".join(difference))

    def run(self, command, errors):
        """Status and output. A command that does not end counts as failed."""
        try:
            done = subprocess.run(command, cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=errors, timeout=SECONDS)
        except subprocess.TimeoutExpired:
            return -1, f"still running after {SECONDS} seconds\n", ""
        return done.returncode, done.stdout.decode(errors="replace"), (done.stderr or b"").decode(errors="replace")

    def run_program(self, block, shown):
        """`shown` is the block of its output, if there is one."""
        log = self.folder / "log.txt"
        log.unlink(missing_ok=True)
        arguments = ["3"] if "int argc" in block.text() else []
        status, printed, complaints = self.run([str(self.programs / block.name), *arguments], subprocess.PIPE)
        if status != 0:
            self.report(block.line, f"{block.name} ends with {status}: {printed}{complaints}")
            return
        self.compare(shown.line if shown else block.line, shown.text() if shown else "", printed)
        reports = [line for line in log.read_text(errors="replace").splitlines() if line[:5] in ("WARNI", "ERROR")] \
            if log.is_file() else []
        if reports and "warning(" not in block.text():
            self.report(block.line, f"{block.name} leaves in its log: {reports}")

    def run_commands(self, block):
        for command in commands_of(block):
            status, printed, _ = self.run(["sh", "-c", command.text], subprocess.STDOUT)
            if status != command.status:
                self.report(command.line, f"'{command.text}' ends with {status}:\n{printed}")
            elif command.output is not None:
                self.compare(command.line, command.output, printed)

    def run_all(self):
        blocks, problems = read_guide(self.guide)
        self.problems += problems
        for block, following in zip(blocks, blocks[1:] + [None]):
            if block.kind == "file":
                path = self.folder / block.name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(block.text(), encoding="utf-8")
            elif block.kind == "program":
                self.run_program(block, following if following and following.kind == "output" else None)
            elif block.kind == "commands":
                self.run_commands(block)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("guide", type=Path)
    parser.add_argument("--programs", type=Path, required=True)
    parser.add_argument("--path", type=Path, required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="xum-guide-") as folder:
        trial = Trial(options.guide, options.programs.resolve(), options.path.resolve(), Path(folder))
        trial.run_all()
    for problem in trial.problems:
        print(problem)
    return 1 if trial.problems else 0


if __name__ == "__main__":
    sys.exit(main())
