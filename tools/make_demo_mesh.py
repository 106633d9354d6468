#!/usr/bin/python3
"""Writes the model of the demo's urn, data/meshes/urn.obj, always the same bytes.

Run it from anywhere, then import the model:

    tools/make_demo_mesh.py
    xum mesh import --up z data/meshes/urn.obj data/meshes/urn.mesh

An urn of stone with its foot at the origin, 1 unit high: a profile turned about the vertical axis.
"""

import math
import pathlib

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "data" / "meshes" / "urn.obj"

SIDES = 24
# Radius and height from the middle of the foot, up the outside, over the rim and down to the bottom inside.
PROFILE = [(0.0, 0.0), (0.20, 0.0), (0.20, 0.05), (0.15, 0.08), (0.09, 0.13), (0.08, 0.18), (0.12, 0.22), (0.22, 0.29),
           (0.30, 0.38), (0.345, 0.49), (0.35, 0.59), (0.32, 0.69), (0.26, 0.77), (0.215, 0.83), (0.21, 0.88),
           (0.25, 0.93), (0.31, 0.96), (0.32, 0.98), (0.31, 1.0), (0.27, 0.98), (0.19, 0.90), (0.18, 0.83),
           (0.24, 0.72), (0.20, 0.55), (0.0, 0.45)]


def make_urn():
    positions, coordinates, indexes = [], [], []
    for row, (radius, height) in enumerate(PROFILE):
        for side in range(SIDES + 1):  # the first column again: there the texture ends
            angle = 2 * math.pi * (side % SIDES) / SIDES
            positions.append((radius * math.cos(angle), radius * math.sin(angle), height))
            coordinates.append((2 * side / SIDES, 1 - row / (len(PROFILE) - 1)))
    for row in range(len(PROFILE) - 1):
        for side in range(SIDES):
            a = row * (SIDES + 1) + side
            b, c, d = a + 1, a + SIDES + 2, a + SIDES + 1
            if PROFILE[row][0] > 0:
                indexes += [a, b, c]
            if PROFILE[row + 1][0] > 0:
                indexes += [a, c, d]
    return positions, coordinates, indexes


def model_text(positions, coordinates, indexes):
    """As OBJ counts: from 1, and texture coordinates upwards."""
    lines = ["v %.6f %.6f %.6f" % position for position in positions]
    lines += ["vt %.6f %.6f" % (u, 1 - v) for u, v in coordinates]
    for triangle in zip(*[iter(indexes)] * 3):
        lines.append("f " + " ".join("%d/%d" % (index + 1, index + 1) for index in triangle))
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    OUTPUT.parent.mkdir(parents=True, exist_ok=True)
    OUTPUT.write_text(model_text(*make_urn()))
    print(f"{OUTPUT}: {OUTPUT.stat().st_size} bytes")
