#!/usr/bin/env python3
"""Checks that every file includes only what its place in the architecture allows; docs/architecture.md has the drawing.

A file under xum/ lies in a room (its folder, or "render/opengl" and the like counted as "render") and in a layer (the
table below). It may include files of its own room in its own layer, and all files of lower layers: never another room
in the same layer, never a higher layer. A new file must be placed in the table, so that somebody thinks about it.

Usage: check_includes.py [CHECKOUT]; prints one line for each violation and returns 1 when there is one.
"""

import re
import sys
from fnmatch import fnmatchcase
from pathlib import Path

# Patterns name a file without its extension, so that a header and its source share a line; one with an extension names
# that file alone. An exact name wins over a pattern with "*", so a folder can have a rule and an exception.
LAYERS = {
    7: """
        xum.h
    """,
    # Puts the devices together.
    6: """
        engine/device_factory
        engine/engine_implementation
        engine/engine_startup
        engine/event_translator
        engine/game_engine_implementation
    """,
    # Concrete devices and the state behind them.
    5: """
        devices/audio_data
        devices/audio_header
        devices/*_implementation
        devices/input_state
        engine/*_system_device
        engine/clipboard
        engine/file_listing
        engine/window_implementation
        files/cache_implementation
        lisp/lisp_scripting_device
        lisp/script_host.cpp
        lisp/script_host_values
        render/opengl/*
        render/software_render_device
    """,
    # Content: what a game shows.
    4: """
        geometry/brush
        geometry/bsp*
        geometry/camera
        geometry/clipper
        geometry/compiled_map
        geometry/compiled_map_format
        geometry/depth_buffer
        geometry/frustum
        geometry/map_grid
        geometry/mesh
        geometry/mesh_*
        geometry/polygon
        geometry/serialized_values
        geometry/sphere_mesh
        geometry/static_vertex_buffer
        geometry/terrain*
        render/debug_shapes
        render/font*
        render/image*
        render/light
        render/pixel_conversion
        render/quad
    """,
    # Bytes: files and what is written in them.
    3: """
        files/config_*
        files/data_root
        files/file
        files/file_opening
        files/file_serializer
        files/program_description
        files/read_file
        files/resource_*
        files/sdl_file_name
        render/owned_vertex_buffer
    """,
    # Interfaces that devices implement.
    2: """
        devices/audio_device
        devices/console
        devices/input_device
        devices/network_device
        engine/engine
        engine/game_engine
        engine/system_device
        engine/window
        files/cache
        files/resource_manager
        lisp/script_host.h
        lisp/scripting_device
        render/program
        render/render_device
        render/render_target
        render/shader
        render/texture
        render/vertex_buffer
    """,
    # Services: reporting, and the interpreter, which is at home anywhere.
    1: """
        engine/log
        engine/log_hooks
        engine/message_box
        lisp/lisp
        lisp/lisp_*
    """,
    # Values: the standard library only.
    0: """
        devices/key_codes
        files/serializer
        files/strings
        geometry/angles
        geometry/base_list
        geometry/box
        geometry/fixed
        geometry/matrix
        geometry/plane
        geometry/position
        geometry/random
        geometry/short_vectors
        geometry/vector
        render/render_types
    """,
    # The export macro is part of every declaration, so it lies below all rooms.
    -1: """
        engine/export.h
    """,
}

# These include no other room at all, not even a lower layer: (room, layer).
SELF_CONTAINED = {("lisp", 1)}

# Concrete devices are named by the factory alone. The input state is a set of free functions that the pump calls.
CONCRETE_LAYER = 5
DEVICE_FACTORY = "engine/device_factory.cpp"
NOT_A_DEVICE = {"devices/input_state.h"}

# Their global names (Window, Font, Polygon) are ours, too.
FORBIDDEN_EVERYWHERE = re.compile(r"SDL_syswm\.h|GL/(glx|glxew|wglew)\.h|X11/.*|xcb/.*")
FORBIDDEN_IN_HEADERS = re.compile(r"(?i)windows\.h")
# Public headers and layer 0 see the C++ standard library: its headers are those without an extension.
STANDARD_HEADER = re.compile(r"[a-z_0-9]+")

HOST_FOLDERS = ("apps", "examples")
OTHER_FOLDERS = ("benchmarks", "tests", "tools", "fuzz")

INCLUDE = re.compile(r"""^\s*#\s*include\s*([<"])([^>"]+)[>"]""")
ROOM_LISTS = re.compile(r"\b(SOURCES|PUBLIC_HEADERS|PRIVATE_HEADERS)\b|([\w/]+\.h)\b")


def find_sources(folder):
    found = (path for extension in ("h", "hpp", "c", "cpp") for path in folder.rglob("*." + extension))
    return sorted(found)


def find_includes(path):
    """(line number, '<' or '"', what is included) of each include."""
    lines = path.read_text(encoding="utf-8").splitlines()
    matches = ((number, INCLUDE.match(line)) for number, line in enumerate(lines, 1))
    return [(number, match[1], match[2]) for number, match in matches if match]


def layers_of(name, layers):
    """All layers that claim the file; exact names before patterns."""
    exact, by_pattern = [], []
    for layer, patterns in layers.items():
        for pattern in patterns.split():
            subject = name if "." in pattern else name.rpartition(".")[0]
            if pattern == subject:
                exact.append(layer)
            elif fnmatchcase(subject, pattern):
                by_pattern.append(layer)
    return exact or by_pattern


def listed_headers(checkout):
    """The public and the private headers, as the CMakeLists.txt of the rooms list them."""
    headers = {"PUBLIC_HEADERS": {"xum.h"}, "PRIVATE_HEADERS": set()}
    for listing in sorted((checkout / "xum").glob("*/CMakeLists.txt")):
        section = "SOURCES"
        for keyword, header in ROOM_LISTS.findall(listing.read_text(encoding="utf-8")):
            section = keyword or section
            if header and section in headers:
                headers[section].add(f"{listing.parent.name}/{header}")
    return headers["PUBLIC_HEADERS"], headers["PRIVATE_HEADERS"]


class Checker:
    def __init__(self, checkout, layers=None):
        self.checkout = Path(checkout)
        self.layers = LAYERS if layers is None else layers
        self.library = self.checkout / "xum"
        self.names = {path.relative_to(self.library).as_posix(): path for path in find_sources(self.library)}
        self.public, self.private = listed_headers(self.checkout)
        self.layer = {}
        self.problems = []

    def report(self, place, text):
        self.problems.append(f"{place}: {text}")

    def run(self):
        self.place_files()
        self.check_header_lists()
        for name, path in self.names.items():
            for number, quote, target in find_includes(path):
                self.check_library_include(name, f"xum/{name}:{number}", quote, target)
        for folder in HOST_FOLDERS + OTHER_FOLDERS:
            for path in find_sources(self.checkout / folder):
                for number, _, target in find_includes(path):
                    place = f"{path.relative_to(self.checkout).as_posix()}:{number}"
                    self.check_outside_include(place, target, folder in HOST_FOLDERS)
        return self.problems

    def place_files(self):
        for name in self.names:
            claims = layers_of(name, self.layers)
            if not claims:
                self.report(f"xum/{name}", "has no layer: place it in tools/check_includes.py")
            elif len(claims) > 1:
                self.report(f"xum/{name}", f"has several layers: {claims}")
            else:
                self.layer[name] = claims[0]

    def check_header_lists(self):
        """A header that is in no list is not installed, and one that xum.h forgets is not found."""
        headers = {name for name in self.names if name.endswith(".h")}
        for name in sorted(headers - self.public - self.private):
            self.report(f"xum/{name}", "is not listed in its room's CMakeLists.txt")
        for name in sorted(self.public & self.private):
            self.report(f"xum/{name}", "is listed as public and as private")
        if "xum.h" in self.names:
            included = {target for _, _, target in find_includes(self.names["xum.h"])}
            for name in sorted(self.public - {"xum.h"}):
                if f"xum/{name}" not in included:
                    self.report("xum/xum.h", f"does not include the public header {name}")

    def check_library_include(self, name, place, quote, target):
        if quote == '"':
            self.report(place, f'"{target}": the one include form here is <xum/room/file.h>')
        elif target.startswith("xum/"):
            self.check_own_include(name, place, target[len("xum/"):])
        elif target in self.names:
            self.report(place, f"<{target}>: the one include form here is <xum/room/file.h>")
        else:
            self.check_foreign_include(name, place, target)

    def check_own_include(self, name, place, target):
        if target not in self.names:
            self.report(place, f"<xum/{target}> does not exist")
            return
        if name in self.public and target not in self.public:
            self.report(place, f"a public header includes the private <xum/{target}>")
        if name in self.layer and target in self.layer:
            self.check_arrow(name, place, target)

    def check_arrow(self, name, place, target):
        layer, target_layer = self.layer[name], self.layer[target]
        room, target_room = name.split("/")[0], target.split("/")[0]
        if target_layer < 0:
            return
        if target_layer > layer:
            self.report(place, f"layer {layer} includes <xum/{target}> of layer {target_layer} above it")
        elif room == target_room:
            return
        elif target_layer == layer:
            self.report(place, f"includes <xum/{target}> of another room in the same layer {layer}")
        elif (room, layer) in SELF_CONTAINED:
            self.report(place, f"includes <xum/{target}>: {room} in layer {layer} includes nothing outside its room")
        elif target_layer == CONCRETE_LAYER and name != DEVICE_FACTORY and target not in NOT_A_DEVICE:
            self.report(place, f"includes the concrete <xum/{target}>: only {DEVICE_FACTORY} does")

    def check_foreign_include(self, name, place, target):
        self.check_forbidden(name, place, target)
        if STANDARD_HEADER.fullmatch(target):
            return
        if name in self.public:
            self.report(place, f"a public header includes <{target}>, which is not of the standard library")
        elif self.layer.get(name) == 0:
            self.report(place, f"layer 0 includes <{target}>, which is not of the standard library")

    def check_outside_include(self, place, target, is_host):
        self.check_forbidden(place.rpartition(":")[0], place, target)
        if not target.startswith("xum/"):
            return
        name = target[len("xum/"):]
        if name not in self.names:
            self.report(place, f"<{target}> does not exist")
        elif is_host and name not in self.public:
            self.report(place, f"a host includes the private <{target}>")

    def check_forbidden(self, name, place, target):
        in_header = name.endswith(".h")
        if FORBIDDEN_EVERYWHERE.fullmatch(target) or (in_header and FORBIDDEN_IN_HEADERS.fullmatch(target)):
            self.report(place, f"includes <{target}>, whose global names clash with ours")


def check(checkout, layers=None):
    return Checker(checkout, layers).run()


def main():
    checkout = sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
    checker = Checker(checkout)
    problems = checker.run()
    for problem in problems:
        print(problem)
    print(f"{len(checker.names)} files, {len(problems)} violations")
    return 1 if problems or not checker.names else 0


if __name__ == "__main__":
    sys.exit(main())
