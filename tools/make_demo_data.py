#!/usr/bin/python3
"""Writes the textures of the demo into data/textures, always the same bytes.

Needs the Python that has Pillow (Debian: python3-pil), for the JPEG files. Run it from anywhere:

    /usr/bin/python3 tools/make_demo_data.py

Every picture is seamless: all noise repeats with the picture, and so do the patterns drawn over it.
"""

import math
import pathlib
import random
import struct
import zlib

from PIL import Image

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "data" / "textures"


class Noise:
    """Smooth noise in 0..1 on a lattice of columns x rows cells that repeats with the unit square."""

    def __init__(self, seed, columns, rows):
        source = random.Random(seed)
        self.columns = columns
        self.rows = rows
        self.values = [[source.random() for _ in range(columns)] for _ in range(rows)]

    def __call__(self, u, v):
        x = (u % 1.0) * self.columns
        y = (v % 1.0) * self.rows
        column, row = int(x), int(y)
        x, y = x - column, y - row
        x, y = x * x * (3 - 2 * x), y * y * (3 - 2 * y)
        upper = self.values[row % self.rows]
        lower = self.values[(row + 1) % self.rows]
        left, right = column % self.columns, (column + 1) % self.columns
        top = upper[left] + (upper[right] - upper[left]) * x
        bottom = lower[left] + (lower[right] - lower[left]) * x
        return top + (bottom - top) * y


class Cloud:
    """Several noises, each twice as fine and half as strong as the one before; 0..1."""

    def __init__(self, seed, columns, rows=None, octaves=4):
        rows = rows or columns
        self.layers = [(Noise(f"{seed}/{i}", columns << i, rows << i), 0.5**i) for i in range(octaves)]
        self.total = sum(weight for _, weight in self.layers)

    def __call__(self, u, v):
        return sum(noise(u, v) * weight for noise, weight in self.layers) / self.total


def mix(a, b, amount):
    amount = min(max(amount, 0.0), 1.0)
    return tuple(x + (y - x) * amount for x, y in zip(a, b))


def shade(color, factor):
    return tuple(x * factor for x in color)


def smooth_step(low, high, x):
    x = min(max((x - low) / (high - low), 0.0), 1.0)
    return x * x * (3 - 2 * x)


def cell_value(name, column, row):
    """A number in 0..1 that belongs to one slab, brick or plank."""
    return random.Random(f"{name}/{column}/{row}").random()


def render(size, color_at):
    """Rows of 8-bit RGB from a function of (u, v), top row first."""
    rows = []
    for y in range(size):
        row = bytearray()
        for x in range(size):
            color = color_at((x + 0.5) / size, (y + 0.5) / size)
            row += bytes(min(max(int(c + 0.5), 0), 255) for c in color)
        rows.append(bytes(row))
    return rows


def paving():
    """Sixteen slabs with rounded edges and sand in the joints."""
    grain, stain = Cloud("paving grain", 32), Cloud("paving stain", 4)
    tints = [[cell_value("paving", x, y) for x in range(4)] for y in range(4)]

    def color_at(u, v):
        row = int(v * 4)
        across = (u * 4 + 0.5 * (row % 2)) % 4
        x, y = across % 1.0, v * 4 % 1.0
        edge = min(x, 1 - x, y, 1 - y) + 0.02 * (grain(u, v) - 0.5)
        tint = tints[row][int(across)]
        stone = mix((176, 160, 136), (158, 150, 140), tint)
        stone = shade(stone, 0.86 + 0.14 * tint + 0.30 * (grain(u, v) - 0.5) + 0.25 * (stain(u, v) - 0.5))
        stone = shade(stone, 0.86 + 0.14 * smooth_step(0.03, 0.09, edge))
        return mix(shade((104, 92, 76), 0.8 + 0.5 * grain(u, v)), stone, smooth_step(0.012, 0.03, edge))

    return color_at


def limestone():
    """Pale stone in faint, uneven layers with small pits."""
    layers, grain = Cloud("limestone layers", 2, 12), Cloud("limestone grain", 32)
    pits = Noise("limestone pits", 64, 64)

    def color_at(u, v):
        layer = layers(u, v)
        color = mix((226, 214, 190), (200, 184, 156), smooth_step(0.35, 0.75, layer))
        color = shade(color, 1.0 + 0.16 * (grain(u, v) - 0.5))
        return shade(color, 1.0 - 0.22 * smooth_step(0.86, 1.0, pits(u, v)))

    return color_at


def brick():
    """Eight courses of four bricks, every other course moved by half a brick."""
    grain, wear = Cloud("brick grain", 32), Cloud("brick wear", 6)
    tints = [[cell_value("brick", x, y) for x in range(4)] for y in range(8)]

    def color_at(u, v):
        row = int(v * 8)
        across = (u * 4 + 0.5 * (row % 2)) % 4
        x, y = across % 1.0, v * 8 % 1.0
        rough = 0.05 * (grain(u, v) - 0.5)
        edge = min(min(x, 1 - x) * 2, min(y, 1 - y)) + rough
        tint = tints[row][int(across)]
        clay = mix((150, 74, 52), (182, 104, 72), tint)
        clay = shade(clay, 0.80 + 0.28 * grain(u, v) + 0.18 * wear(u, v))
        mortar = shade((172, 160, 142), 0.75 + 0.4 * grain(u, v))
        return mix(mortar, clay, smooth_step(0.05, 0.12, edge))

    return color_at


def wood():
    """Four upright boards with long grain and two nails each."""
    grain, rings = Cloud("wood grain", 48, 3), Cloud("wood rings", 6, 2, 3)
    tints = [cell_value("wood", x, 0) for x in range(4)]

    def color_at(u, v):
        board = int(u * 4)
        x = u * 4 % 1.0
        ring = 0.5 + 0.5 * math.sin(2 * math.pi * (6 * rings(u, v) + 3 * x))
        color = mix((146, 100, 58), (112, 72, 40), 0.45 * ring + 0.6 * (grain(u, v) - 0.3))
        color = shade(color, 0.85 + 0.3 * tints[board])
        for nail in (0.06, 0.94):
            if math.hypot((x - 0.5) / 4, v - nail) < 0.010:
                color = (58, 54, 52)
        return shade(color, 0.35 + 0.65 * smooth_step(0.01, 0.05, min(x, 1 - x)))

    return color_at


def bronze():
    """Brushed metal that begins to turn green."""
    brush, patina = Cloud("bronze brush", 4, 64, 3), Cloud("bronze patina", 5)

    def color_at(u, v):
        metal = shade((188, 138, 74), 0.82 + 0.36 * brush(u, v))
        green = shade((92, 142, 118), 0.8 + 0.4 * brush(u, v))
        return mix(metal, green, 0.75 * smooth_step(0.56, 0.74, patina(u, v)))

    return color_at


def water():
    """Small waves on deep blue."""
    waves, drift = Cloud("water waves", 8, 8, 3), Cloud("water drift", 4)

    def color_at(u, v):
        crest = 1 - abs(2 * waves(u + 0.05 * drift(u, v), v) - 1)
        return mix((28, 84, 104), (120, 186, 190), smooth_step(0.72, 1.0, crest))

    return color_at


def roof():
    """Rows of rounded clay tiles, each row casting a little shade on the next."""
    grain, moss = Cloud("roof grain", 32), Cloud("roof moss", 4)
    tints = [[cell_value("roof", x, y) for x in range(8)] for y in range(8)]

    def color_at(u, v):
        row = int(v * 8)
        across = (u * 8 + 0.5 * (row % 2)) % 8
        x, y = across % 1.0, v * 8 % 1.0
        lower_edge = 0.80 + 0.16 * math.sin(math.pi * x)
        tint = tints[row][int(across)]
        clay = mix((168, 84, 52), (204, 118, 74), tint)
        clay = shade(clay, 0.62 + 0.42 * math.sin(math.pi * x) ** 0.6)
        clay = shade(clay, 0.78 + 0.22 * y + 0.25 * (grain(u, v) - 0.5))
        clay = mix(clay, (104, 104, 62), 0.5 * smooth_step(0.6, 0.8, moss(u, v)))
        return shade(clay, 0.5 + 0.5 * smooth_step(0.0, 0.06, abs(y - lower_edge)) if y < lower_edge + 0.06 else 0.72)

    return color_at


def grass():
    """A meadow seen from above: patches, and blades that are noise drawn out in one direction."""
    patches, blades, flecks = Cloud("grass patches", 4), Cloud("grass blades", 96, 40, 3), Cloud("grass flecks", 48)

    def color_at(u, v):
        color = mix((74, 100, 40), (118, 136, 62), patches(u, v) * 1.4 - 0.2)
        color = shade(color, 0.55 + 0.9 * blades(u + 0.02 * flecks(u, v), v))
        return mix(color, (170, 160, 92), 0.5 * smooth_step(0.66, 0.8, flecks(u, v)))

    return color_at


def leaves():
    """Dense foliage: overlapping small clumps with dark gaps."""
    clumps, detail = Cloud("leaves clumps", 16), Cloud("leaves detail", 40)

    def color_at(u, v):
        depth = 0.6 * clumps(u, v) + 0.4 * detail(u, v)
        color = mix((22, 44, 22), (86, 122, 52), smooth_step(0.34, 0.66, depth))
        return shade(color, 0.8 + 0.4 * detail(u, v))

    return color_at


def write_png(name, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    size = len(rows)
    lines = b"".join(b"\1" + difference_to_left(row) for row in rows)
    header = struct.pack(">IIBBBBB", size, size, 8, 2, 0, 0, 0)
    data = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b"")
    (OUTPUT / name).write_bytes(data)


def difference_to_left(row):
    """PNG's filter 1: neighbouring pixels are alike, so their differences pack better."""
    return bytes((row[i] - (row[i - 3] if i >= 3 else 0)) & 255 for i in range(len(row)))


def write_jpeg(name, rows):
    Image.frombytes("RGB", (len(rows), len(rows)), b"".join(rows)).save(OUTPUT / name, quality=88)


def main():
    OUTPUT.mkdir(parents=True, exist_ok=True)
    for texture in (paving, limestone, brick, wood, bronze, water):
        write_png(f"{texture.__name__}.png", render(256, texture()))
    write_jpeg("roof.jpg", render(256, roof()))
    write_jpeg("grass.jpg", render(512, grass()))
    write_jpeg("leaves.jpg", render(256, leaves()))


if __name__ == "__main__":
    main()
