#!/usr/bin/env python3
"""Unpacks the ZIP for Windows where a user might, and uses it as one: runs the programs, builds a host and runs that.

Usage: under-wine FOLDER try_package.py FILE.zip
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
CHECKOUT = HERE.parents[1]
HOST = CHECKOUT / "tests" / "package" / "host"
REQUIRED = ["bin/xum-engine.dll", "bin/xum.exe", "bin/xum-game.exe", "bin/xum-editor.exe", "bin/SDL2.dll",
            "bin/libstdc++-6.dll", "lib/libxum-engine.dll.a", "include/xum/xum.h", "share/xum-engine/lisp/game.lisp",
            "share/licenses/SDL2/LICENSE.txt", "share/licenses/gcc/copyright"]
archive = None


def run(*command, folder, status=0):
    """What the program prints. A Windows program runs under Wine, through its runner."""
    command = [str(part) for part in command]
    if command[0].endswith(".exe"):
        command.insert(0, str(HERE / "wine-run"))
    environment = {name: value for name, value in os.environ.items() if name != "XUM_DATA_ROOT"}
    done = subprocess.run(command, cwd=folder, env=environment, encoding="utf-8", errors="replace",
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != status:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class WindowsPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory(prefix="xum windows ")
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = Path(temporary.name) / "Größe 1"  # a blank, and letters of the code page
        cls.folder.mkdir()
        with zipfile.ZipFile(archive) as opened:
            opened.extractall(cls.folder)
        (cls.root,) = cls.folder.iterdir()
        cls.bin = cls.root / "bin"

    def test_it_holds_programs_headers_import_library_data_and_notices(self):
        for name in REQUIRED:
            self.assertTrue((self.root / name).is_file(), name)

    def test_what_was_missing_would_be_noticed(self):
        folder = self.folder / "incomplete"
        shutil.copytree(self.bin, folder)
        (folder / "SDL2_ttf.dll").unlink()
        self.assertIn("SDL2_ttf.dll, which neither", run(HERE / "check_imports.py", folder, folder=self.folder, status=1))

    def test_the_tool_runs(self):
        self.assertEqual(run(self.bin / "xum.exe", "--version", folder=self.folder).strip(), "xum 0.1.0")
        self.assertEqual(run(self.bin / "xum.exe", "lisp", "-e", "(+ 1 2)", folder=self.folder).strip(),
                         ":integer (3)")

    def test_the_tool_takes_names_with_letters_of_the_code_page(self):
        work = self.folder / "Bücher"
        work.mkdir()
        (work / "ä.txt").write_text("packed")
        run(self.bin / "xum.exe", "pack", "create", "é.xum", "Bücher", folder=self.folder)
        self.assertIn("ä.txt", run(self.bin / "xum.exe", "pack", "list", "é.xum", folder=self.folder))

    def test_the_game_draws_a_frame(self):
        picture = self.folder / "picture.bmp"
        run(self.bin / "xum-game.exe", "--frames", "3", "--size", "320x200", "--screenshot", "picture.bmp",
            folder=self.folder)
        self.assertEqual(picture.read_bytes()[:2], b"BM")
        self.assertGreater(len(set(picture.read_bytes()[54:])), 100, "the picture is all of a few colours")

    def test_the_editor_starts(self):
        self.assertIn("--play", run(self.bin / "xum-editor.exe", "--help", folder=self.folder))

    def test_a_host_of_ones_own_is_built_and_runs(self):
        build = self.folder / "host"
        run("cmake", "-S", HOST, "-B", build, "-G", "Ninja", f"-DCMAKE_TOOLCHAIN_FILE={HERE / 'toolchain.cmake'}",
            f"-Dxum-engine_DIR={self.root}/lib/cmake/xum-engine", folder=self.folder)
        run("cmake", "--build", build, folder=self.folder)
        shutil.copy(build / "host.exe", self.bin)
        version, data_root = run(self.bin / "host.exe", folder=self.folder).splitlines()
        self.assertEqual(version, "xum-engine 0.1 (build 0001)")
        self.assertTrue(data_root.endswith("/share/xum-engine/"), data_root)


if __name__ == "__main__":
    archive = Path(sys.argv.pop()).resolve()
    unittest.main()
