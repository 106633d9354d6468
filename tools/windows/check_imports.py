#!/usr/bin/env python3
"""Checks that a folder with Windows programs is complete: whatever library one of them imports is in the same folder or
comes with Windows.

Usage: check_imports.py FOLDER...
"""

import subprocess
import sys
from pathlib import Path

WINDOWS = {name + ".dll" for name in (
    "advapi32", "comdlg32", "dwmapi", "gdi32", "imm32", "iphlpapi", "kernel32", "msvcrt", "ole32", "oleaut32",
    "opengl32", "setupapi", "shell32", "user32", "version", "winmm", "ws2_32")}


def imports_of(program):
    printed = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", program], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    return [line.split()[-1] for line in printed.splitlines() if "DLL Name:" in line]


def strays_in(folder):
    programs = sorted(path for path in folder.iterdir() if path.suffix.lower() in (".dll", ".exe"))
    if not programs:
        yield f"{folder}: there is no program here"
    known = WINDOWS | {path.name.lower() for path in programs}
    for program in programs:
        imports = imports_of(program)
        if not imports:
            yield f"{program}: imports nothing, which cannot be"
        for name in imports:
            if name.lower() not in known:
                yield f"{program}: imports {name}, which neither lies beside it nor comes with Windows"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    strays = [stray for folder in sys.argv[1:] for stray in strays_in(Path(folder))]
    for stray in strays:
        print(stray)
    return 1 if strays else 0


if __name__ == "__main__":
    sys.exit(main())
