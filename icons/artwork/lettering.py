# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The letters of the captions: one stroke along a geometric skeleton, so that no picture depends on a font.

Skeletons are drawn for a cap height of 100 on the baseline y = 0; small letters are 70 high, descenders 28 deep.
"""
from .shapes import Shape, arc, polyline

WEIGHT = 16
_ROUND, _STRAIGHT, _OPEN = 14, 18, 9  # room beside a bowl, a stem and a diagonal or open side

_BOWL = arc(32, -35, 32, 35, 0, 360) + "Z"
_DOT = "M0 -99L0.5 -99"


def _arch(x, width):
    """From the left stem up and over to the right stem, down to the baseline."""
    return arc(x + width / 2, -40, width / 2, 30, 180, 360) + f"L{x + width} 0"


# letter: (width, room at the left, room at the right, strokes)
_LETTERS = {
    " ": (20, 6, 6, []),
    "A": (78, _OPEN, _OPEN, [polyline((0, 0), (39, -100), (78, 0)), polyline((14, -34), (64, -34))]),
    "B": (54, _STRAIGHT, _ROUND, ["M0 -100L0 0L28 0" + "C44 0 54 -12 54 -27C54 -43 44 -54 28 -54L0 -54",
                                  "M0 -100L25 -100C40 -100 48 -91 48 -77C48 -63 40 -54 25 -54"]),
    "D": (68, _STRAIGHT, _ROUND, ["M0 -100L0 0L22 0C52 0 68 -20 68 -50C68 -80 52 -100 22 -100Z"]),
    "F": (48, _STRAIGHT, _OPEN, [polyline((48, -100), (0, -100), (0, 0)), polyline((0, -53), (42, -53))]),
    "G": (84, _ROUND, _STRAIGHT, [arc(46, -50, 46, 50, -42, -360) + "L54 -50"]),
    "I": (0, _STRAIGHT, _STRAIGHT, [polyline((0, 0), (0, -100))]),
    "M": (88, _STRAIGHT, _STRAIGHT, [polyline((0, 0), (0, -100), (44, -34), (88, -100), (88, 0))]),
    "O": (92, _ROUND, _ROUND, [arc(46, -50, 46, 50, 0, 360) + "Z"]),
    "P": (54, _STRAIGHT, _OPEN, ["M0 0L0 -100L27 -100C44 -100 54 -88 54 -72C54 -56 44 -44 27 -44L0 -44"]),
    "S": (54, _ROUND, _ROUND, ["M51 -83C46 -94 38 -100 27 -100C12 -100 2 -90 2 -76C2 -62 12 -56 28 -51"
                               "C46 -46 55 -39 55 -25C55 -10 44 0 28 0C14 0 4 -8 0 -21"]),
    "V": (78, _OPEN, _OPEN, [polyline((0, -100), (39, 0), (78, -100))]),
    "a": (64, _ROUND, _STRAIGHT, [_BOWL, polyline((64, -70), (64, 0))]),
    "c": (52, _ROUND, _OPEN, [arc(34, -35, 34, 35, -48, -312)]),
    "e": (64, _ROUND, _ROUND, ["M2 -35L64 -35" + arc(32, -35, 32, 35, 0, -312, "L")]),
    "f": (32, _OPEN, _OPEN, ["M12 0L12 -78C12 -92 20 -100 33 -98", polyline((-2, -68), (30, -68))]),
    "g": (64, _ROUND, _STRAIGHT, [_BOWL, "M64 -70L64 -2C64 18 52 29 33 29C20 29 11 24 6 15"]),
    "h": (54, _STRAIGHT, _STRAIGHT, [polyline((0, -100), (0, 0)), _arch(0, 54)]),
    "i": (0, _STRAIGHT, _STRAIGHT, [polyline((0, -70), (0, 0)), _DOT]),
    "l": (0, _STRAIGHT, _STRAIGHT, [polyline((0, -100), (0, 0))]),
    "m": (96, _STRAIGHT, _STRAIGHT, [polyline((0, -70), (0, 0)), _arch(0, 48), _arch(48, 48)]),
    "n": (54, _STRAIGHT, _STRAIGHT, [polyline((0, -70), (0, 0)), _arch(0, 54)]),
    "o": (66, _ROUND, _ROUND, [arc(33, -35, 33, 35, 0, 360) + "Z"]),
    "p": (64, _STRAIGHT, _ROUND, [arc(32, -35, 32, 35, 0, 360) + "Z", polyline((0, -70), (0, 30))]),
    "r": (32, _STRAIGHT, _OPEN, [polyline((0, -70), (0, 0)), "M0 -38C2 -58 14 -71 32 -68"]),
    "s": (44, _ROUND, _ROUND, ["M42 -58C38 -66 31 -70 22 -70C10 -70 3 -63 3 -53C3 -43 10 -39 23 -36"
                               "C38 -32 45 -28 45 -18C45 -7 36 0 23 0C12 0 4 -5 0 -14"]),
    "t": (32, _OPEN, _OPEN, ["M12 -92L12 -20C12 -6 20 1 33 -2", polyline((-4, -68), (31, -68))]),
    "u": (54, _STRAIGHT, _STRAIGHT, [arc(27, -30, 27, 30, 180, 0, "M0 -70L"), polyline((54, -70), (54, 0))]),
    "v": (58, _OPEN, _OPEN, [polyline((0, -70), (29, 0), (58, -70))]),
    "y": (60, _OPEN, _OPEN, [polyline((0, -70), (31, 0)), polyline((60, -70), (20, 29))]),
}


def width(text):
    """The set width of a text at a cap height of 100, without the room outside its first and last letter."""
    total = sum(left + w + right for w, left, right, _ in map(_LETTERS.__getitem__, text))
    return total - _LETTERS[text[0]][1] - _LETTERS[text[-1]][2]


def caption(text, centre, baseline, cap, role="ink"):
    """The shapes of a text set in one line, centred on x = `centre`, `cap` units high."""
    scale = cap / 100
    return _set(text, centre - width(text) * scale / 2, baseline, scale, role)


def caption_from(text, left, baseline, cap, role="ink"):
    """The shapes of a text set in one line from x = `left`."""
    return _set(text, left, baseline, cap / 100, role)


def _set(text, x, y, scale, role):
    x -= _LETTERS[text[0]][1] * scale
    shapes = []
    for letter in text:
        w, left, right, strokes = _LETTERS[letter]
        shapes += [Shape(_moved(s, x + left * scale, y, scale), role, WEIGHT * scale) for s in strokes]
        x += (left + w + right) * scale
    return shapes


def _moved(path, dx, dy, scale):
    """An absolute path of M, L, C and Z commands, scaled and then moved."""
    result, pair = "", 0
    for token in _tokens(path):
        if token.isalpha():
            result += token
            pair = 0
            continue
        value = float(token) * scale + (dy if pair % 2 else dx)
        result += (" " if pair else "") + f"{value:.2f}".rstrip("0").rstrip(".")
        pair += 1
    return result


def _tokens(path):
    for command in "MLCZ":
        path = path.replace(command, f" {command} ")
    return path.split()
