# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The grounds that glyphs stand on, and the assembly of a whole SVG document."""
from dataclasses import replace

from .shapes import Group, number, points, rounded

GRID = 128
_NOTICE = "<!-- SPDX-FileCopyrightText: The TEKO authors, SPDX-License-Identifier: Apache-2.0 -->"


def document(width, height, body):
    """A whole picture; its natural size in pixels is its size in units."""
    return (f'<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny" width="{width}" '
            f'height="{height}" viewBox="0 0 {width} {height}">\n{_NOTICE}\n{body}\n</svg>\n')


def button(glyph, state, palette, width=GRID, radius=26):
    """A glyph on its ground, in one state. `radius` 64 makes a disc, or a pill when it is wide."""
    fine = radius == GRID / 2  # shown at about 30 pixels: lines twice as strong
    return document(width, GRID, gradients(palette) + "\n" + _ground(width, radius, state, fine)
                    + "\n" + _raised(glyph, state, palette, width))


def gradients(palette):
    """The definitions of "tile" and "rim", the vertical gradients of a ground and of its edge."""
    def vertical(name, top, bottom):
        return (f'<linearGradient id="{name}" gradientUnits="userSpaceOnUse" x1="0" y1="4" x2="0" y2="124">'
                f'<stop offset="0" stop-color="{palette[top]}"/><stop offset="1" stop-color="{palette[bottom]}"/>'
                "</linearGradient>")
    return "<defs>" + vertical("tile", "top", "bottom") + vertical("rim", "rim_top", "rim_bottom") + "</defs>"


def _ground(width, radius, state, fine):
    thick = (4 if fine else 2) if state != "hovered" else (9 if fine else 5)
    inset = 2 + thick / 2
    outline = rounded(inset, inset, width - 2 * inset, GRID - 2 * inset, radius - inset)
    body = f'<path fill="url(#tile)" stroke="url(#rim)" stroke-width="{number(thick)}" d="{outline}"/>'
    if state == "pressed":
        ring = 11 if fine else 9
        inner = rounded(ring, ring, width - 2 * ring, GRID - 2 * ring, radius - ring)
        body += f'<path fill="none" stroke="#02071f" stroke-width="{5 if fine else 3}" d="{inner}"/>'
    return body


def _raised(glyph, state, palette, width):
    """The glyph above its shadow; a pressed one sinks and lies flat, a disabled one lies flat."""
    face = "".join(shape.svg(palette) for shape in glyph)
    if state == "pressed":
        scale = 0.95
        at = points(width / 2 * (1 - scale), GRID / 2 * (1 - scale) + 2)
        return f'<g transform="translate({at}) scale({scale})">{face}</g>'
    if state == "disabled":
        return face
    return Group("translate(0 2.5)", tuple(map(_shadow, glyph))).svg(palette) + "\n" + face


def _shadow(shape):
    if isinstance(shape, Group):
        return Group(shape.transform, tuple(map(_shadow, shape.members)))
    return replace(shape, role="shade")


def plain(glyph, palette):
    """A glyph without a ground."""
    return document(GRID, GRID, "".join(shape.svg(palette) for shape in glyph))

