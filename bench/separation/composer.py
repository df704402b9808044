# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Random songs as notes: a key, chords, a tempo, and for each instrument a pattern that suits the style."""
from typing import NamedTuple

import numpy as np


class Note(NamedTuple):
    start: float  # seconds
    duration: float  # seconds
    key: int  # of MIDI
    velocity: int  # 1 to 127


SCALES = {"major": [0, 2, 4, 5, 7, 9, 11], "minor": [0, 2, 3, 5, 7, 8, 10]}
PROGRESSIONS = {"major": ["1564", "1645", "6415", "1455", "2516", "1344", "4536"],
                "minor": ["1637", "1767", "1465", "1415", "6711", "1251"]}

# Of each style: tempo, then steps of a sixteenth for kick, snare and hi-hat, then the bass' steps with its intervals,
# then how guitar and piano may play.
STYLES = {
    "rock": ((100, 150), [0, 8, 10], [4, 12], 2, {s: 0 for s in range(0, 16, 2)}, ["power", "strum"], ["chords", "broken"]),
    "ballad": ((60, 85), [0, 8, 11], [4, 12], 2, {0: 0, 8: 0}, ["arpeggio", "strum"], ["broken", "held"]),
    "funk": ((90, 115), [0, 3, 6, 10], [4, 12], 1, {0: 0, 3: 0, 6: 12, 10: 7, 14: 10}, ["chops", "muted"], ["stabs"]),
    "disco": ((112, 130), [0, 4, 8, 12], [4, 12], 2, {s: 12 * (s % 4 == 2) for s in range(0, 16, 2)}, ["chops", "muted"], ["offbeats"]),
    "bossa": ((110, 145), [0, 6, 8, 14], [3, 6, 10], 2, {0: 0, 6: 7, 8: 7, 14: 0}, ["comping", "arpeggio"], ["stabs"]),
    "metal": ((120, 190), [0, 2, 4, 6, 8, 10, 12, 14], [4, 12], 2, {s: 0 for s in range(0, 16, 2)}, ["power", "lead"], ["held"]),
    "reggae": ((70, 95), [8], [8], 2, {0: 0, 3: 0, 8: 7, 10: 7, 14: 3}, ["offbeats"], ["offbeats"]),
    "hiphop": ((75, 100), [0, 3, 8, 11], [4, 12], 2, {0: 0, 7: 0, 10: 7}, ["arpeggio", "lead"], ["stabs", "held"]),
    "folk": ((80, 130), [0, 8], [4, 12], 4, {0: 0, 8: 7}, ["strum", "arpeggio"], ["broken", "chords"]),
    "pop": ((90, 130), [0, 6, 8], [4, 12], 2, {0: 0, 6: 0, 8: 0, 14: 7}, ["strum", "arpeggio", "lead"], ["chords", "broken", "held"]),
}
SIXTEENTHS = {  # the steps at which a way of playing sounds a chord, and how long, in sixteenths
    "power": ([0, 3, 6, 8, 10, 14], 2.8), "strum": ([0, 4, 6, 10, 12, 14], 3.4), "chops": ([2, 6, 10, 14], 0.8),
    "comping": ([0, 4, 6, 10, 12], 2.5), "offbeats": ([2, 6, 10, 14], 1.5), "chords": ([0, 4, 8, 12], 3.6),
    "held": ([0, 8], 7.6), "stabs": ([0, 3, 6, 10, 13], 1.5),
}
KICK, SIDESTICK, SNARE, CLOSED_HAT, OPEN_HAT, CRASH, RIDE = 36, 37, 38, 42, 46, 49, 51
TOMS = [48, 47, 45, 43, 41]


class Song:
    """What the players of one song agree on. The same seed makes the same song."""

    def __init__(self, seed, seconds, style=None):
        self.random = np.random.default_rng(seed)
        self.style = style or str(self.random.choice(list(STYLES)))
        (slow, fast), self.kick, self.snare, self.hat, self.bass_line, self.guitars, self.pianos = STYLES[self.style]
        self.sixteenth = 15 / self.random.uniform(slow, fast)
        self.bars = int(np.ceil(seconds / (16 * self.sixteenth)))
        mode = str(self.random.choice(list(SCALES)))
        tonic = int(self.random.integers(12))
        self.scale = [(tonic + step) % 12 for step in SCALES[mode]]
        lines = [str(self.random.choice(PROGRESSIONS[mode])) for _ in range(2)]
        seventh = self.random.random() < 0.4
        self.chords = [self._chord(int(lines[bar // 4 % 2][bar % 4]) - 1, seventh) for bar in range(self.bars)]

    def _chord(self, degree, seventh):
        return [self.scale[(degree + step) % 7] for step in ([0, 2, 4, 6] if seventh else [0, 2, 4])]

    def steps(self):
        """Every sixteenth: its bar's chord, its number in the bar, its time in seconds."""
        for bar, chord in enumerate(self.chords):
            for step in range(16):
                yield chord, bar, step, (bar * 16 + step) * self.sixteenth

    def played(self, notes):
        """As a human plays: neither time nor strength is exact."""
        return [Note(max(0, n.start + self.random.normal(0, 0.007)), n.duration, int(n.key),
                     int(np.clip(n.velocity + self.random.normal(0, 7), 20, 127))) for n in notes]


def above(lowest, pitch_class):
    return lowest + (pitch_class - lowest) % 12


def voicing(chord, lowest, count):
    """The lowest `count` keys of a chord from a key on."""
    return [key for key in range(lowest, lowest + 40) if key % 12 in chord][:count]


def drums(song):
    notes = []
    cymbal = RIDE if song.random.random() < 0.25 else CLOSED_HAT
    snare = SIDESTICK if song.style in ("ballad", "bossa") and song.random.random() < 0.5 else SNARE
    for _, bar, step, time in song.steps():
        if bar % 4 == 3 and step >= 10 and song.random.random() < 0.7:
            notes.append(Note(time, 0.1, song.random.choice(TOMS + [snare]), 75 + 3 * step))
            continue
        if step in song.kick:
            notes.append(Note(time, 0.1, KICK, 100))
        if step in song.snare or (song.style == "funk" and song.random.random() < 0.1):
            notes.append(Note(time, 0.1, snare, 105 if step in song.snare else 40))
        if step % song.hat == 0:
            open_hat = song.random.random() < 0.05 or (song.style == "disco" and step % 4 == 2)
            notes.append(Note(time, 0.1, OPEN_HAT if open_hat else cymbal, 85 if step % 4 == 0 else 62))
        if bar % 4 == 0 and step == 0:
            notes.append(Note(time, 0.5, CRASH, 100))
    return song.played(notes)


def bass(song):
    notes = []
    lowest = int(song.random.choice([28, 28, 31]))
    stops = sorted(song.bass_line) + [16]
    for chord, _, step, time in song.steps():
        if step in song.bass_line and song.random.random() < 0.95:
            length = stops[stops.index(step) + 1] - step
            notes.append(Note(time, length * song.sixteenth * 0.92, above(lowest, chord[0]) + song.bass_line[step], 95))
    return song.played(notes)


def strummed(song, keys, time, length, velocity):
    return [Note(time + 0.01 * i, length * song.sixteenth, key, velocity) for i, key in enumerate(keys)]


def line(song, chord, time, lowest, likely):
    """Perhaps a note of a melody played on an instrument."""
    if song.random.random() > likely:
        return []
    key = above(lowest, int(song.random.choice(chord if song.random.random() < 0.6 else song.scale)))
    return [Note(time, song.sixteenth * song.random.choice([2, 3, 5]), key, 92)]


def guitar(song):
    """Notes of a guitar and how it plays them."""
    way = str(song.random.choice(song.guitars))
    notes = []
    for chord, _, step, time in song.steps():
        if way == "lead":
            notes += line(song, chord, time, 60, 0.6 if step % 4 == 0 else 0.15)
        elif way == "muted" and song.random.random() < 0.55:
            notes.append(Note(time, song.sixteenth * 0.8, song.random.choice(voicing(chord, 52, 4)), 80))
        elif way == "arpeggio" and step % 2 == 0:
            notes.append(Note(time, song.sixteenth * 5, voicing(chord, 45, 5)[[0, 2, 3, 4, 3, 2, 1, 2][step // 2]], 82))
        elif way == "power" and step in SIXTEENTHS[way][0]:
            root = above(40, chord[0])
            notes += strummed(song, [root, root + 7, root + 12], time, SIXTEENTHS[way][1], 95)
        elif way in SIXTEENTHS and step in SIXTEENTHS[way][0]:
            notes += strummed(song, voicing(chord, 44 if way == "strum" else 54, 4), time, SIXTEENTHS[way][1], 85)
    return song.played(notes), way


def piano(song):
    way = str(song.random.choice(song.pianos))
    notes = []
    for chord, _, step, time in song.steps():
        keys = voicing(chord, 57, 4)
        if step % 8 == 0 and way in ("broken", "held", "chords"):
            notes.append(Note(time, song.sixteenth * 7.6, above(36, chord[0]), 80))
        if way == "broken" and step % 2 == 0:
            notes.append(Note(time, song.sixteenth * 6, keys[[0, 1, 2, -1, 2, 1, 2, 1][step // 2]], 76))
        elif way in SIXTEENTHS and step in SIXTEENTHS[way][0]:
            notes += [Note(time, song.sixteenth * SIXTEENTHS[way][1], key, 80) for key in keys]
    return song.played(notes)


def others(song):
    """Strings, organs, brass: held chords or a line above."""
    held = song.random.random() < 0.6
    notes = []
    for chord, _, step, time in song.steps():
        if held and step == 0:
            notes += [Note(time, song.sixteenth * 15.5, key, 75) for key in voicing(chord, 60, 3)]
        elif not held:
            notes += line(song, chord, time, 67, 0.5 if step % 4 == 0 else 0.1)
    return song.played(notes)


def melody(song, centre):
    """What is sung, around a key: one note at a time, with pauses between phrases."""
    notes, key, free = [], centre, 0.0
    for chord, bar, step, time in song.steps():
        pause = bar % 4 == 3 and step >= 4
        if pause or step % 2 or time < free or song.random.random() > (0.7 if step % 4 == 0 else 0.45):
            continue
        near = [k for k in range(key - 5, key + 6) if k % 12 in (chord if step % 8 == 0 else song.scale) and abs(k - centre) < 9]
        key = int(song.random.choice(near)) if near else centre
        length = song.sixteenth * song.random.choice([2, 2, 3, 4, 4, 6, 8])
        notes.append(Note(time, length * 0.96, key, 90))
        free = time + length - 0.001
    return notes
