#!/usr/bin/env python3
"""Draws the pictures of docs/examples.md: runs each example for some frames, halves what the last of them shows and
writes it as a PNG. Of an example that prints, terminal_picture draws the transcript.

Usage: make_pictures.py DIRECTORY-OF-PROGRAMS OUTPUT-DIRECTORY EXAMPLE...
"""

import os
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

FRAMES = 10  # as the tests have it
TRANSCRIPTS = Path(__file__).resolve().parent / "pictures" / "transcripts"
PICTURE_PROGRAMS = {"hello_engine": "hello_engine_picture"}  # of examples that take no picture themselves


def read_bmp(data):
    """The rows of a BMP of 32 bits a pixel from the top, as (red, green, blue)."""
    offset, = struct.unpack_from("<I", data, 10)
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    assert bits == 32 and height > 0  # bottom row first, blue before green before red
    for y in reversed(range(height)):
        row = data[offset + 4 * width * y:offset + 4 * width * (y + 1)]
        yield list(zip(row[2::4], row[1::4], row[0::4]))


def halve(rows):
    """Each pixel is the mean of two by two."""
    for upper, lower in zip(rows[::2], rows[1::2]):
        pixels = zip(upper[::2], upper[1::2], lower[::2], lower[1::2])
        yield [(sum(channel) + 2) // 4 for pixel in pixels for channel in zip(*pixel)]


def filtered(row, above):
    """Each of PNG's first three filters; the one with the smallest bytes packs best, as a rule."""
    left = [0, 0, 0] + row[:-3]
    candidates = [bytes([kind] + [(value - guess) & 255 for value, guess in zip(row, guesses)])
                  for kind, guesses in enumerate(([0] * len(row), left, above))]
    return min(candidates, key=lambda line: sum(min(value, 256 - value) for value in line))


def write_png(name, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", len(rows[0]) // 3, len(rows), 8, 2, 0, 0, 0)
    lines = b"".join(filtered(row, above) for row, above in zip(rows, [[0] * len(rows[0])] + rows))
    Path(name).write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 9)) +
                           chunk(b"IEND", b""))


def command_of(example):
    """The program that draws the picture, with its argument."""
    transcript = TRANSCRIPTS / f"{example}.txt"
    return ["terminal_picture", transcript] if transcript.exists() else [PICTURE_PROGRAMS.get(example, example)]


def draw(programs, example):
    program, *arguments = command_of(example)
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run([programs / program, *arguments, "--frames", str(FRAMES), "--screenshot", "picture.bmp"],
                       cwd=directory, check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, "LIBGL_ALWAYS_SOFTWARE": "1"})
        return list(read_bmp((Path(directory) / "picture.bmp").read_bytes()))


def main():
    programs, output, *examples = sys.argv[1:]
    Path(output).mkdir(parents=True, exist_ok=True)
    for example in examples:
        write_png(Path(output) / f"{example}.png", list(halve(draw(Path(programs).resolve(), example))))
        print(f"{example}.png")


if __name__ == "__main__":
    main()
