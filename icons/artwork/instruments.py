# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The five instruments, each about its own origin, and their tiles."""
import math

from .lettering import caption
from .shapes import accent, circle, ellipse, hole, ink, mirrored, placed, polygon, polyline, rounded


def acoustic_guitar():
    """Upright, neck up; 104 high, 44 wide."""
    body = mirrored((0, -12), (11, -12, 16.5, -8, 16.5, -1), (16.5, 5, 13, 6.5, 13, 12),
                    (13, 17.5, 22, 19, 22, 32), (22, 44, 13, 52, 0, 52))
    head = polygon((-4, -38), (-5.5, -52), (5.5, -52), (4, -38))
    pegs = [polyline((side * 7.5, y), (side * 9, y)) for side in (-1, 1) for y in (-49.5, -45, -40.5)]
    return [ink(body), *(ink(peg, 3) for peg in pegs), ink(head), ink(head, 2),
            hole(circle(0, 13, 8)), accent(rounded(-3.2, -40, 6.4, 49, 1)),
            hole(rounded(-9, 34, 18, 4.6, 2))]


def bass_guitar():
    """Upright, neck up; 126 high, 46 wide: two horns, a long thin neck, four big tuners on one side."""
    body = ("M0 56C13 56 22 49 22 39C22 31 16 28 16 21C16 14 21 12 20 5C19 1 15 1 13 5C11 10 9 14 4 14L-4 14"
            "C-9 14 -11 7 -12 0C-13 -8 -18 -12 -21 -8C-24 -3 -17 8 -16.5 19C-16 28 -24 30 -24 40C-24 50 -13 56 0 56Z")
    head = "M-3 -46L-6.5 -53L-6.5 -68C-6.5 -71 -4 -72 -2 -71C3 -69 6 -66 6 -62C6 -58 3 -56 3 -46Z"
    guard = "M4 17C8 17 12 14 14 12C15.5 15 12.5 19 13 24C13.5 30 18 33 18 39C18 44 14 47 9 47L9 25L4 25Z"
    tuners = (-67, -61.5, -56, -50.5)
    return [ink(body), accent(guard), ink(rounded(-2.8, -48, 5.6, 74, 1)), ink(head),
            *(ink(polyline((-6, y), (-10, y)), 1.8) for y in tuners), *(ink(circle(-11.5, y, 2.3)) for y in tuners),
            *(hole(rounded(-2.8, y, 5.6, 1.6, 0)) for y in (-38, -29, -20.5, -12.5, -5)),
            hole(rounded(-8.5, 27, 17, 4.2, 1.5)), hole(rounded(-8.5, 35, 17, 4.2, 1.5)),
            hole(rounded(-7, 46, 14, 4.2, 1.5))]


def microphone():
    """Upright, head up; 106 high, 42 wide."""
    radius = 21
    mesh = []
    for offset in (-10.5, 0, 10.5):
        half = math.sqrt(19.8 ** 2 - offset ** 2) / math.sqrt(2)
        shift = offset / math.sqrt(2)
        mesh += [polyline((shift - half, -32 + shift + half), (shift + half, -32 + shift - half)),
                 polyline((shift - half, -32 - shift - half), (shift + half, -32 - shift + half))]
    handle = mirrored((0, -10), (5, -10, 13, -10, 13.5, -10), (12.5, 10, 9, 40, 8.5, 48), (8.2, 52, 5, 53, 0, 53))
    return [ink(handle), ink(circle(0, -32, radius)), *(hole(line, 2.4) for line in mesh),
            accent(rounded(-17, -17, 34, 9, 4)), hole(rounded(-3, 4, 6, 13, 3))]


def keyboard():
    """One octave, C to B, with the felt strip above the keys; 100 wide, 74 high."""
    pitch = 92 / 7
    white = [ink(rounded(-46 + i * pitch + 0.9, -24, pitch - 1.8, 57, 2.4)) for i in range(7)]
    black = [hole(rounded(-46 + i * pitch - 4.4, -24, 8.8, 33, 2)) for i in (1, 2, 4, 5, 6)]
    return [ink(rounded(-51, -39, 102, 77, 8)), hole(rounded(-48.5, -36.5, 97, 72, 6)), *white, *black,
            accent(rounded(-46, -33.5, 92, 7, 2))]


def drum_kit():
    """Seen from the front: bass drum, two toms, snare, floor tom, two cymbals; 112 wide, 82 high."""
    def stand(side):
        return ink(polyline((side * 40, -28), (side * 40, 10)), 2.4)

    def tom(side):
        shell = [ink(rounded(-12.5, -9, 25, 19, 4)), hole(rounded(-12.5, -4.5, 25, 2.4, 0))]
        return placed(shell, side * 15.5, -15, side * -8)

    def cymbal(side):
        return placed([accent(ellipse(0, 0, 18, 3.6)), accent(ellipse(0, -2.5, 4.5, 3))], side * 39, -31, side * 14)

    def side_drum(x, top, height):
        return [ink(rounded(x - 13, top, 26, height, 4)), hole(rounded(x - 13, top + 4.5, 26, 2.4, 0))]

    legs = [polyline((31, 30), (31, 41)), polyline((51, 30), (51, 41)),
            polyline((-41, 20), (-41, 33), (-50, 41)), polyline((-41, 33), (-32, 41))]
    return [stand(-1), stand(1), *(ink(leg, 2.6) for leg in legs), *side_drum(41, 4, 29), *side_drum(-41, 6, 15),
            tom(-1), tom(1),
            hole(circle(0, 17, 27)), ink(circle(0, 17, 25)), hole(circle(0, 17, 19.5)), ink(circle(0, 17, 17.2)),
            accent(circle(0, 17, 6)), cymbal(-1), cymbal(1)]


TILES = {
    "guitar": [placed(acoustic_guitar(), 62.5, 53, 56, 1), *caption("Guitar", 64, 112, 15)],
    "vocals": [placed(microphone(), 65, 54, 50, 0.94), *caption("Vocals", 64, 112, 15)],
    "piano": [placed(keyboard(), 64, 52, 0, 0.92), *caption("Piano", 64, 112, 15)],
    "bass": [placed(bass_guitar(), 63, 51.5, 60, 0.86), *caption("Bass", 64, 112, 15)],
    "drums": [placed(drum_kit(), 64, 51, 0, 0.93), *caption("Drums", 64, 112, 15)],
}
