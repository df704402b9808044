# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Instruments and voices made of nothing but arithmetic, each with a character of its own: sources without a licence and
without end. Players as in bench/separation/players.py."""
import numpy as np
import scipy.signal

from composer import CLOSED_HAT, CRASH, KICK, OPEN_HAT, RIDE, SIDESTICK, SNARE
from singing import bent_pitch
from songs import part_of
from sound import RATE, driven


def struck_string(key, seconds, velocity, character):
    """One note of a plucked or struck string, or of a held tone, as the sum of its partials."""
    pitch = 440 * 2 ** ((key - 69) / 12)
    count = int(min(character["partials"], 16000 / pitch))
    number = np.arange(1, count + 1)
    frequency = pitch * number * np.sqrt(1 + character["stiffness"] * number ** 2)
    level = np.abs(np.sin(np.pi * number * character["place"])) / number ** (character["dullness"] - velocity / 127)
    time = np.arange(int((seconds + 0.15) * RATE)) / RATE
    decay = character["decay"] * (60 / key) ** 2 / (1 + character["damping"] * number)
    tone = np.zeros(len(time))
    for f, a, d in zip(frequency, level / level.sum(), decay):
        envelope = np.exp(-time / d) if d < 20 else 1
        tone += a * envelope * np.sin(2 * np.pi * f * time + 6.28 * ((f * 7.1) % 1))
    attack = np.minimum(1, time / character["attack"])
    release = np.exp(-np.maximum(0, time - seconds) / 0.04)
    thump = character["noise"] * np.random.default_rng(key).normal(size=len(time)) * np.exp(-time / 0.008)
    return (tone + thump * 0.05) * attack * release * velocity / 127


def character_of(part, random):
    """What an instrument of a part sounds like."""
    plucked = {"partials": 30, "stiffness": 10 ** random.uniform(-5.5, -4), "place": random.uniform(0.08, 0.4), "dullness": random.uniform(1.2, 2.3),
               "decay": random.uniform(0.6, 3), "damping": random.uniform(0.05, 0.5), "attack": random.uniform(0.001, 0.005), "noise": random.uniform(0, 1)}
    if part == "piano":
        return {**plucked, "stiffness": 10 ** random.uniform(-4.2, -3.2), "place": 0.12, "dullness": random.uniform(1.6, 2.6), "decay": random.uniform(1.5, 5)}
    if part == "bass":
        return {**plucked, "partials": 14, "dullness": random.uniform(1.6, 2.8), "decay": random.uniform(1, 6)}
    if part == "rest":
        return {**plucked, "decay": 1e9, "stiffness": 0, "attack": random.uniform(0.02, 0.2), "noise": 0}
    return plucked


class OwnInstruments:
    """A band of made-up instruments: guitar, piano, bass, others by General MIDI's program, and drums."""

    def __init__(self, random):
        self._characters = {part: character_of(part, random) for part in ("guitar", "piano", "bass", "rest")}
        self._drums = OwnDrums(random)
        self._spread = random.uniform(0, 0.5)

    def play(self, notes, seconds, program=0, drums=False):
        if drums:
            return self._drums.play(notes, seconds)
        part = part_of(program)
        sound = np.zeros((2, int(seconds * RATE)), np.float32)
        for note in notes:
            tone = struck_string(note.key, note.duration, note.velocity, self._characters[part])
            _add(sound, note.start, tone, self._spread * (note.key - 60) / 30)
        if part == "guitar" and program in (29, 30):
            sound = driven(sound, 15)
        return sound


def _add(sound, start, tone, pan):
    begin = int(start * RATE)
    room = min(len(tone), sound.shape[1] - begin)
    if room > 0:
        pan = np.clip(pan, -1, 1)
        sound[:, begin:begin + room] += np.stack([tone[:room] * (1 - pan), tone[:room] * (1 + pan)]) / 2


def band_noise(random, seconds, low, high, decay):
    """Noise of a band that decays."""
    time = np.arange(int(seconds * RATE)) / RATE
    sections = scipy.signal.butter(2, [low, high], "bandpass", fs=RATE, output="sos")
    return scipy.signal.sosfilt(sections, random.normal(size=len(time))) * np.exp(-time / decay)


def membrane(seconds, pitch, bend, decay):
    """A skin: a tone that falls and decays."""
    time = np.arange(int(seconds * RATE)) / RATE
    phase = np.cumsum(pitch * (1 + bend * np.exp(-time / 0.03))) / RATE
    return np.sin(2 * np.pi * phase) * np.exp(-time / decay)


class OwnDrums:
    """A kit of made-up drums and cymbals."""

    def __init__(self, random):
        u = random.uniform
        kick = membrane(0.6, u(42, 65), u(1, 5), u(0.08, 0.3))
        kick[:400] += u(0, 0.6) * random.normal(size=400) * np.linspace(1, 0, 400)
        snare = u(0.3, 1) * membrane(0.5, u(160, 250), 0.4, u(0.04, 0.12)) + 2 * band_noise(random, 0.5, u(300, 1500), u(7000, 14000), u(0.04, 0.16))
        self._sounds = {KICK: kick, SNARE: snare, SIDESTICK: band_noise(random, 0.1, 1000, 6000, 0.015) * 3,
                        CLOSED_HAT: band_noise(random, 0.3, u(5000, 8000), u(14000, 20000), u(0.015, 0.06)),
                        OPEN_HAT: band_noise(random, 1, u(4000, 8000), u(14000, 20000), u(0.15, 0.4)),
                        RIDE: band_noise(random, 1.5, u(2500, 6000), 18000, u(0.2, 0.6)), CRASH: band_noise(random, 3, u(1500, 4000), 18000, u(0.5, 1.2))}
        self._tom, self._bend = u(70, 110), u(0.1, 0.8)
        self._pans = {key: random.normal(0, 0.3) for key in self._sounds}

    def play(self, notes, seconds):
        sound = np.zeros((2, int(seconds * RATE)), np.float32)
        for note in notes:
            tone = self._sounds.get(note.key)
            if tone is None:
                tone = membrane(0.7, self._tom * 1.17 ** (note.key - 41), self._bend, 0.2)
            _add(sound, note.start, tone * (note.velocity / 110) ** 2, self._pans.get(note.key, 0.3))
        return sound


VOWELS = np.array([[800, 1200, 2600, 3500, 4600], [500, 1800, 2500, 3400, 4500], [300, 2200, 2900, 3600, 4700], [450, 850, 2500, 3400, 4500],
                   [320, 800, 2400, 3300, 4400], [650, 1700, 2500, 3500, 4500], [550, 1100, 2450, 3300, 4400], [400, 1450, 2300, 3300, 4300]], float)


class FormantSinger:
    """A made-up voice: pulses and breath through five resonances that move between vowels."""

    def __init__(self, random):
        self.key = int(random.integers(46, 68))
        self._size = random.uniform(0.88, 1.18) * (1.1 if self.key > 57 else 1)
        self._tilt = random.uniform(0.6, 1.4)
        self._breath = 10 ** random.uniform(-2.5, -1.2)

    def sing(self, melody, seconds, random, vibrato=0.35):
        sound = np.zeros(int((seconds + 3) * RATE), np.float32)
        before = None
        for note in melody:
            if note.start < seconds:
                tone = self._vowel(bent_pitch(note, before, random, vibrato), random)
                hiss = self._consonant(random)
                begin = int(note.start * RATE)
                sound[begin:begin + len(tone)] += tone
                sound[max(0, begin - len(hiss)):begin] += hiss[:begin]
                before = note
        return sound[:int(seconds * RATE)]

    def _consonant(self, random):
        if random.random() < 0.4:
            return np.zeros(0)
        low = random.uniform(1500, 6000)
        hiss = band_noise(random, random.uniform(0.03, 0.12), low, 2.2 * low, 1)
        return hiss * np.hanning(len(hiss)) * random.uniform(0.02, 0.15)

    def _vowel(self, pitch, random):
        phase = np.cumsum(pitch / RATE) % 1
        pulses = np.diff(phase, prepend=0) < -0.5
        source = pulses - pulses.mean() + self._breath * random.normal(size=len(pitch))
        first, last = VOWELS[random.integers(8, size=2)] * self._size
        ends = [self._resonate(source, vowel) for vowel in (first, last)]
        share = np.clip(np.linspace(-0.3, 1.3, len(pitch)), 0, 1)
        tone = ends[0] * (1 - share) + ends[1] * share
        edge = min(len(tone) // 3, int(0.05 * RATE))
        tone[:edge] *= np.linspace(0, 1, edge)
        tone[-edge:] *= np.linspace(1, 0, edge)
        return (tone / (np.sqrt((tone ** 2).mean()) + 1e-9) * 0.05 * random.uniform(0.6, 1.1)).astype(np.float32)

    def _resonate(self, source, formants):
        spectrum = np.fft.rfft(source)
        frequency = np.fft.rfftfreq(len(source), 1 / RATE)
        for centre, width in zip(formants, (90, 120, 170, 230, 320)):
            spectrum = spectrum * centre ** 2 / np.sqrt((centre ** 2 - frequency ** 2) ** 2 + (width * frequency) ** 2)
        lift = (1 + (frequency / 2500) ** 2) ** 1.9
        return np.fft.irfft(spectrum * np.minimum(lift, 60) / np.maximum(1, frequency / 500) ** self._tilt, len(source))
