#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Renders the parts of random songs to learn from, with sources whose licences allow weights under Apache-2.0 and no others.

usage: material.py FOLDER FIRST LAST
Writes FOLDER/NNNN.npy: 16-bit parts (6, 2, frames) at -20 dB each, silent where one does not play."""
import hashlib
import json
import os
import sys

import numpy as np

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "bench", "separation"))
import players  # noqa: E402
import songs  # noqa: E402
import synthesis  # noqa: E402
from sound import RATE, at_speed, equalised, fitted, levelled, load, reverberated  # noqa: E402

SECONDS = 20
SCALE = 8000
SCORES = ["D_E1M2", "D_E1M4", "D_E1M8", "D_E1M9", "D_E2M1", "D_E2M2", "D_E2M5", "D_E2M7", "D_E3M1", "D_E3M3", "D_E3M4", "D_E3M5", "D_E3M6", "D_E3M7"]


def checked(path, manifest):
    """The path, if the manifest lists it with the content that it has; the script ends otherwise."""
    with open(path, "rb") as file:
        digest = hashlib.file_digest(file, "sha256").hexdigest()
    if manifest.get(path, {}).get("sha256") != digest:
        raise SystemExit(f"{path} is not material that the manifest allows (sha256 {digest}).")
    return path


class TrainingCast:
    """Players and singers for one song. With `held_out`, those that validation keeps for itself, else all others."""

    def __init__(self, manifest, held_out):
        self._manifest, self._held_out, self._loaded = manifest, held_out, {}
        self.set = songs.SongSet({}, [], [], self._path("/usr/share/games/doom/freedoom1.wad"), [])

    def _path(self, path):
        return checked(path, self._manifest)

    def _once(self, key, make):
        if key not in self._loaded:
            self._loaded[key] = make()
        return self._loaded[key]

    def font(self, random):
        if self._held_out or random.random() < 0.35:
            return synthesis.OwnInstruments(random)
        name = str(random.choice(["sf2/FluidR3_GM.sf2", "sf3/MuseScore_General_Full.sf3"]))
        return self._once(name, lambda: players.SoundFont(self._path("/usr/share/sounds/" + name)))

    def kit(self, random):
        kits = ["Audiophob"] if self._held_out else ["fonts", "sonic-pi", "own", "own"]
        name = str(random.choice(kits))
        if name == "own":
            return synthesis.OwnInstruments(random)
        if name == "fonts":
            path = str(random.choice(["sf2/FluidR3_GM.sf2", "sf3/MuseScore_General_Full.sf3"]))
            return self._once(path, lambda: players.SoundFont(self._path("/usr/share/sounds/" + path)))
        if name == "sonic-pi":
            return players.Sampler({key: self._path(songs.SONIC_PI + str(random.choice(files)) + ".flac") for key, files in SONIC_PI_KIT.items()})
        return self._once(name, lambda: players.drum_kit(songs.HYDROGEN + name, self._path))

    def singer(self, random):
        if random.random() < 0.3:
            return synthesis.FormantSinger(random)
        voices = ["festival:ked_diphone", "flite:rms"] if self._held_out else ["festival:kal_diphone", "festival:cmu_us_slt_arctic_hts", "flite:awb", "flite:slt", "flite:kal16"]
        name = str(random.choice(voices))
        turn = int(random.integers(3))
        singer = self._once((name, turn), lambda: songs.singer(name, random))
        return Resized(singer, random.uniform(0.85, 1.2))


class Resized:
    """A singer with another length of the throat."""

    def __init__(self, singer, ratio):
        self._singer, self._ratio = singer, ratio
        self.key = singer.key + int(round(12 * np.log2(ratio)))

    def sing(self, melody, seconds, random, vibrato):
        shift = -12 * np.log2(self._ratio)
        slow = [n._replace(start=n.start * self._ratio, duration=n.duration * self._ratio, key=n.key + shift) for n in melody]
        voice = self._singer.sing(slow, seconds * self._ratio + 0.1, random, vibrato)
        return at_speed(voice[None], self._ratio)[0][:int(seconds * RATE)]


SONIC_PI_KIT = {
    36: ["bd_808", "bd_ada", "bd_boom", "bd_fat", "bd_haus", "bd_klub", "bd_pure", "bd_sone", "bd_tek", "bd_zum", "drum_bass_hard", "drum_heavy_kick"],
    38: ["sn_dolf", "sn_dub", "sn_generic", "sn_zome", "drum_snare_hard", "elec_snare", "elec_hi_snare", "elec_lo_snare", "elec_mid_snare"],
    42: ["drum_cymbal_closed", "drum_cymbal_pedal", "elec_tick"], 46: ["drum_cymbal_open", "elec_cymbal"], 51: ["drum_cymbal_soft", "drum_cymbal_closed"],
    49: ["drum_splash_hard", "drum_cymbal_hard"], 48: ["drum_tom_hi_hard"], 45: ["drum_tom_mid_hard"], 41: ["drum_tom_lo_hard"], 37: ["elec_wood", "perc_snap"],
}
LOOPS = ["loop_amen", "loop_amen_full", "loop_breakbeat", "loop_compus", "loop_mika", "loop_industrial", "loop_electric"]


def parts_of(number, cast, manifest):
    """The raw parts of a song: a written one, an excerpt of a score, and now and then with a loop for its drums."""
    random = np.random.default_rng(50000 + number)
    if random.random() < 0.25:
        plan = songs.Plan(str(number), "score", number, detail=(str(random.choice(SCORES)), int(random.integers(0, 80))), seconds=SECONDS)
        return songs.score_parts(plan, cast, random), random
    plan = songs.Plan(str(number), "written", 50000 + number, (2 if random.random() < 0.3 else 0, 0), seconds=SECONDS)
    parts = songs.written_parts(plan, cast, random)
    if random.random() < 0.12:
        path = checked(songs.SONIC_PI + str(random.choice(LOOPS)) + ".flac", manifest)
        parts["drums"] = fitted(np.tile(load(path), 20), SECONDS * RATE)
    return parts, random


def finished(sound, part, random):
    """A part with a tone, a room and a level of its own."""
    sound = equalised(sound, 8 if random.random() < 0.7 else 3, random)
    if part == "vocals" and random.random() < 0.5:
        sound = np.tanh(levelled(sound, -20) * 6) / 6
    if part != "bass" and random.random() < 0.65:
        sound = reverberated(levelled(sound, -20), random.uniform(-24, -7), random.uniform(0.3, 2), random)
    return levelled(sound, -20)


def main():
    folder, first, last = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    with open(os.path.join(HERE, "manifest.json")) as file:
        manifest = json.load(file)
    os.makedirs(folder, exist_ok=True)
    casts = {held_out: TrainingCast(manifest, held_out) for held_out in (False, True)}
    for number in range(first, last):
        held_out = number % 10 == 9  # validation
        parts, random = parts_of(number, casts[held_out], manifest)
        result = np.zeros((6, 2, SECONDS * RATE), np.int16)
        for i, part in enumerate(songs.PARTS):
            if part in parts and np.abs(parts[part]).max() > 1e-4:
                result[i] = np.clip(finished(parts[part], part, random) * SCALE, -32767, 32767)
        np.save(os.path.join(folder, f"{number:04d}.npy"), result)


if __name__ == "__main__":
    main()
