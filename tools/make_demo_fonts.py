#!/usr/bin/python3
"""Makes the fonts of the demo in data/fonts of DejaVu, always the same bytes: hud.ttf, the Latin-1 part of DejaVu Sans
Bold for loadFont; hud.png, a picture of DejaVu Sans Mono Bold for loadImageFont; LICENSE, from the font itself.

Needs fonts-dejavu-core and python3-fonttools of Debian, and the program xum. Run it from anywhere:

    python3 tools/make_demo_fonts.py build/dev/bin/xum           # writes the files, prints how to load the picture
    python3 tools/make_demo_fonts.py --check build/dev/bin/xum   # compares them with what it would write
"""

import argparse
import pathlib
import subprocess
import sys
import tempfile

from fontTools import subset

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "data" / "fonts"
SOURCES = pathlib.Path("/usr/share/fonts/truetype/dejavu")
LATIN_1 = [*range(0x20, 0x7F), *range(0xA0, 0x100)]
PICTURE_SIZE = 16  # points; letters as high as 12 pixels
LICENSE_RECORD = 13  # of the table of names

LICENSE_HEADING = """hud.ttf is a part of the font DejaVu Sans Bold, hud.png is drawn with DejaVu Sans Mono Bold. The rest of this file is
their licence, as the fonts hold it.

"""


def write_font(path):
    """Returns the licence."""
    options = subset.Options()
    options.legacy_kern = True  # for builds of SDL_ttf that read no other kerning
    options.notdef_outline = True
    options.name_IDs = ["*"]
    options.recalc_timestamp = False
    options.layout_features = ["kern"]
    options.drop_tables += ["FFTM"]
    font = subset.load_font(str(SOURCES / "DejaVuSans-Bold.ttf"), options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=LATIN_1)
    subsetter.subset(font)
    subset.save_font(font, str(path), options)
    return font["name"].getDebugName(LICENSE_RECORD)


def write_all(root, xum):
    """Returns what the program says of the picture."""
    root.mkdir(parents=True, exist_ok=True)
    license_lines = [line.rstrip() for line in write_font(root / "hud.ttf").split("\n")]
    (root / "LICENSE").write_text(LICENSE_HEADING + "\n".join(license_lines) + "\n")
    baking = [xum, "font", "bake", str(SOURCES / "DejaVuSansMono-Bold.ttf"), str(PICTURE_SIZE), "hud.png"]
    return subprocess.run(baking, cwd=root, check=True, stdout=subprocess.PIPE, text=True).stdout


def check(xum):
    """The number of files that differ from what would be written, each named."""
    with tempfile.TemporaryDirectory() as directory:
        root = pathlib.Path(directory)
        write_all(root, xum)
        names = sorted(path.name for path in root.iterdir())
        different = [name for name in names if (root / name).read_bytes() != (OUTPUT / name).read_bytes()]
    for name in different:
        print(f"{OUTPUT / name} is not what this script writes", file=sys.stderr)
    return len(different)


def main():
    parser = argparse.ArgumentParser(description="Makes the fonts of the demo of DejaVu.")
    parser.add_argument("--check", action="store_true", help="only compare the files with what would be written")
    parser.add_argument("xum", type=lambda path: str(pathlib.Path(path).resolve()), help="the program")
    arguments = parser.parse_args()
    if arguments.check:
        sys.exit(1 if check(arguments.xum) > 0 else 0)
    print(write_all(OUTPUT, arguments.xum), end="")


if __name__ == "__main__":
    main()
