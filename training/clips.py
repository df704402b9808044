#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Renders five short songs from the listed material, has teko-separate take one instrument out of each, and writes the
results as Ogg files: INSTRUMENT.ogg and INSTRUMENT-without.ogg. The two together are the song.

usage: clips.py TEKO-SEPARATE FOLDER"""
import json
import os
import subprocess
import sys
import tempfile

import numpy as np

import material
import songs
from sound import RATE, load, save
import spectra

SONGS = {"guitar": 9001, "vocals": 9002, "piano": 9003, "bass": 9004, "drums": 9005}
BEGIN, END = 6, 14  # seconds of the song that a clip shows
SEATS = ((0.6, -0.6), (-0.5, 0.5), (0.4, -0.7), (0.0, 0.6), (-0.7, 0.0))


def rendered(seed, seats, manifest):
    """The parts of a song, as they stand in its mix."""
    random = np.random.default_rng(seed)
    plan = songs.Plan(str(seed), "written", seed, seats)
    parts = songs.mixed_down(songs.written_parts(plan, material.TrainingCast(manifest, False), random), plan, random)
    gain = 0.9 / np.abs(sum(parts.values())).max()
    return {part: sound[:, :songs.SECONDS * RATE] * gain for part, sound in parts.items()}


def encode(path, result):
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-ss", str(BEGIN), "-to", str(END), "-i", path, "-c:a", "libvorbis", "-q:a", "1",
                    "-map_metadata", "-1", "-bitexact", result], check=True)


def main():
    program, folder = sys.argv[1:3]
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(material.HERE, "manifest.json")) as file:
        manifest = json.load(file)
    for (instrument, seed), seats in zip(SONGS.items(), SEATS):
        with tempfile.TemporaryDirectory() as work:
            mix, alone, without = (os.path.join(work, name) for name in ("mix.wav", "alone.wav", "without.wav"))
            parts = rendered(seed, seats, manifest)
            save(mix, sum(parts.values()))
            subprocess.run([program, mix, instrument, alone, without], check=True, stderr=subprocess.DEVNULL)
            print(f"{instrument}: {spectra.sdr(parts[instrument], load(alone)):.1f} dB")
            encode(alone, os.path.join(folder, f"{instrument}.ogg"))
            encode(without, os.path.join(folder, f"{instrument}-without.ogg"))


if __name__ == "__main__":
    main()
