"""The include checker against small trees: good ones pass, and each kind of violation is found and named."""

import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
specification = importlib.util.spec_from_file_location("check_includes", CHECKOUT / "tools" / "check_includes.py")
check_includes = importlib.util.module_from_spec(specification)
specification.loader.exec_module(check_includes)

ROOM_LIST = """xum_room(
    SOURCES
        {sources}
    PUBLIC_HEADERS
        {public}
    PRIVATE_HEADERS
        {private})
"""


class IncludeRules(unittest.TestCase):
    def problems(self, files, private=(), unlisted=()):
        """What the checker says about a tree of {name: [includes]}; includes are written with their brackets."""
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder)
            for name, includes in files.items():
                path = tree / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text("".join(f"#include {target}\n" for target in includes), encoding="utf-8")
            self.write_lists(tree, files, private, unlisted)
            return check_includes.check(tree)

    def write_lists(self, tree, files, private, unlisted):
        headers = [name for name in files if name.startswith("xum/") and name.endswith(".h") and name != "xum/xum.h"]
        for room in {Path(name).parts[1] for name in files if name.startswith("xum/") and name.count("/") > 1}:
            prefix = f"xum/{room}/"
            in_room = [name for name in headers if name.startswith(prefix) and name not in unlisted]
            lists = {
                "sources": "\n".join(name[len(prefix):] for name in files if name.endswith(".cpp")),
                "public": "\n".join(name[len(prefix):] for name in in_room if name not in private),
                "private": "\n".join(name[len(prefix):] for name in in_room if name in private),
            }
            (tree / prefix).mkdir(parents=True, exist_ok=True)
            (tree / prefix / "CMakeLists.txt").write_text(ROOM_LIST.format(**lists), encoding="utf-8")

    def assertOnly(self, problems, *expected):
        self.assertEqual(sorted(problems), sorted(expected))

    def test_lower_layers_and_the_own_room_are_allowed(self):
        problems = self.problems({
            "xum/xum.h": ["<xum/engine/export.h>", "<xum/engine/log.h>", "<xum/geometry/vector.h>",
                          "<xum/geometry/matrix.h>", "<xum/render/image.h>"],
            "xum/engine/export.h": ["<cstdint>"],
            "xum/engine/log.h": ["<xum/engine/export.h>", "<string>"],
            "xum/engine/log.cpp": ["<xum/engine/log.h>", "<stdio.h>"],
            "xum/geometry/vector.h": ["<cmath>"],
            "xum/geometry/matrix.h": ["<xum/geometry/vector.h>", "<xum/engine/export.h>"],
            "xum/render/image.h": ["<xum/engine/export.h>"],
            "xum/render/image.cpp": ["<xum/render/image.h>", "<SDL.h>", "<xum/engine/log.h>",
                                     "<xum/geometry/vector.h>"],
        })
        self.assertOnly(problems)

    def test_including_a_higher_layer_fails(self):
        problems = self.problems({
            "xum/render/image.cpp": ["<xum/engine/engine_implementation.h>"],
            "xum/engine/engine_implementation.h": [],
        }, private=["xum/engine/engine_implementation.h"])
        self.assertOnly(problems, "xum/render/image.cpp:1: layer 4 includes <xum/engine/engine_implementation.h> "
                                  "of layer 6 above it")

    def test_including_a_higher_layer_of_the_own_room_fails(self):
        problems = self.problems({
            "xum/engine/log.cpp": ["<xum/engine/clipboard.h>"],
            "xum/engine/clipboard.h": [],
        }, private=["xum/engine/clipboard.h"])
        self.assertOnly(problems, "xum/engine/log.cpp:1: layer 1 includes <xum/engine/clipboard.h> "
                                  "of layer 5 above it")

    def test_including_another_room_in_the_same_layer_fails(self):
        problems = self.problems({
            "xum/geometry/terrain.cpp": ["<cmath>", "<xum/render/image.h>"],
            "xum/render/image.h": [],
        }, private=["xum/render/image.h"])
        self.assertOnly(problems, "xum/geometry/terrain.cpp:2: includes <xum/render/image.h> "
                                  "of another room in the same layer 4")

    def test_only_the_factory_names_concrete_devices_of_other_rooms(self):
        files = {
            "xum/engine/device_factory.cpp": ["<xum/devices/input_device_implementation.h>"],
            "xum/devices/input_device_implementation.h": [],
        }
        private = ["xum/devices/input_device_implementation.h"]
        self.assertOnly(self.problems(files, private))
        files["xum/engine/event_translator.cpp"] = ["<xum/devices/input_device_implementation.h>"]
        self.assertOnly(self.problems(files, private),
                        "xum/engine/event_translator.cpp:1: includes the concrete "
                        "<xum/devices/input_device_implementation.h>: only engine/device_factory.cpp does")

    def test_the_pump_reaches_the_input_state(self):
        problems = self.problems({
            "xum/engine/event_translator.cpp": ["<xum/devices/input_state.h>"],
            "xum/devices/input_state.h": [],
        }, private=["xum/devices/input_state.h"])
        self.assertOnly(problems)

    def test_the_interpreter_includes_nothing_outside_its_room(self):
        files = {
            "xum/lisp/lisp_reader.cpp": ["<xum/lisp/lisp_token.h>", "<xum/files/strings.h>"],
            "xum/lisp/lisp_token.h": [],
            "xum/files/strings.h": [],
        }
        self.assertOnly(self.problems(files, private=["xum/lisp/lisp_token.h"]),
                        "xum/lisp/lisp_reader.cpp:2: includes <xum/files/strings.h>: lisp in layer 1 includes "
                        "nothing outside its room")

    def test_the_scripting_device_lies_above_the_interpreter(self):
        problems = self.problems({
            "xum/lisp/lisp_scripting_device.cpp": ["<xum/lisp/lisp.h>", "<xum/engine/log.h>"],
            "xum/lisp/lisp.h": [],
            "xum/engine/log.h": [],
        }, private=["xum/lisp/lisp.h"])
        self.assertOnly(problems)

    def test_a_file_without_a_layer_fails(self):
        self.assertOnly(self.problems({"xum/geometry/wormhole.cpp": []}),
                        "xum/geometry/wormhole.cpp: has no layer: place it in tools/check_includes.py")

    def test_a_file_that_two_layers_claim_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "xum" / "files" / "cache.cpp"
            path.parent.mkdir(parents=True)
            path.write_text("", encoding="utf-8")
            problems = check_includes.check(folder, {2: "files/cache*", 5: "files/*"})
            self.assertOnly(problems, "xum/files/cache.cpp: has several layers: [2, 5]")

    def test_an_exact_name_wins_over_a_pattern(self):
        layers = {1: "lisp/*", 5: "lisp/lisp_device", 2: "lisp/host.h"}
        self.assertEqual(check_includes.layers_of("lisp/lisp_reader.h", layers), [1])
        self.assertEqual(check_includes.layers_of("lisp/lisp_device.cpp", layers), [5])
        self.assertEqual(check_includes.layers_of("lisp/host.h", layers), [2])
        self.assertEqual(check_includes.layers_of("lisp/host.cpp", layers), [1])

    def test_only_the_full_include_form_is_used(self):
        problems = self.problems({
            "xum/engine/log.cpp": ['"log.h"', "<engine/log.h>"],
            "xum/engine/log.h": [],
        })
        self.assertOnly(problems,
                        'xum/engine/log.cpp:1: "log.h": the one include form here is <xum/room/file.h>',
                        "xum/engine/log.cpp:2: <engine/log.h>: the one include form here is <xum/room/file.h>")

    def test_including_a_missing_file_fails(self):
        self.assertOnly(self.problems({"xum/engine/log.cpp": ["<xum/engine/logs.h>"]}),
                        "xum/engine/log.cpp:1: <xum/engine/logs.h> does not exist")

    def test_a_public_header_includes_the_standard_library_only(self):
        for target in ("SDL.h", "GL/gl.h", "unistd.h", "sys/types.h"):
            with self.subTest(target):
                self.assertOnly(self.problems({"xum/render/image.h": ["<string>", f"<{target}>"]}),
                                f"xum/render/image.h:2: a public header includes <{target}>, "
                                "which is not of the standard library")

    def test_a_private_header_and_a_source_may_include_a_platform_library(self):
        problems = self.problems({
            "xum/render/opengl/opengl_shader.h": ["<GL/glew.h>"],
            "xum/engine/clipboard.cpp": ["<SDL.h>", "<windows.h>"],
        }, private=["xum/render/opengl/opengl_shader.h"])
        self.assertOnly(problems)

    def test_values_include_the_standard_library_only(self):
        self.assertOnly(self.problems({"xum/geometry/random.cpp": ["<SDL.h>"]}),
                        "xum/geometry/random.cpp:1: layer 0 includes <SDL.h>, which is not of the standard library")

    def test_a_public_header_that_includes_a_private_one_fails(self):
        problems = self.problems({
            "xum/engine/log.h": ["<xum/engine/message_box.h>"],
            "xum/engine/message_box.h": [],
        }, private=["xum/engine/message_box.h"])
        self.assertOnly(problems, "xum/engine/log.h:1: a public header includes the private "
                                  "<xum/engine/message_box.h>")

    def test_window_system_headers_fail_everywhere(self):
        for target in ("SDL_syswm.h", "GL/glx.h", "X11/Xlib.h"):
            for name in ("xum/engine/window_implementation.cpp", "tests/engine/window_test.cpp", "apps/game/main.cpp"):
                with self.subTest(target=target, name=name):
                    self.assertOnly(self.problems({name: [f"<{target}>"]}),
                                    f"{name}:1: includes <{target}>, whose global names clash with ours")

    def test_the_windows_header_stays_out_of_headers(self):
        name = "xum/engine/windows_system_device.h"
        self.assertOnly(self.problems({name: ["<Windows.h>"]}, private=[name]),
                        f"{name}:1: includes <Windows.h>, whose global names clash with ours")

    def test_hosts_see_public_headers_only_and_tests_see_all(self):
        files = {
            "apps/game/main.cpp": ["<xum/engine/log.h>", '"rules.h"'],
            "tests/engine/log_test.cpp": ["<xum/engine/log_hooks.h>"],
            "xum/engine/log.h": [],
            "xum/engine/log_hooks.h": [],
        }
        private = ["xum/engine/log_hooks.h"]
        self.assertOnly(self.problems(files, private))
        files["examples/hello.cpp"] = ["<xum/engine/log_hooks.h>"]
        self.assertOnly(self.problems(files, private),
                        "examples/hello.cpp:1: a host includes the private <xum/engine/log_hooks.h>")

    def test_a_header_in_no_list_fails(self):
        name = "xum/engine/log.h"
        self.assertOnly(self.problems({name: []}, unlisted=[name]),
                        f"{name}: is not listed in its room's CMakeLists.txt")

    def test_the_header_of_all_headers_forgets_none(self):
        self.assertOnly(self.problems({"xum/xum.h": [], "xum/engine/log.h": []}),
                        "xum/xum.h: does not include the public header engine/log.h")


class ThisCheckout(unittest.TestCase):
    def test_every_file_name_of_the_library_was_read(self):
        checker = check_includes.Checker(CHECKOUT)
        self.assertIn("engine/device_factory.cpp", checker.names)
        self.assertIn("engine/engine.h", checker.public)
        self.assertIn("render/opengl/opengl_shader.h", checker.private)


if __name__ == "__main__":
    unittest.main()
