# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Turns recorded speech into singing: each note takes a syllable, whose periods are set anew at the note's pitch and length."""
from typing import NamedTuple

import numpy as np

from sound import RATE, load

HOP, WINDOW = 441, 2048
CONSONANT = int(0.15 * RATE)


class Syllable(NamedTuple):
    sound: np.ndarray  # one channel
    consonant: int  # where its consonant begins
    marks: np.ndarray  # where the periods of its vowel are


def pitch_track(voice, lowest=75, highest=420):
    """The pitch of each hop in Hz, 0 where nothing is voiced, and its level."""
    if len(voice) < WINDOW + 5 * HOP:
        return np.zeros(0), np.zeros(0)
    window = np.hanning(WINDOW)
    frames = np.lib.stride_tricks.sliding_window_view(voice, WINDOW)[::HOP] * window
    likeness = np.fft.irfft(np.abs(np.fft.rfft(frames, 2 * WINDOW)) ** 2)[:, :WINDOW]
    own = np.fft.irfft(np.abs(np.fft.rfft(window, 2 * WINDOW)) ** 2)[:WINDOW]
    likeness = likeness / np.maximum(likeness[:, :1], 1e-12) * (own[0] / np.maximum(own, 1e-3 * own[0]))
    first, last = RATE // highest, RATE // lowest
    part = likeness[:, first:last] - np.linspace(0, 0.08, last - first)
    level = np.sqrt((frames ** 2).mean(1))
    voiced = (part.max(1) > 0.55) & (level > 0.06 * level.max())
    return np.where(voiced, RATE / (first + part.argmax(1)), 0), level


def _marks(voice, pitches, begin, end):
    """The peak of each period between two places."""
    period = RATE / pitches[0]
    place = begin + int(np.abs(voice[begin:begin + int(period)]).argmax())
    sign = np.sign(voice[place]) or 1
    marks = []
    while place < end - 700:
        marks.append(place)
        period = RATE / pitches[min(len(pitches) - 1, (place - begin) // HOP)]
        near, far = int(place + 0.8 * period), int(place + 1.2 * period) + 1
        if far >= len(voice):
            break
        place = near + int((voice[near:far] * sign).argmax())
    return np.array(marks)


def syllables(voice):
    """The syllables of recorded speech: voiced stretches that last long enough, with the consonant before them."""
    voice = voice / max(1e-6, np.abs(voice).max())
    pitches, levels = pitch_track(voice)
    found, i = [], 0
    while i < len(pitches):
        j = i + 1
        while pitches[i] and j < len(pitches) and pitches[j] and abs(np.log2(pitches[j] / pitches[j - 1])) < 0.25:
            j += 1
        begin, end = i * HOP + WINDOW // 2, j * HOP + WINDOW // 2
        marks = _marks(voice, pitches[i:j], begin, end) if pitches[i] and end - begin > 0.12 * RATE else ()
        if len(marks) > 12:
            start = i
            while start > max(0, i - 12) and not pitches[start - 1] and levels[start - 1] > 0.03 * levels.max():
                start -= 1
            level = np.sqrt((voice[begin:end] ** 2).mean())
            found.append(Syllable(voice / level * 0.1, start * HOP + WINDOW // 4, marks))
        i = j
    return found


class Singer:
    """A voice that sings with the syllables of some recordings."""

    def __init__(self, paths, most=60):
        self._syllables = []
        for path in paths:
            if len(self._syllables) < most:
                self._syllables += syllables(load(path).mean(0))
        if len(self._syllables) < 6:
            raise SystemExit("There is too little speech in " + ", ".join(map(str, paths[:3])))
        periods = [np.median(np.diff(s.marks)) for s in self._syllables]
        self.key = int(round(69 + 12 * np.log2(RATE / np.median(periods) / 440)))  # at which it speaks

    def sing(self, melody, seconds, random, vibrato=0.35):
        """One channel of sound."""
        sound = np.zeros(int((seconds + 3) * RATE), np.float32)
        before = None
        for note in melody:
            if note.start < seconds:
                syllable = self._syllables[random.integers(len(self._syllables))]
                _sing_note(sound, note, before, syllable, random, vibrato)
                before = note
        return sound[:int(seconds * RATE)]


def bent_pitch(note, before, random, vibrato):
    """The pitch of a sung note, sample by sample, in Hz: it slides in, drifts, and trembles after a while."""
    time = np.arange(max(2, int(note.duration * RATE))) / RATE
    joined = before is not None and note.start - before.start - before.duration < 0.15
    slide = (before.key - note.key if joined else -1.2) * np.exp(-time / 0.035)
    trembling = vibrato * np.clip((time - 0.22) / 0.25, 0, 1) * np.sin(2 * np.pi * random.uniform(4.8, 6.2) * time + random.uniform(0, 6))
    drift = np.interp(time, np.linspace(0, time[-1], 6), random.normal(0, 0.08, 6))
    return 440 * 2 ** ((note.key + slide + trembling + drift - 69) / 12)


def _place_consonant(sound, start, syllable, level):
    consonant = syllable.sound[syllable.consonant:syllable.marks[0]][-CONSONANT:]
    begin = start - len(consonant)
    if begin < 0 or len(consonant) < 300:
        return
    fade = np.interp(np.arange(len(consonant)), [0, 64, len(consonant) - 200, len(consonant)], [0, 1, 1, 0])
    sound[begin:start] += level * consonant * fade


def _mark_for(marks, position, length):
    """Which period of a syllable sounds at a position of a note: its ends as they are, its middle to and fro."""
    count = len(marks)
    first, last = min(count // 4, 8), count - max(2, min(count // 4, 6))
    if position < marks[first] - marks[0]:
        index = np.searchsorted(marks, marks[0] + position)
    elif length - position < marks[-1] - marks[last]:
        index = np.searchsorted(marks, marks[-1] - (length - position))
    else:
        turn = (position - (marks[first] - marks[0])) / np.median(np.diff(marks)) * 0.3 % (2 * (last - first))
        index = first + (turn if turn < last - first else 2 * (last - first) - turn)
    return int(np.clip(index, 1, count - 2))


def _sing_note(sound, note, before, syllable, random, vibrato):
    pitch = bent_pitch(note, before, random, vibrato)
    start, level, position = int(note.start * RATE), random.uniform(0.7, 1.1), 0.0
    _place_consonant(sound, start, syllable, level)
    marks = syllable.marks
    while position < len(pitch) - 1:
        i = _mark_for(marks, position, len(pitch))
        reach = int(np.clip(min(marks[i] - marks[i - 1], marks[i + 1] - marks[i]), 80, 700))
        grain = syllable.sound[max(0, marks[i] - reach):marks[i] + reach]
        begin = start + int(position) - reach
        if len(grain) == 2 * reach and begin >= 0 and begin + 2 * reach < len(sound):
            envelope = min(1, position / (0.015 * RATE) + 0.2) * min(1, (len(pitch) - position) / (0.06 * RATE))
            sound[begin:begin + 2 * reach] += level * envelope * grain * np.hanning(2 * reach)
        position += RATE / pitch[int(position)]
