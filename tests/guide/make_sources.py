#!/usr/bin/env python3
"""Writes the C++ of the guides into a folder: a file for each program, and one for all fragments of a guide.

make_sources.py FOLDER GUIDE...

A file that would stay the same is not written, so that nothing is compiled anew without need. blocks.cmake lists what
there is. What is wrong with a guide is left to the tests: a mistake in a document does not stop a build.
"""

import sys
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from guide_blocks import read_guide  # noqa: E402

PRELUDE = """#include <xum/xum.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

"""


def write_if_changed(path, text):
    if path.is_file() and path.read_text(encoding="utf-8") == text:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")


def placed(block, guide):
    """The code, for the compiler at its place in the guide: that is where it shows what is wrong."""
    return f'#line {block.line} "docs/guide/{guide.name}"\n{block.text()}'


def fragment(block, guide, here):
    """The fragment in its frame; `here` is the name of the file for what is not in the guide."""
    frame = HERE / "frames" / f"{block.name}.cpp.in"
    text = frame.read_text(encoding="utf-8") if frame.is_file() else "#error there is no such frame\n@fragment@\n"
    before, after = text.split("@fragment@\n")
    return (f'namespace fragment_{block.line} {{\n{before}{placed(block, guide)}'
            f'#line 1 "{here}"\n{after}}}\n\n')


def main(folder, guides):
    programs, fragments = [], []
    for guide in guides:
        blocks, _ = read_guide(guide)
        for block in blocks:
            if block.kind == "program":
                programs.append(block.name)
                write_if_changed(folder / f"{block.name}.cpp", placed(block, guide))
        parts = [fragment(block, guide, f"{guide.stem}_fragments.cpp") for block in blocks if block.kind == "fragment"]
        if parts:
            fragments.append(guide.stem)
            write_if_changed(folder / f"{guide.stem}_fragments.cpp", PRELUDE + "".join(parts))
    lists = "".join(f"set({name} {' '.join(values)})\n"
                    for name, values in (("guide_programs", programs), ("guides_with_fragments", fragments)))
    write_if_changed(folder / "blocks.cmake", lists)


if __name__ == "__main__":
    main(Path(sys.argv[1]), [Path(name) for name in sys.argv[2:]])
