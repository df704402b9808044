# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Players turn notes into sound: play(notes, seconds, program, drums) returns (2, frames)."""
import ctypes
import os
import re
import subprocess
import tempfile
import xml.etree.ElementTree

import mido
import numpy as np

from sound import RATE, at_speed, fitted, load

DRUM_CHANNEL = 9


class SoundFont:
    """Plays with a sound font, through fluidsynth's library. A font that is but a kit has its drums at program 0."""

    def __init__(self, path, is_kit=False):
        self._is_kit = is_kit
        self._library = ctypes.CDLL("libfluidsynth.so.3")
        for name in ("new_fluid_settings", "new_fluid_synth"):
            getattr(self._library, name).restype = ctypes.c_void_p
        settings = ctypes.c_void_p(self._library.new_fluid_settings())
        self._library.fluid_settings_setnum(settings, b"synth.sample-rate", ctypes.c_double(RATE))
        self._library.fluid_settings_setnum(settings, b"synth.gain", ctypes.c_double(0.5))
        for name, value in ((b"reverb.active", 0), (b"chorus.active", 0), (b"dynamic-sample-loading", 1)):
            self._library.fluid_settings_setint(settings, b"synth." + name, value)
        self._synth = ctypes.c_void_p(self._library.new_fluid_synth(settings))
        if self._library.fluid_synth_sfload(self._synth, path.encode(), 1) < 0:
            raise SystemExit(f"The sound font {path} cannot be loaded.")

    def play(self, notes, seconds, program=0, drums=False):
        channel = DRUM_CHANNEL if drums and not self._is_kit else 0
        self._library.fluid_synth_system_reset(self._synth)
        self._library.fluid_synth_program_change(self._synth, channel, int(program))
        sound = np.zeros((2, int(seconds * RATE)), np.float32)
        done = 0
        for time, key, velocity in _events(notes):
            done = self._write(sound, done, int(time * RATE))
            if velocity:
                self._library.fluid_synth_noteon(self._synth, channel, key, velocity)
            else:
                self._library.fluid_synth_noteoff(self._synth, channel, key)
        self._write(sound, done, sound.shape[1])
        return sound

    def _write(self, sound, begin, end):
        end = min(end, sound.shape[1])
        if end <= begin:
            return begin
        left, right = (ctypes.c_void_p(channel[begin:].ctypes.data) for channel in sound)
        self._library.fluid_synth_write_float(self._synth, end - begin, left, 0, 1, right, 0, 1)
        return end


def _events(notes):
    """(time, key, velocity), with velocity 0 where a note ends, in order."""
    starts = [(n.start, n.key, max(1, n.velocity)) for n in notes]
    return sorted(starts + [(n.start + n.duration, n.key, 0) for n in notes])


class Patches:
    """Plays with timidity and the patches of one of its configurations."""

    def __init__(self, configuration):
        self._configuration = configuration

    def play(self, notes, seconds, program=0, drums=False):
        with tempfile.TemporaryDirectory() as folder:
            score, result = os.path.join(folder, "score.mid"), os.path.join(folder, "sound.wav")
            _write_score(score, notes, int(program), DRUM_CHANNEL if drums else 0)
            subprocess.run(["timidity", "-c", self._configuration, "-Ow", "-s", str(RATE), "-o", result, "-A70",
                            "-EFreverb=0", "-EFchorus=0", score], check=True, stdout=subprocess.DEVNULL)
            return fitted(load(result), int(seconds * RATE))


def _write_score(path, notes, program, channel):
    score = mido.MidiFile(ticks_per_beat=480)
    track = mido.MidiTrack()
    score.tracks.append(track)
    track.append(mido.Message("program_change", channel=channel, program=program))
    now = 0
    for time, key, velocity in _events(notes):
        tick = int(time * 960)  # two beats a second, which is MIDI's default
        track.append(mido.Message("note_on", channel=channel, note=key, velocity=velocity, time=tick - now))
        now = tick
    score.save(path)


class Sampler:
    """Plays recordings of single tones at other pitches by playing them faster or slower; velocity sets the level."""

    def __init__(self, samples):
        """`samples` maps keys to files."""
        self._samples = {key: load(path) for key, path in samples.items()}

    def play(self, notes, seconds, program=0, drums=False):
        sound = np.zeros((2, int(seconds * RATE)), np.float32)
        for note in notes:
            nearest = min(self._samples, key=lambda key: abs(key - note.key))
            tone = self._samples[nearest]
            if not drums:
                tone = at_speed(tone, 2 ** ((note.key - nearest) / 12))
                tone = _faded(fitted(tone, min(tone.shape[1], int((note.duration + 0.08) * RATE))))
            begin = int(note.start * RATE)
            room = min(tone.shape[1], sound.shape[1] - begin)
            if room > 0:
                sound[:, begin:begin + room] += tone[:, :room] * (note.velocity / 100) ** 2
        return sound


def _faded(tone):
    count = min(tone.shape[1], int(0.08 * RATE))
    tone[:, tone.shape[1] - count:] *= np.linspace(1, 0, count)
    return tone


# What the instruments of drum kits are called, by the key of General MIDI that plays them.
DRUM_NAMES = {36: r"kick|bass ?drum|\bbd|^base", 38: r"snare|\bsn|\bsd", 42: r"closed|hat.*cl|hh_?c|hihat|hh|hat", 46: r"open|hat.*op|hh_?o|\bho",
              49: r"crash|cra|cc_", 51: r"ride", 48: r"tom.*h|tom ?1|\bth|ht", 45: r"tom.*m|tom ?2|tom|conga", 41: r"tom.*l|floor|ft|tom ?3", 37: r"stick|rim|click|clap"}


def drum_kit(folder, checked=lambda path: path):
    """A player for a kit of Hydrogen: the loudest layer of each instrument whose name says what it is. Each file's path goes
    through `checked` first."""
    samples = {}
    for instrument in xml.etree.ElementTree.parse(os.path.join(folder, "drumkit.xml")).iter():
        if not instrument.tag.endswith("instrument"):
            continue
        texts = {child.tag.split("}")[-1]: child.text or "" for child in instrument.iter()}
        name, path = texts.get("name", ""), os.path.join(folder, texts.get("filename", ""))
        for key, pattern in DRUM_NAMES.items():
            if key not in samples and os.path.isfile(path) and re.search(pattern, name + " " + texts.get("filename", ""), re.I):
                samples[key] = checked(path)
                break
    return Sampler(samples)


class Loop:
    """Repeats a loop that lasts a whole number of bars, at the song's tempo."""

    def __init__(self, path):
        self._sound = load(path)

    def play(self, bar, seconds):
        """`bar`: the length of a bar in seconds."""
        bars = max(0.25, 2.0 ** np.round(np.log2(self._sound.shape[1] / RATE / bar)))
        loop = at_speed(self._sound, self._sound.shape[1] / RATE / (bars * bar))
        return fitted(np.tile(loop, 1 + int(seconds * RATE) // loop.shape[1]), int(seconds * RATE))
