# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Paths and painted shapes: the vocabulary that every picture is drawn with.

Units are those of the common grid (128 to a tile), y grows downwards. Curves are cubic only, since SVG Tiny has no arcs.
"""
import math
from dataclasses import dataclass

CIRCLE = 0.5522847498  # handle length of a cubic that draws a quarter circle of radius 1


def number(value):
    """The shortest text of a coordinate at the precision of a picture."""
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def points(*values):
    return " ".join(number(v) for v in values)


def polygon(*corners):
    """A closed path through (x, y) corners."""
    return "M" + "L".join(points(*corner) for corner in corners) + "Z"


def polyline(*corners):
    return "M" + "L".join(points(*corner) for corner in corners)


def rounded(x, y, width, height, radius):
    """A rectangle with rounded corners, clockwise."""
    r = min(radius, width / 2, height / 2)
    k = r * (1 - CIRCLE)
    right, bottom = x + width, y + height
    return (f"M{points(x + r, y)}H{number(right - r)}C{points(right - k, y, right, y + k, right, y + r)}"
            f"V{number(bottom - r)}C{points(right, bottom - k, right - k, bottom, right - r, bottom)}"
            f"H{number(x + r)}C{points(x + k, bottom, x, bottom - k, x, bottom - r)}"
            f"V{number(y + r)}C{points(x, y + k, x + k, y, x + r, y)}Z")


def arc(cx, cy, rx, ry, start, end, move="M"):
    """An open elliptic arc between two angles in degrees (0 is right, 90 is down), in quarter turns or less."""
    count = max(1, math.ceil(abs(end - start) / 90 - 1e-9))
    step = math.radians(end - start) / count
    handle = 4 / 3 * math.tan(step / 4)
    angle = math.radians(start)
    path = move + points(cx + rx * math.cos(angle), cy + ry * math.sin(angle))
    for _ in range(count):
        after = angle + step
        path += "C" + points(
            cx + rx * (math.cos(angle) - handle * math.sin(angle)), cy + ry * (math.sin(angle) + handle * math.cos(angle)),
            cx + rx * (math.cos(after) + handle * math.sin(after)), cy + ry * (math.sin(after) - handle * math.cos(after)),
            cx + rx * math.cos(after), cy + ry * math.sin(after))
        angle = after
    return path


def ellipse(cx, cy, rx, ry):
    return arc(cx, cy, rx, ry, 0, 360) + "Z"


def circle(cx, cy, radius):
    return ellipse(cx, cy, radius, radius)


def mirrored(start, *curves):
    """A closed outline symmetric about x = 0: cubic curves down its right half, then back up the mirrored left half."""
    path = "M" + points(*start) + "".join("C" + points(*curve) for curve in curves)
    ends = [start] + [curve[4:] for curve in curves]
    for curve, end in zip(reversed(curves), reversed(ends[:-1])):
        path += "C" + points(-curve[2], curve[3], -curve[0], curve[1], -end[0], end[1])
    return path + "Z"


@dataclass(frozen=True)
class Shape:
    """One painted path. `role` names a colour of the palette; a width makes it a line instead of an area."""

    path: str
    role: str
    width: float = 0

    def svg(self, palette):
        colour = palette[self.role]
        if not self.width:
            return f'<path fill="{colour}" d="{self.path}"/>'
        return (f'<path fill="none" stroke="{colour}" stroke-width="{number(self.width)}" stroke-linecap="round" '
                f'stroke-linejoin="round" d="{self.path}"/>')


@dataclass(frozen=True)
class Group:
    """Shapes that share a transform."""

    transform: str
    members: tuple

    def svg(self, palette):
        return f'<g transform="{self.transform}">' + "".join(m.svg(palette) for m in self.members) + "</g>"


def placed(members, x, y, turn=0, scale=1):
    """Shapes drawn about their own origin, turned clockwise by degrees, scaled, and moved to (x, y)."""
    transform = f"translate({points(x, y)})"
    if turn:
        transform += f" rotate({number(turn)})"
    if scale != 1:
        transform += f" scale({number(scale)})"
    return Group(transform, tuple(members))


def ink(path, width=0):
    return Shape(path, "ink", width)


def accent(path, width=0):
    return Shape(path, "accent", width)


def hole(path, width=0):
    return Shape(path, "hole", width)
