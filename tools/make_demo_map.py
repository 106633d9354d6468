#!/usr/bin/python3
"""Writes the description of the demo's map, data/maps/gatehouse.cfg, always the same bytes.

Run it from anywhere, then compile what it wrote:

    tools/make_demo_map.py
    xum map compile data/maps/gatehouse.cfg data/maps/gatehouse.map

Two towers beside a path, with rooms on two floors, stairs up to a platform with battlements, and a bridge from one to
the other. One unit is a metre, z points up; the path runs along y through the middle.
"""

import math
import pathlib

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "data" / "maps" / "gatehouse.cfg"

ORIGIN = (0, 25, 0)  # behind the courtyard's north gate

INNER, OUTER, HALF_DEPTH = 3.5, 11.5, 4.0  # a tower's walls: |x| from the path, and |y|
WALL = 0.6
FLOOR, UPPER_FLOOR, PLATFORM = 0.3, 4.5, 8.7  # heights of what one walks on
SLAB = 0.3
STEPS, STEP_DEPTH = 17, 0.3
STAIR_WIDTH = 1.3

BRICK = ("brick.png", 0.5)
STONE = ("limestone.png", 0.5)
PAVING = ("paving.png", 0.28)
WOOD = ("wood.png", 0.8)


class Map:
    """Collects brushes; `mirror` puts each of them on the other side of the path as well."""

    def __init__(self):
        self.brushes = []
        self.entities = []

    def box(self, material, x, y, z, **sides):
        """From and to along each axis; sides (top, bottom, left ...) may have a texture of their own."""
        texture, scale = material
        lines = [f"<box {quote(x[0], y[0], z[0], x[1], y[1], z[1])}/>", f"<texture {texture}/>"]
        lines += [f"<{side} {name}/>" for side, name in sides.items()]
        self.brushes.append(lines + [f"<scale {number(scale)}/>"])

    def prism(self, material, centre, radius, z, corners=8):
        """An upright one."""
        texture, scale = material
        lines = [f"<texture {texture}/>", f"<scale {number(scale)}/>"]
        planes = [((0, 0, 1), z[1]), ((0, 0, -1), -z[0])]
        for i in range(corners):
            angle = (2 * i + 1) * math.pi / corners
            normal = (round(math.cos(angle), 6), round(math.sin(angle), 6), 0)
            planes.append((normal, radius + normal[0] * centre[0] + normal[1] * centre[1]))
        for normal, distance in planes:
            lines += ["<plane>", f"   <normal {quote(*normal)}/>", f"   <distance {number(distance)}/>", "</plane>"]
        self.brushes.append(lines)

    def entity(self, **entries):
        self.entities.append([f"<{name.rstrip('_')} {value}/>" for name, value in entries.items()])

    def text(self):
        lines = ["<map>", "   <title Gatehouse/>"]
        for entity in self.entities:
            lines += ["   <entity>"] + [f"      {line}" for line in entity] + ["   </entity>"]
        lines += ["   <mesh>", f"      <origin {quote(*ORIGIN)}/>"]
        for brush in self.brushes:
            lines += ["      <brush>"] + [f"         {line}" for line in brush] + ["      </brush>"]
        return "\n".join(lines + ["   </mesh>", "</map>"]) + "\n"


def number(value):
    return f"{value:.6f}".rstrip("0").rstrip(".") if value else "0"


def quote(*values):
    return '"' + " ".join(number(value) for value in values) + '"'


class Side:
    """One of the two towers: +1 is on the right."""

    def __init__(self, level, sign):
        self.level = level
        self.sign = sign

    def x(self, start, end):
        return (start, end) if self.sign > 0 else (-end, -start)

    def box(self, material, x, y, z, **sides):
        self.level.box(material, self.x(*x), y, z, **sides)

    def prism(self, material, centre, radius, z):
        self.level.prism(material, (self.sign * centre[0], centre[1]), radius, z)

    def wall(self, along_x, place, span, z, openings=()):
        """A wall of bricks; openings are (from, to, bottom, top) along it, in order, with a stone frame's sill."""

        def piece(start, end, bottom, top, material=BRICK, grow=0.0):
            if end - start < 1e-6 or top - bottom < 1e-6:
                return
            across = (place[0] - grow, place[1] + grow)
            if along_x:
                self.box(material, (start, end), across, (bottom, top))
            else:
                self.box(material, across, (start, end), (bottom, top))

        at = span[0]
        for start, end, bottom, top in openings:
            piece(at, start, *z)
            piece(start, end, z[0], bottom)
            piece(start, end, top, z[1])
            piece(start - 0.2, end + 0.2, top, top + 0.25, STONE, 0.05)
            if bottom > z[0] + 0.01:
                piece(start - 0.15, end + 0.15, bottom - 0.15, bottom, STONE, 0.08)
            at = end
        piece(at, span[1], *z)


def add_walls(side):
    inside = (INNER + WALL, OUTER - WALL)
    for floor, ceiling in ((0, UPPER_FLOOR - SLAB), (UPPER_FLOOR - SLAB, PLATFORM - SLAB)):
        level = floor + SLAB
        slits = [(x - 0.3, x + 0.3, level + 1.0, level + 2.5) for x in (6.0, 9.0)]
        for y in (-HALF_DEPTH, HALF_DEPTH - WALL):
            side.wall(True, (y, y + WALL), inside, (floor, ceiling), slits)
        depth = (-HALF_DEPTH, HALF_DEPTH)
        side.wall(False, (INNER, INNER + WALL), depth, (floor, ceiling), [(-0.9, 0.9, level, level + 2.3)])
        window = [(1.0, 1.6, level + 1.2, level + 2.7)] if floor == 0 else [(-0.9, 0.9, level + 1.0, level + 2.4)]
        side.wall(False, (OUTER - WALL, OUTER), depth, (floor, ceiling), window)


def add_floors(side):
    low, high = INNER + WALL, OUTER - WALL
    deep = HALF_DEPTH - WALL
    side.box(PAVING, (low, high), (-deep, deep), (0, FLOOR))
    side.box(STONE, (INNER, low), (-0.9, 0.9), (0, FLOOR))
    side.box(STONE, (INNER - 0.4, INNER), (-1.2, 1.2), (0, 0.15))

    def slab(x, y, top):
        side.box(PAVING, x, y, (top - SLAB, top), bottom=WOOD[0])

    well = high - STAIR_WIDTH
    slab((low, well), (-deep, deep), UPPER_FLOOR)
    slab((well, high), (-deep, -1.2), UPPER_FLOOR)
    slab((well, high), (2.7, deep), UPPER_FLOOR)
    south = -deep + STAIR_WIDTH
    slab((low, high), (south, deep), PLATFORM)
    slab((low, 4.8), (-deep, south), PLATFORM)
    slab((8.4, high), (-deep, south), PLATFORM)
    for x in (5.4, 6.9, 8.4):  # beams below the upper floor
        side.box(WOOD, (x - 0.12, x + 0.12), (-deep, deep), (UPPER_FLOOR - SLAB - 0.25, UPPER_FLOOR - SLAB))


def add_stairs(side):
    low, high = INNER + WALL, OUTER - WALL
    deep = HALF_DEPTH - WALL
    rise = (UPPER_FLOOR - FLOOR) / STEPS
    for i in range(STEPS):
        top = FLOOR + (i + 1) * rise
        start = -deep + 1 + STEP_DEPTH * i
        side.box(STONE, (high - STAIR_WIDTH, high), (start, start + STEP_DEPTH), (FLOOR, top))
    for i in range(STEPS):
        top = UPPER_FLOOR + (i + 1) * rise
        start = high - 1 - STEP_DEPTH * i
        bottom = UPPER_FLOOR if i < 6 else top - 2 * rise
        side.box(STONE, (start - STEP_DEPTH, start), (-deep, -deep + STAIR_WIDTH), (bottom, top))


def add_pillars(side):
    for y in (-1.7, 1.7):
        x = 6.9
        side.box(STONE, (x - 0.4, x + 0.4), (y - 0.4, y + 0.4), (FLOOR, FLOOR + 0.25))
        side.prism(STONE, (x, y), 0.27, (FLOOR + 0.25, UPPER_FLOOR - SLAB - 0.5))
        side.box(STONE, (x - 0.4, x + 0.4), (y - 0.4, y + 0.4), (UPPER_FLOOR - SLAB - 0.5, UPPER_FLOOR - SLAB - 0.25))


def add_outside(side):
    """Corner stones, bands and battlements."""
    for x in (INNER, OUTER):
        for y in (-HALF_DEPTH, HALF_DEPTH):
            for i in range(12):
                reach = 0.45 if i % 2 else 0.3
                across = (x - 0.06, x + reach) if x == INNER else (x - reach, x + 0.06)
                along = (y - 0.06, y + 0.75 - reach) if y < 0 else (y - 0.75 + reach, y + 0.06)
                side.box(STONE, across, along, (0.7 * i, 0.7 * i + 0.7))
    for z, grow in ((UPPER_FLOOR - SLAB, 0.1), (PLATFORM - SLAB, 0.22)):
        for y in (-HALF_DEPTH - grow, HALF_DEPTH - WALL):
            side.box(STONE, (INNER - grow, OUTER + grow), (y, y + WALL + grow), (z, z + SLAB))
        inner = (-HALF_DEPTH + WALL, HALF_DEPTH - WALL)
        for x in (INNER - grow, OUTER - WALL):
            side.box(STONE, (x, x + WALL + grow), inner, (z, z + SLAB))

    grow, thick = 0.22, 0.45
    low, high = INNER - grow, OUTER + grow
    depth = HALF_DEPTH + grow
    for y in (-depth, depth - thick):
        side.box(BRICK, (low, high), (y, y + thick), (PLATFORM, PLATFORM + 0.6))
    for x in (low, high - thick):
        side.box(BRICK, (x, x + thick), (-depth + thick, depth - thick), (PLATFORM, PLATFORM + 0.6))

    def merlon(x, y):
        side.box(BRICK, x, y, (PLATFORM + 0.6, PLATFORM + 1.35))
        grown = [(start - 0.05, end + 0.05) for start, end in (x, y)]
        side.box(STONE, *grown, (PLATFORM + 1.35, PLATFORM + 1.5))

    width = 0.94
    gap = (high - low - 5 * width) / 4
    for i in range(5):
        start = low + i * (width + gap)
        for y in (-depth, depth - thick):
            merlon((start, start + width), (y, y + thick))
        if i in (0, 4):
            continue
        start = -depth + i * (width + (2 * depth - 5 * width) / 4)
        for x in (low, high - thick):
            merlon((x, x + thick), (start, start + width))


def add_bridge(level):
    level.box(STONE, (-INNER, INNER), (-1.5, 1.5), (UPPER_FLOOR - 0.5, UPPER_FLOOR - 0.12), bottom=WOOD[0])
    level.box(PAVING, (-INNER, INNER), (-1.6, 1.6), (UPPER_FLOOR - 0.12, UPPER_FLOOR))
    for y in (-1.6, 1.35):
        level.box(STONE, (-INNER, INNER), (y, y + 0.25), (UPPER_FLOOR + 0.85, UPPER_FLOOR + 1.05))
        for i in range(9):
            x = -3.2 + 0.8 * i
            level.prism(STONE, (x, y + 0.125), 0.1, (UPPER_FLOOR, UPPER_FLOOR + 0.85))
    for sign in (-1, 1):
        for y in (-1.2, 1.2):
            x = sign * 2.8
            level.box(STONE, (x - 0.4, x + 0.4), (y - 0.4, y + 0.4), (0, 0.35))
            level.prism(STONE, (x, y), 0.28, (0.35, UPPER_FLOOR - 0.85))
            level.box(STONE, (x - 0.4, x + 0.4), (y - 0.4, y + 0.4), (UPPER_FLOOR - 0.85, UPPER_FLOOR - 0.5))
    level.box(PAVING, (-2.0, 2.0), (-10.7, 7.0), (-0.2, 0.04))  # the path


# Where the game takes place, in the world: what is to be gathered, who watches, and where the player begins. What lies
# in the meadow is lifted to its height.
ITEMS = (
    (7, -5.3, 0.3), (-6, 6, 0.3), (0, 11.2, 0.75), (11.5, -11, 0.3), (-11.5, 11.5, 0.3),  # the courtyard
    (6.9, 25, FLOOR), (-6.9, 25, FLOOR), (6.9, 26.5, UPPER_FLOOR), (-6.9, 26, PLATFORM),  # the gatehouse
    (0, -34, 0), (19, -6, 0), (-19, -12, 0),  # the meadow
)
GUARDS = ((0, 0, 6.6), (0, -24, 6.5))
START = (0, -42, 0)


def add_game(level):
    def place(class_, position):
        level.entity(class_=class_, position=quote(*(a - b for a, b in zip(position, ORIGIN))))

    place("start", START)
    for position in ITEMS:
        place("item", position)
    for position in GUARDS:
        place("guard", position)


def make_gatehouse():
    level = Map()
    for sign in (1, -1):
        side = Side(level, sign)
        for add in (add_walls, add_floors, add_stairs, add_pillars, add_outside):
            add(side)
        for height in (FLOOR, UPPER_FLOOR):
            level.entity(class_="lamp", position=quote(sign * 6.9, 0, height + 2.6))
    add_bridge(level)
    for x in (-2.8, 2.8):
        level.entity(class_="urn", position=quote(x, -1.475, UPPER_FLOOR + 1.05))
    add_game(level)
    return level


if __name__ == "__main__":
    gatehouse = make_gatehouse()
    OUTPUT.parent.mkdir(parents=True, exist_ok=True)
    OUTPUT.write_text(gatehouse.text(), newline="\n")
    print(f"{OUTPUT}: {len(gatehouse.brushes)} brushes, {len(gatehouse.entities)} entities")
