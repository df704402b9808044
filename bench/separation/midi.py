# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Music that people wrote and played: the scores for games."""
import collections
import io
import os
import struct

import mido

from composer import Note
from players import DRUM_CHANNEL

DRUMS = -1


def score(path, name):
    """The MIDI file of a name in a data file or a folder."""
    if os.path.isdir(path):
        return mido.MidiFile(os.path.join(path, name + ".mid"), clip=True)
    data = open(path, "rb").read()
    count, directory = struct.unpack("<II", data[4:12])
    for i in range(count):
        begin, size, label = struct.unpack_from("<II8s", data, directory + 16 * i)
        if label.strip(b"\0").decode() == name:
            return mido.MidiFile(file=io.BytesIO(data[begin:begin + size]), clip=True)
    raise SystemExit(f"{path} holds no score {name}.")


def notes_by_program(midi, begin, seconds):
    """The notes of an excerpt by program (DRUMS for the drums), from its beginning on."""
    now, programs, sounding, result = 0.0, {}, {}, collections.defaultdict(list)
    for event in midi:
        now += event.time
        if event.type == "program_change":
            programs[event.channel] = event.program
        elif event.type in ("note_on", "note_off"):
            place = event.channel, event.note
            if place in sounding:
                start, velocity, program = sounding.pop(place)
                result[program].append(Note(start - begin, now - start, event.note, velocity))
            if event.type == "note_on" and event.velocity:
                program = DRUMS if event.channel == DRUM_CHANNEL else programs.get(event.channel, 0)
                sounding[place] = now, event.velocity, program
    return {program: inside for program, notes in result.items()
            if (inside := [n for n in notes if 0 <= n.start < seconds])}


def one_at_a_time(notes):
    """A melody out of notes that may overlap: the highest of those that start together, cut where the next begins."""
    result = []
    for note in sorted(notes, key=lambda n: (n.start, -n.key)):
        if result and note.start - result[-1].start < 0.06:
            continue
        if result and result[-1].start + result[-1].duration > note.start:
            result[-1] = result[-1]._replace(duration=note.start - result[-1].start)
        result.append(note)
    return [n for n in result if n.duration > 0.08]
