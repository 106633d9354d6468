#!/usr/bin/env python3
"""Installs the current build into a temporary folder and uses it as others do: through CMake, pkg-config and dlopen."""

import argparse
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parents[2]
HERE = CHECKOUT / "tests" / "package"
sys.path.insert(0, str(CHECKOUT / "tools"))
from check_includes import listed_headers  # noqa: E402

VERSION = "xum-engine 0.1 (build 0001)"
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wsign-conversion", "-Wold-style-cast", "-Werror"]
options = None


def environment(**more):
    """Neither display nor sound card, and none of the settings that would lead a host to this checkout."""
    kept = {name: value for name, value in os.environ.items() if name not in ("XUM_DATA_ROOT", "LD_LIBRARY_PATH")}
    headless = {"SDL_VIDEODRIVER": "offscreen", "SDL_AUDIODRIVER": "dummy", "XUM_MESSAGE_BOXES": "0"}
    return {**kept, **headless, **{name: str(value) for name, value in more.items()}}


def run(*command, folder=None, **variables):
    """Runs the command in the folder and returns what it prints."""
    command = [str(part) for part in command]
    done = subprocess.run(command, cwd=folder, env=environment(**variables), text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0:
        raise AssertionError(f"{shlex.join(command)} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory(prefix="xum package ")
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = Path(temporary.name)
        cls.prefix = cls.folder / "installed"
        run(options.cmake, "--install", options.build, "--prefix", cls.prefix)

    def work_folder(self):
        folder = self.folder / self._testMethodName
        folder.mkdir()
        return folder

    def library(self, prefix):
        return prefix / options.library_directory / "libxum-engine.so.0.1"

    def configure(self, source, build, *settings):
        return run(options.cmake, "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={options.cxx}",
                   f"-DCMAKE_CXX_COMPILER_LAUNCHER={options.launcher}", *settings)

    def build_host_with_cmake(self, prefix, build):
        self.configure(HERE / "host", build, f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_CXX_FLAGS={options.flags}")
        run(options.cmake, "--build", build)
        return build / "host"

    def assertHostFindsData(self, output, data_root):
        version, found = output.splitlines()[:2]
        self.assertEqual(version, VERSION)
        if not options.compiled_data_root.is_dir():  # else an installation on this machine comes first
            self.assertEqual(found, f"{data_root}/")

    def test_a_host_finds_the_installed_library_with_cmake(self):
        host = self.build_host_with_cmake(self.prefix, self.work_folder())
        self.assertHostFindsData(run(host, folder=host.parent), self.prefix / "share" / "xum-engine")

    def test_an_installation_can_be_moved(self):
        folder = self.work_folder()
        moved = folder / "moved here"
        shutil.copytree(self.prefix, moved, symlinks=True)
        host = self.build_host_with_cmake(moved, folder / "build")
        self.assertHostFindsData(run(host, folder=folder), moved / "share" / "xum-engine")

        moved_again = folder / "and there"
        moved.rename(moved_again)
        output = run(host, folder=folder, LD_LIBRARY_PATH=self.library(moved_again).parent)
        self.assertHostFindsData(output, moved_again / "share" / "xum-engine")

    def test_a_host_finds_the_installed_library_with_pkg_config(self):
        folder = self.work_folder()
        search_path = self.library(self.prefix).parent / "pkgconfig"
        flags = run("pkg-config", "--cflags", "--libs", "xum-engine", PKG_CONFIG_PATH=search_path)
        run(options.cxx, "-std=c++17", *STRICT, *shlex.split(options.flags), HERE / "host" / "main.cpp", "-o", "host",
            *shlex.split(flags), folder=folder)
        output = run(folder / "host", folder=folder, LD_LIBRARY_PATH=self.library(self.prefix).parent)
        self.assertHostFindsData(output, self.prefix / "share" / "xum-engine")
        self.assertEqual(run("pkg-config", "--modversion", "xum-engine", PKG_CONFIG_PATH=search_path).strip(), "0.1.0")

    def test_a_c_program_opens_the_library_by_path_and_by_name(self):
        folder = self.work_folder()
        run(options.cc, "-std=c11", "-Wall", "-Wextra", "-Wpedantic", "-Werror", *shlex.split(options.flags),
            HERE / "opener" / "opener.c", "-o", "opener", "-ldl", folder=folder)
        unloads = [] if options.unloads else ["--stays-loaded"]
        library = self.library(self.prefix)
        # The game engine leaves its devices to the end of the process, and OpenGL drivers keep something, too.
        run(folder / "opener", library, *unloads, folder=folder, ASAN_OPTIONS="detect_leaks=0")
        # The name alone, which the system looks up as it does for programs that are linked.
        run(folder / "opener", library.name, *unloads, folder=folder, ASAN_OPTIONS="detect_leaks=0",
            LD_LIBRARY_PATH=library.parent)

    def test_a_host_of_another_compiler_shares_types_and_exceptions_with_the_library(self):
        compiler = "clang++" if "clang" not in options.cxx else "g++"
        if shutil.which(compiler) is None:
            self.skipTest(f"{compiler} is not installed")
        if options.flags:
            self.skipTest("the sanitizers of two compilers do not go together")
        folder = self.work_folder()
        library = self.library(self.prefix)
        run(compiler, "-std=c++17", *STRICT, f"-I{self.prefix / 'include'}", HERE / "second_compiler" / "main.cpp",
            "-o", "host", library, folder=folder)
        output = run(folder / "host", folder=folder, LD_LIBRARY_PATH=library.parent)
        self.assertEqual(output.splitlines()[-1], "all is well")

    def test_exactly_the_public_headers_are_installed(self):
        include = self.prefix / "include" / "xum"
        installed = {path.relative_to(include).as_posix() for path in include.rglob("*") if path.is_file()}
        public, _ = listed_headers(CHECKOUT)
        self.assertEqual(installed, public)

    def test_the_installed_game_runs(self):
        if not options.game:
            self.skipTest("the game was not built")
        game = self.prefix / "bin" / "xum-game"
        self.assertIn("--screenshot", run(game, "--help", folder=self.work_folder()))

    def test_a_project_that_adds_the_sources_builds_the_library_alone(self):
        if not options.builds_as_subdirectory:
            self.skipTest("the same sources without sanitizers: the other builds cover it")
        build = self.work_folder()
        self.configure(HERE / "parent", build, f"-DXUM_CHECKOUT={CHECKOUT}")
        run(options.cmake, "--build", build)
        self.assertHostFindsData(run(build / "host", folder=build), build / "engine" / "share" / "xum-engine")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--cc", required=True)
    parser.add_argument("--cxx", required=True)
    parser.add_argument("--launcher", default="")
    parser.add_argument("--flags", default="", help="what every program that uses the library is compiled with")
    parser.add_argument("--build", required=True)
    parser.add_argument("--library-directory", required=True)
    parser.add_argument("--compiled-data-root", required=True, type=Path)
    parser.add_argument("--unloads", action="store_true", help="closing the library unloads it")
    parser.add_argument("--builds-as-subdirectory", action="store_true")
    parser.add_argument("--game", action="store_true", help="the game is installed, too")
    options, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
