# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The actions: main buttons with a caption, small round buttons, and the emblems without a ground."""
import math

from .instruments import acoustic_guitar, microphone
from .lettering import caption, caption_from
from .shapes import accent, arc, circle, ellipse, hole, ink, placed, polygon, polyline, rounded


def note(scale=1.0, x=0.0, y=0.0):
    """Two beamed eighth notes about (x, y), as paths."""
    def at(px, py):
        return x + px * scale, y + py * scale
    beam = polygon(at(-10, -19), at(16, -24), at(16, -14), at(-10, -9))
    stems = [polygon(at(-10, -19), at(-5.5, -20), at(-5.5, 16), at(-10, 16)),
             polygon(at(11.5, -23), at(16, -24), at(16, 11), at(11.5, 11))]
    heads = [ellipse(*at(-13, 16), 8 * scale, 6.5 * scale), ellipse(*at(8.5, 11), 8 * scale, 6.5 * scale)]
    return [beam, *stems, *heads]


def folder(note_scale, gap):
    """An open folder with a note on its front, which a gap parts from its back; 94 wide, 66 high."""
    back = ("M-44 -27C-44 -31 -41 -33 -38 -33L-18 -33C-15 -33 -13 -32 -11 -30L-6 -25L34 -25C38 -25 40 -23 40 -19"
            "L40 20L-44 20Z")
    front = ("M-34 -13L44 -13C48 -13 50 -10 49 -7L41 28C40 31 38 33 35 33L-39 33C-43 33 -44 31 -44 28"
             "L-39 -9C-38 -12 -37 -13 -34 -13Z")
    return [accent(back), hole(front, gap), ink(front), *map(hole, note(note_scale, 1, 11))]


def gear(teeth=8, outer=39, root=30):
    """The outline of a toothed wheel about the origin."""
    corners = []
    for tooth in range(teeth):
        middle = 2 * math.pi * tooth / teeth
        for radius, side in ((root, -0.235), (outer, -0.16), (outer, 0.16), (root, 0.235)):
            corners.append((radius * math.sin(middle + side), -radius * math.cos(middle + side)))
    return polygon(*corners)


def _select_file():
    return [placed(folder(0.72, 5), 62.5, 51.5, 0, 0.94), *caption("Select File", 64, 112, 14)]


def _settings():
    wheel = [ink(gear()), ink(gear(), 4), hole(circle(0, 0, 17)), accent(circle(0, 0, 9))]
    return [placed(wheel, 64, 52, 0, 0.92), *caption("Settings", 64, 112, 14)]


def _archive():
    body = "M-35 -9L35 -9L35 27C35 31 32 34 28 34L-28 34C-32 34 -35 31 -35 27Z"
    box = [accent(rounded(-41, -34, 82, 20, 5)), ink(body), hole(rounded(-15, 2, 30, 9, 4.5))]
    return [placed(box, 64, 52), *caption("Archive", 64, 112, 14)]


def _select_instrument():
    return [placed(acoustic_guitar(), 43, 42.5, -26, 0.63), placed(microphone(), 87, 42.5, 30, 0.63),
            *caption("Select", 64, 94.5, 13), *caption("Instrument", 64, 113, 12.8)]


def _output_format():
    page = "M-27 -31C-27 -34 -25 -36 -22 -36L8 -36L27 -17L27 33C27 36 25 38 22 38L-22 38C-25 38 -27 36 -27 33Z"
    fold = polygon((8, -36), (8, -17), (27, -17))
    glyph = [ink(page), hole(fold), *map(hole, note(0.85, -1, 9)),
             accent(polyline((41, 4), (70, 4)), 9), accent(polyline((58, -10), (72, 4), (58, 18)), 9)]
    return [placed(glyph, 46, 43, 0, 0.8), *caption("Output", 64, 94.5, 13), *caption("Format", 64, 113, 13)]


def _open_in():
    """An open frame that an emblem fits into (32 x 32 about (62, 50)); the lower third is free for the view's label."""
    frame = "M70 25L46 25C40 25 36 29 36 35L36 64C36 70 40 74 46 74L82 74C88 74 92 70 92 64L92 47"
    return [ink(frame, 6), accent(polyline((81, 38), (98, 21)), 6.5), accent(polyline((84, 20), (99, 20), (99, 35)), 6.5)]


def _home():
    walls = "M-24 -2L0 -24L24 -2L24 25C24 28 22 30 19 30L-19 30C-22 30 -24 28 -24 25Z"
    house = [ink(walls), hole("M-8 30L-8 13C-8 10 -6 8 -3 8L3 8C6 8 8 10 8 13L8 30Z"),
             accent(polyline((-34, -1), (0, -32), (34, -1)), 8.5)]
    return [placed(house, 64, 63, 0, 1.08)]


def _help():
    return [ink(arc(64, 47, 17, 17, 190, 390) + "C78 63 64 64 64 77", 12), accent(circle(64, 97, 7.5))]


def _select_file_small():
    return [placed(folder(0.8, 7), 62, 64, 0, 0.86)]


def _my_account():
    shoulders = "M-31 34C-31 16 -18 6 0 6C18 6 31 16 31 34C31 37 29 38 27 38L-27 38C-29 38 -31 37 -31 34Z"
    return [placed([accent(circle(0, -17, 17)), accent(shoulders)], 103, 61), *caption_from("My Account", 172, 85, 50)]


def _eye():
    lids = "M22 64C34 45 48 37 64 37C80 37 94 45 106 64C94 83 80 91 64 91C48 91 34 83 22 64Z"
    return [ink(lids), hole(circle(64, 64, 19)), accent(circle(64, 64, 10))]


def _eye_struck():
    return [*_eye(), hole(polyline((39, 92), (89, 36)), 20), ink(polyline((39, 92), (89, 36)), 9)]


def _audio():
    beam, *rest = note(2.2, 60, 70)
    return [accent(beam), *map(ink, rest)]


def _video():
    perforation = [rounded(x, y, 11, 11, 3) for x in (17, 38, 59, 80, 101) for y in (33, 84)]
    triangle = polygon((55, 53), (78, 64), (55, 75))
    return [ink(rounded(8, 26, 112, 76, 14)), *map(hole, perforation), hole(rounded(16, 50, 96, 28, 5)),
            accent(triangle), accent(triangle, 3)]


def _play():
    triangle = polygon((38, 26), (100, 64), (38, 102))
    return [ink(triangle), ink(triangle, 16)]


def _download():
    return [ink(polyline((64, 16), (64, 78)), 18), ink(polyline((34, 52), (64, 82), (94, 52)), 18),
            ink(polyline((20, 112), (108, 112)), 18)]


def _lock():
    return [ink("M40 60L40 40" + arc(64, 40, 24, 24, 180, 360, "L") + "L88 60", 15), ink(rounded(20, 56, 88, 64, 14)),
            hole(circle(64, 82, 10)), hole(polyline((64, 84), (64, 100)), 9)]


def _process():
    heads = [polygon((86, 60), (126, 60), (106, 84)), polygon((42, 68), (2, 68), (22, 44))]
    return [ink(arc(64, 64, 42, 42, -132, -5), 15), ink(arc(64, 64, 42, 42, 48, 175), 15),
            *map(ink, heads), *(ink(head, 4) for head in heads)]


TILES = {"Select File": _select_file(), "Settings": _settings(), "archive": _archive(),
         "Select Instrument": _select_instrument(), "Output Format": _output_format(), "open in": _open_in()}
DISCS = {"Help": _help(), "home": _home(), "Select File Small": _select_file_small()}
PILLS = {"My Account": _my_account()}
EYES = {"password-visible": _eye(), "password-hidden": _eye_struck()}
EMBLEMS = {"audio": _audio(), "video": _video(), "play": _play(), "download": _download(), "lock": _lock(),
           "process": _process()}
