#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Mixes parts that material.py rendered, each number otherwise, and has the separator measure ten seconds of them in bands.

usage: mixes.py PARTS TEKO-BANDS MIXES FIRST LAST
Only parts whose SHA-256 stands in parts.sha256 are taken. MIXES/NNNNN.npy: 16-bit floats (FIELDS, frames, bands), see `packed`.
Every tenth mix is for validation, made of the songs of held-out sources alone."""
import hashlib
import json
import os
import subprocess
import sys

import numpy as np

from material import HERE, SCALE, checked
from samples import mixed
from songs import PARTS, SONIC_PI
from sound import RATE, at_speed, driven, equalised, fitted, levelled, load
from spectra import BANDS, CENTRES, EDGES, HOP

FIELDS, PER_PART = 5 + 5 * len(PARTS), 5
FRAMES = 432  # spectra of a mix: ten seconds
SAMPLES = (FRAMES - 3) * HOP
# Chances of a part to come from another song, to be played at another speed, to get another tone, to be overdriven, to be a loop.
ALIEN, RETUNED, EQUALISED, DRIVEN, LOOPED = 0.4, 0.4, 0.4, 0.1, 0.12
LOOPS = {
    "drums": ["loop_amen", "loop_amen_full", "loop_breakbeat", "loop_industrial", "loop_mehackit1", "loop_mehackit2", "loop_perc1", "loop_perc2", "loop_tabla"],
    "bass": ["bass_dnb_f", "bass_drop_c", "bass_hard_c", "bass_thick_c", "bass_trance_c", "bass_woodsy_c"],
    "guitar": ["guit_e_fifths", "guit_e_slide", "guit_em9", "guit_harmonics"],
    "rest": ["loop_drone_g_97", "loop_3d_printer", "loop_safari", "loop_weirdo", "ambi_choir", "ambi_glass_hum", "ambi_haunted_hum", "ambi_lunar_land"],
}


class Material:
    """The parts of songs: of the held-out sources, or of all others."""

    def __init__(self, folder, held_out):
        with open(os.path.join(HERE, "parts.sha256")) as file:
            self._hashes = {name: digest for digest, name in (line.split() for line in file)}
        with open(os.path.join(HERE, "manifest.json")) as file:
            self.manifest = json.load(file)
        self.held_out, self._folder, self._songs = held_out, folder, {}
        self.names = sorted(n for n in self._hashes if (int(n[:4]) % 10 == 9) == held_out)

    def song(self, name):
        """(parts, 2, frames), not in memory, of a file with the hash that is listed."""
        if name not in self._songs:
            path = os.path.join(self._folder, name)
            with open(path, "rb") as file:
                if hashlib.file_digest(file, "sha256").hexdigest() != self._hashes[name]:
                    raise SystemExit(f"{path} is not what parts.sha256 lists.")
            self._songs[name] = np.load(path, mmap_mode="r")
        return self._songs[name]


def excerpt(part, begin, random):
    """The samples of a mix from a part that may be played at another speed."""
    ratio = random.uniform(0.85, 1.18) if random.random() < RETUNED else 1
    begin = min(begin, part.shape[1] - int(SAMPLES * ratio) - 2)
    sound = part[:, begin:begin + int(SAMPLES * ratio) + 2].astype(np.float32) / SCALE
    return fitted(sound if ratio == 1 else at_speed(sound, ratio), SAMPLES)


def loop(part, random, manifest):
    """A recording over and over: a loop, or a tone that is struck anew, now at one pitch and now at another."""
    sound = load(checked(SONIC_PI + str(random.choice(LOOPS[part])) + ".flac", manifest))
    turns, length = [], 0
    beat = int(random.uniform(0.25, 2) * RATE) if part in ("bass", "guitar") else sound.shape[1]
    speed = random.uniform(0.8, 1.25)
    while length < SAMPLES:
        pitch = speed * 2 ** (random.integers(-5, 6) / 12) if part in ("bass", "guitar") else speed
        turns.append(fitted(at_speed(sound, pitch), int(beat / speed)))
        length += turns[-1].shape[1]
    return levelled(fitted(np.concatenate(turns, 1), SAMPLES), -20)


def altered(sound, part, random):
    """With another tone, or overdriven, now and then."""
    if random.random() < EQUALISED:
        sound = equalised(sound, 6, random)
    if part in ("guitar", "vocals", "drums") and random.random() < DRIVEN:
        sound = driven(sound, random.uniform(2, 12))
    return levelled(sound, -20)


def parts_for(number, material):
    """The parts of a mix: of one song, and some of others, or loops."""
    random = np.random.default_rng(900000 + number)
    name, begin = str(random.choice(material.names)), int(random.integers(0, 9 * RATE))
    result = np.zeros((len(PARTS), 2, SAMPLES), np.float32)
    for i, part in enumerate(PARTS):
        if part in LOOPS and not material.held_out and random.random() < LOOPED:
            result[i] = loop(part, random, material.manifest)
            continue
        alien = random.random() < ALIEN
        song = material.song(str(random.choice(material.names)) if alien else name)
        result[i] = altered(excerpt(song[i], int(random.integers(0, 9 * RATE)) if alien else begin, random), part, random)
    return mixed(result, random)


class BandMeter:
    """A running teko-bands."""

    def __init__(self, program, *options):
        edges = ",".join(str(edge) for edge in EDGES)
        self._process = subprocess.Popen([program, edges, *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def measure(self, parts, extra=0):
        """What it says about parts (6, 2, samples): for each frame FIELDS x BANDS numbers and `extra` more."""
        self._process.stdin.write(np.int32(parts.shape[2]).tobytes() + parts.astype(np.float32).tobytes())
        self._process.stdin.flush()
        frames = -(-parts.shape[2] // HOP) + 3
        size = FIELDS * BANDS + extra
        values = np.frombuffer(self._process.stdout.read(4 * frames * size), np.float32)
        return values.reshape(frames, size)

    def close(self):
        self._process.stdin.close()
        self._process.wait()


def packed(values):
    """As the network takes it, (FIELDS, frames, BANDS): the octave of the energy, the pan, the agreement of the channels;
    then, as shares of the energy, what lasts, what is struck, and what teko-bands says of each part."""
    fields = values[:, :FIELDS * BANDS].reshape(-1, FIELDS, BANDS).transpose(1, 0, 2)
    energy = fields[0] + fields[1] + 1e-7
    result = np.clip(fields / energy, -64, 64)
    result[0], result[1], result[2] = np.log2(energy), (fields[0] - fields[1]) / energy, 2 * fields[2] / energy
    return result.astype(np.float16)


def main():
    folder, program, output = sys.argv[1:4]
    materials = {held_out: Material(folder, held_out) for held_out in (False, True)}
    os.makedirs(output, exist_ok=True)
    meter = BandMeter(program)
    for number in range(int(sys.argv[4]), int(sys.argv[5])):
        path = os.path.join(output, f"{number:05d}.npy")
        if not os.path.exists(path):
            mix = packed(meter.measure(parts_for(number, materials[number % 10 == 9])))
            np.save(path + ".part.npy", mix)
            os.replace(path + ".part.npy", path)
    meter.close()


if __name__ == "__main__":
    main()
