#!/usr/bin/python3
"""Writes the small pictures that the image tests read and the image fuzzer starts from.

    make_images.py DIRECTORY...

All show the same 5 x 3 picture as far as their format can; the tests know its formula. PNG and BMP files are put
together byte by byte, so that every variant of the formats can be had; the JPEG files come from Debian's python3-pil.
The results lie in the repository, hence nothing but a change of the pictures needs this script.
"""

import struct
import sys
import zlib
from pathlib import Path

WIDTH, HEIGHT = 5, 3


def color(x, y):
    return (10 + 40 * x, 5 + 80 * y, 100 + 10 * x * y)


def alpha(x, y):
    return 64 if (x, y) == (2, 1) else 255


def rows(pixel_bytes):
    return [b"".join(bytes(pixel_bytes(x, y)) for x in range(WIDTH)) for y in range(HEIGHT)]


# PNG

def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(bit_depth, color_type, scanlines, before_data=b"", interlace=0):
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, bit_depth, color_type, 0, 0, interlace)
    data = zlib.compress(b"".join(b"\0" + line for line in scanlines), 9)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + before_data + chunk(b"IDAT", data) + chunk(b"IEND", b"")


def adam7_scanlines(pixel_bytes):
    passes = ((0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2))
    for first_x, first_y, step_x, step_y in passes:
        for y in range(first_y, HEIGHT, step_y):
            line = b"".join(bytes(pixel_bytes(x, y)) for x in range(first_x, WIDTH, step_x))
            if line:
                yield line


def wide(values):
    """The same values with 16 bits a channel; the lower byte must get lost again."""
    return b"".join(bytes((value, 0x80)) for value in values)


PALETTE = [color(x, y) for y in range(HEIGHT) for x in range(WIDTH)]
PALETTE_CHUNK = chunk(b"PLTE", b"".join(bytes(entry) for entry in PALETTE))
PALETTE_ALPHA_CHUNK = chunk(b"tRNS", bytes(alpha(x, y) for y in range(HEIGHT) for x in range(WIDTH)))


def index(x, y):
    return (y * WIDTH + x,)


def grey(x, y):
    return (color(x, y)[0],)


def rgba(x, y):
    return color(x, y) + (alpha(x, y),)


PNG_FILES = {
    "rgb.png": png(8, 2, rows(color)),
    "rgb_16_bit.png": png(16, 2, rows(lambda x, y: wide(color(x, y)))),
    "rgb_color_key.png": png(8, 2, rows(color), chunk(b"tRNS", struct.pack(">HHH", *color(2, 1)))),
    "rgba.png": png(8, 6, rows(rgba)),
    "rgba_16_bit.png": png(16, 6, rows(lambda x, y: wide(rgba(x, y)))),
    "rgba_interlaced.png": png(8, 6, adam7_scanlines(rgba), interlace=1),
    "rgba_opaque.png": png(8, 6, rows(lambda x, y: color(x, y) + (255,))),
    "grey.png": png(8, 0, rows(grey)),
    "grey_1_bit.png": png(1, 0, [b"\xa8", b"\x50", b"\xa8"]),
    "grey_16_bit.png": png(16, 0, rows(lambda x, y: wide(grey(x, y)))),
    "grey_alpha.png": png(8, 4, rows(lambda x, y: grey(x, y) + (alpha(x, y),))),
    "palette.png": png(8, 3, rows(index), PALETTE_CHUNK),
    "palette_alpha.png": png(8, 3, rows(index), PALETTE_CHUNK + PALETTE_ALPHA_CHUNK),
}


# BMP

def bmp(bits, pixel_bytes, palette=b""):
    lines = [line + bytes(-len(line) % 4) for line in reversed(rows(pixel_bytes))]
    pixels = b"".join(lines)
    offset = 14 + 40 + len(palette)
    info = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, bits, 0, len(pixels), 2835, 2835, len(palette) // 4, 0)
    return b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset) + info + palette + pixels


def bgr(x, y):
    return color(x, y)[::-1]


BMP_FILES = {
    "bgr.bmp": bmp(24, bgr),
    "bgra.bmp": bmp(32, lambda x, y: bgr(x, y) + (alpha(x, y),)),
    "palette.bmp": bmp(8, index, b"".join(bytes(entry[::-1]) + b"\0" for entry in PALETTE)),
}


# JPEG: flat colours, so that the loss stays within a step or two.

def jpeg_files():
    import io
    from PIL import Image

    def encode(mode, fill, **options):
        stream = io.BytesIO()
        Image.new(mode, (WIDTH, HEIGHT), fill).save(stream, "JPEG", quality=95, **options)
        return stream.getvalue()

    return {
        "baseline.jpg": encode("RGB", color(3, 1)),
        "progressive.jpg": encode("RGB", color(3, 1), progressive=True),
        "grey.jpg": encode("L", color(3, 1)[0]),
    }


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    files = {**PNG_FILES, **BMP_FILES, **jpeg_files()}
    for directory in map(Path, sys.argv[1:]):
        directory.mkdir(parents=True, exist_ok=True)
        for name, contents in files.items():
            (directory / name).write_bytes(contents)


main()
