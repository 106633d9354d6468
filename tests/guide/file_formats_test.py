#!/usr/bin/env python3
"""Reads files that the tools made by nothing but the tables of docs/file_formats.md.

file_formats_test.py XUM [--pixels PROGRAM] [--game PROGRAM]

The program makes the picture flag.bmp (docs/guide/images_and_fonts.md); the game plays recorded sessions.
"""

import argparse
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
MANUAL = (CHECKOUT / "docs" / "file_formats.md").read_text(encoding="utf-8").split("\n")
options = None


def rows(heading):
    """The cells of each row of the table with that heading."""
    found = [i for i, line in enumerate(MANUAL) if line == heading]
    if len(found) != 1:
        raise AssertionError(f"{len(found)} tables have the heading {heading}")
    table = []
    for line in MANUAL[found[0] + 2:]:
        if not line.startswith("|"):
            return table
        table.append([cell.strip() for cell in line.strip("|").split("|")])
    return table


def value_of(expression, variables):
    """Of "24 + L1 + L2", or of "12 P"."""
    expression = re.sub(r"(\w)(?= [A-Z0-9(])(?! \+) ", r"\1 * ", expression)
    return eval(expression, {"__builtins__": {}}, variables)  # pylint: disable=eval-used


def named_variable(meaning):
    """The name in "P: number of positions" or "L1, the length"."""
    name = re.match(r"^([A-Z]\d?)[:,] ", meaning)
    return name[1] if name else None


class Format:
    """A table of offset, size and meaning, read from bytes in which its part begins at `start`."""

    def __init__(self, heading, data, start=0):
        self.data = data
        self.start = start
        self.variables = {}
        self.fields = {}  # meaning -> bytes
        self.end = start
        for offset, size, meaning in rows(heading):
            self.read(offset, size, meaning)

    def read(self, offset, size, meaning):
        if re.match(r"^\d", offset):
            begin = self.start + value_of(offset, self.variables)
            if begin != self.end:
                raise AssertionError(f"'{meaning}' begins at {begin}, what is before it ends at {self.end}")
        if not re.match(r"^\d", offset) or size == "" or size.endswith("each"):  # another table tells
            self.fields[meaning] = None
            return
        length = value_of(size, self.variables)
        contents = self.data[begin:begin + length]
        if len(contents) != length:
            raise AssertionError(f"'{meaning}' reaches out of the file")
        self.end = begin + length
        self.fields[meaning] = contents
        name = named_variable(meaning)
        if name:
            self.variables[name] = int.from_bytes(contents, "little")
        self.check_constant(meaning, contents)

    def check_constant(self, meaning, contents):
        """What the table says that the bytes are."""
        text = re.match(r"^(?:magic, )?the characters `(.*?)`", meaning)
        number = re.match(r"^(\d+)(?=$|[:;])", meaning) or re.search(r"writes (\d+)$", meaning)
        if text and contents != text[1].encode():
            raise AssertionError(f"'{meaning}' is {contents}")
        if number and int.from_bytes(contents, "little") != int(number[1]):
            raise AssertionError(f"'{meaning}' is {contents}")

    def field(self, beginning):
        """The bytes of the only field whose meaning begins so."""
        found = [contents for meaning, contents in self.fields.items() if meaning.startswith(beginning)]
        if len(found) != 1:
            raise AssertionError(f"{len(found)} fields begin with '{beginning}'")
        return found[0]

    def number(self, beginning):
        return int.from_bytes(self.field(beginning), "little")


class TreeReader:
    """Follows the tables of sizes, which have no offsets, from one part to the next."""

    def __init__(self, data, at):
        self.data = data
        self.at = at
        self.counts = {"leaves": 0, "inner nodes": 0, "polygons": 0, "vertices": 0, "brushes": 0, "references": 0}
        self.brush_numbers = []

    def take(self, size):
        if self.at + size > len(self.data):
            raise AssertionError(f"the file ends before {self.at + size}")
        self.at += size
        return self.data[self.at - size:self.at]

    def part(self, name):
        variables = {}
        for size, meaning in rows(f"| size | {name} |"):
            many = re.match(r"^(\d+) each$", size)
            if many:
                count = variables[meaning.split()[0]]
                self.take(int(many[1]) * count)
                if meaning.startswith("B indices"):
                    self.counts["references"] += count
            elif size:
                contents = self.take(int(size))
                if named_variable(meaning):
                    variables[named_variable(meaning)] = int.from_bytes(contents, "little")
                if meaning.startswith("its index"):
                    self.brush_numbers.append(int.from_bytes(contents, "little"))
                if meaning.startswith("kind: 0, or 1") and contents[0] > 1:
                    raise AssertionError(f"a leaf of kind {contents[0]}")
            else:
                self.nested(meaning, variables)

    def nested(self, meaning, variables):
        if meaning == "N brushes":
            for _ in range(variables["N"]):
                self.counts["brushes"] += 1
                self.part("brush")
        elif meaning.startswith("Q polygons"):
            count_size, vertex_size = map(int, re.findall(r"\((\d+)(?: each)?\)", meaning))
            for _ in range(variables["Q"]):
                corners = int.from_bytes(self.take(count_size), "little")
                self.take(vertex_size * corners)
                self.counts["polygons"] += 1
                self.counts["vertices"] += corners
        elif re.match("^the (tree|node)", meaning):
            self.node()
        else:
            raise AssertionError(f"the tables do not say what '{meaning}' is")

    def node(self):
        first = {re.match(r"^\d", rows(f"| size | {name} |")[0][1])[0]: name for name in ("inner node", "leaf")}
        name = first[str(self.data[self.at])]
        self.counts["leaves" if name == "leaf" else "inner nodes"] += 1
        self.part(name)


class FileFormats(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = Path(temporary.name)

    def xum(self, *arguments):
        return self.run_in_folder(options.xum, *arguments).stdout

    def run_in_folder(self, *command, succeeds=True):
        done = subprocess.run([str(part) for part in command], cwd=self.folder, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=120, env={
                                  **os.environ, "SDL_VIDEODRIVER": "offscreen", "SDL_AUDIODRIVER": "dummy",
                                  "LIBGL_ALWAYS_SOFTWARE": "1", "XUM_MESSAGE_BOXES": "0"})
        self.assertEqual(done.returncode == 0, succeeds, f"{command}: {done.stdout}{done.stderr}")
        return done

    def write(self, name, contents):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(contents)

    def read(self, name):
        return (self.folder / name).read_bytes()

    def test_every_format_of_the_list_has_a_section(self):
        listed = re.findall(r"\(#([\w-]+)\)", "\n".join("|".join(row) for row in rows(
            "| format | kind | begins with | read by | written by |")))
        headings = [re.sub(r"[^\w -]", "", line.lstrip("# ").lower()).replace(" ", "-")
                    for line in MANUAL if re.match("^##? ", line) or line.startswith("### ")]
        for anchor in listed:
            self.assertIn(anchor, headings)
        sections = [line[3:] for line in MANUAL if line.startswith("## ")]
        self.assertEqual({name.lower().replace(" ", "-") for name in sections} - {"serialized-objects"} - set(listed),
                         set())

    def test_archive(self):
        files = {"a/b.txt": b"Hello", "empty": b"", "z.bin": bytes(range(256)) * 5}
        for name, contents in files.items():
            self.write("d/" + name, contents)
        self.xum("pack", "create", "a.xum", "d")
        data = self.read("a.xum")
        header = Format("| offset | size | header |", data)
        count = header.number("number of entries")
        self.assertEqual(count, len(files))
        place, size = next((int(row[0]), int(row[1].split()[0])) for row in rows("| offset | size | header |")
                           if row[2] == "directory")
        found = {}
        for i in range(count):
            entry = Format("| offset | size | directory entry |", data, place + i * size)
            self.assertEqual(entry.end, place + (i + 1) * size)
            begin = entry.number("offset of the data")
            name = entry.field("name, ended by a NUL").split(b"\0")[0].decode()
            found[name] = data[begin:begin + entry.number("size of the data")]
        self.assertEqual(found, files)

    def check_mesh(self, name):
        data = self.read(name)
        mesh = Format("| offset | size | content |", data)
        self.assertEqual(mesh.end, len(data))
        shown = dict(line.split(": ") for line in self.xum("mesh", "info", name).splitlines())
        positions = mesh.variables["P"]
        self.assertEqual(shown["positions"], str(positions))
        self.assertEqual(shown["texture coordinates"], str(mesh.variables["T"] or "none"))
        self.assertEqual(shown["triangles"], str(mesh.variables["I"] // 3))
        places = struct.unpack(f"<{3 * positions}f", mesh.field("positions, "))
        bounds = [f"{pick(places[axis::3]):.9g}" for pick in (min, max) for axis in range(3)]
        self.assertEqual(shown["bounds"], f"{' '.join(bounds[:3])} to {' '.join(bounds[3:])}")
        indexes = struct.unpack(f"<{mesh.variables['I']}i", mesh.field("indexes of positions"))
        self.assertTrue(all(0 <= index < positions for index in indexes))

    def test_mesh(self):
        self.xum("mesh", "sphere", "2", "1.5", "ball.mesh")
        self.check_mesh("ball.mesh")
        self.write("urn.mesh", (CHECKOUT / "data" / "meshes" / "urn.mesh").read_bytes())
        self.check_mesh("urn.mesh")

    def check_map(self, name):
        data = self.read(name)
        level = Format("| offset | size | compiled map |", data)
        shown = self.xum("map", "info", name)

        def sum_of(what):
            return sum(int(number) for number in re.findall(rf"(?m)^ +{what}: (\d+)", shown))

        self.assertIn(f"title: {level.field('first text').decode()}\n", shown)
        self.assertIn(f"second text: {level.variables['L2']} bytes\n", shown)
        self.assertIn(f"meshes: {level.variables['M']}\n", shown)
        reader = TreeReader(data, level.end)
        for _ in range(level.variables["M"]):
            reader.brush_numbers = []
            reader.part("BSP mesh")
            self.assertEqual(sorted(reader.brush_numbers), list(range(len(reader.brush_numbers))))
        self.assertEqual(reader.at, len(data), "nothing follows the last mesh")
        self.assertEqual(reader.counts["leaves"], sum_of("leaves"))
        self.assertEqual(reader.counts["inner nodes"], sum_of("nodes"))
        self.assertEqual(reader.counts["polygons"], sum_of("polygons"))
        self.assertEqual(reader.counts["vertices"], sum_of("vertices"))
        self.assertEqual(reader.counts["brushes"], sum_of("brushes"))
        self.assertEqual(reader.counts["references"], sum_of("references to brushes"))

    def test_compiled_map(self):
        begin = MANUAL.index("```map") + 1
        self.write("yard.cfg", "\n".join(MANUAL[begin:MANUAL.index("```", begin)]).encode())
        self.xum("map", "compile", "yard.cfg", "yard.map")
        self.check_map("yard.map")
        self.write("gatehouse.map", (CHECKOUT / "data" / "maps" / "gatehouse.map").read_bytes())
        self.check_map("gatehouse.map")

    def test_picture(self):
        if options.pixels is None:
            self.skipTest("there is no program that writes a picture")
        self.run_in_folder(options.pixels)
        data = self.read("flag.bmp")
        picture = Format("| offset | size | picture |", data)
        self.assertEqual((picture.variables["W"], picture.variables["H"]), (60, 40))
        self.assertEqual(picture.number("size of the file"), len(data))
        self.assertEqual(picture.number("4 W H: size"), 4 * 60 * 40)
        pixels = picture.field("pixels: blue, green, red, alpha")
        self.assertEqual(picture.end, len(data))
        self.assertEqual(pixels[4 * 10:4 * 11], bytes([200, 40, 30, 255]), "the bottom row, column 10")
        self.assertEqual(pixels[-4:], bytes([250, 250, 250, 255]), "the top row")
        for color, mask in {"red": 0xFF << 16, "green": 0xFF << 8, "blue": 0xFF, "alpha": 0xFF << 24}.items():
            self.assertEqual(picture.number(f"{mask}: mask of {color}"), mask)

    def test_bitmap_font(self):
        """A PNG of 32 bits: white letters on nothing, in equal cells for the codes from 32 to 127."""
        self.write("hud.ttf", (CHECKOUT / "data" / "fonts" / "hud.ttf").read_bytes())
        printed = self.xum("font", "bake", "hud.ttf", "16", "hud.png")
        cell_width, cell_height, columns, first = map(int, re.search(
            r'"hud.png", (\d+), (\d+), (\d+), (\d+), true', printed).groups())
        width, height, pixels = png_pixels(self.read("hud.png"))
        self.assertEqual(width, cell_width * columns)
        self.assertEqual(height, cell_height * -(-(128 - first) // columns))

        def is_empty(code):
            x, y = (code - first) % columns * cell_width, (code - first) // columns * cell_height
            return not any(pixels[row][4 * column + 3] for row in range(y, y + cell_height)
                           for column in range(x, x + cell_width))

        self.assertEqual([code for code in range(first, 128) if is_empty(code)], [32, 127])
        for row in pixels:
            for at in range(0, len(row), 4):
                if row[at + 3]:
                    self.assertEqual(row[at:at + 3], b"\xff\xff\xff")

    def test_recorded_session(self):
        if options.game is None:
            self.skipTest("there is no game")
        steps = [cell for row in rows("| step | limits |") for cell in re.findall(r"`([^`]*)`", row[0])]
        limits = {cell: row[1] for row in rows("| step | limits |") for cell in re.findall(r"`([^`]*)`", row[0])}
        whole = "# a comment\r\n\n \t# another\n"
        refused = []
        for step in sorted(steps, key=lambda step: step == "quit"):  # what is behind "quit" would not be done
            words = step.split()
            numbers = [i for i, word in enumerate(words) if re.fullmatch(r"N|X|Y|DX|DY|WIDTH|HEIGHT", word)]
            words = [{"NAME": "Left Ctrl", "TEXT": "caf\u00e9 "}.get(word, word) for word in words]
            if numbers:
                smallest, largest = map(int, re.match(r"^(-?\d+) to (\d+)", limits[step]).groups())
                for i in numbers:
                    words[i] = str(smallest if smallest > 0 else largest)
                # A start of the game takes its time: one end of each range will do, and one of "down" and "up".
                beyond = largest + 1 if smallest > 0 else smallest - 1
                if words[-2] != "up":
                    refused.append(" ".join(words[:numbers[0]] + [str(beyond)] * len(numbers)))
            whole += f"7 {' '.join(words)}\n"
        self.write("good.txt", whole.encode())
        self.run_in_folder(options.game, "--play", "good.txt", "--fast")
        refused += ["key down No Such Key", "text ", "jump"]
        for step in refused:
            with self.subTest(step=step):
                self.write("bad.txt", f"# a comment\n7 {step}\n".encode())
                complaint = self.run_in_folder(options.game, "--play", "bad.txt", succeeds=False).stderr
                self.assertIn("bad.txt:2: ", complaint)
        for text in ("7 quit\n6 quit\n", "18446744073709551616 quit\n"):
            with self.subTest(text=text):
                self.write("bad.txt", text.encode())
                self.run_in_folder(options.game, "--play", "bad.txt", succeeds=False)


def png_pixels(data):
    """Width, height and the rows of a PNG of 8-bit RGBA without interlacing."""
    chunks, at = {}, 8
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        chunks[kind] = chunks.get(kind, b"") + data[at + 8:at + 8 + size]
        at += 12 + size
    width, height, bits, color, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    if (bits, color, interlaced) != (8, 6, 0):
        raise AssertionError(f"not 32 bits a pixel: {bits}, {color}, {interlaced}")
    packed = zlib.decompress(chunks[b"IDAT"])
    stride = 4 * width
    result, above = [], bytes(stride)
    for y in range(height):
        kind, line = packed[y * (stride + 1)], bytearray(packed[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            left = line[i - 4] if i >= 4 else 0
            corner = above[i - 4] if i >= 4 else 0
            line[i] = (line[i] + predicted(kind, left, above[i], corner)) & 255
        above = bytes(line)
        result.append(above)
    return width, height, result


def predicted(kind, left, up, corner):
    """What a PNG filter expects of a byte."""
    if kind == 4:
        estimate = left + up - corner
        return min((left, up, corner), key=lambda value: abs(estimate - value))
    return (0, left, up, (left + up) // 2)[kind]


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("xum")
    parser.add_argument("--pixels")
    parser.add_argument("--game")
    options, rest = parser.parse_known_args()
    sys.setrecursionlimit(10000)
    unittest.main(argv=[sys.argv[0], *rest])
