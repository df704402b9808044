#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Compares an estimator with the separator on songs that nothing was learned from, and says whether it may take its place.

usage: gate.py SONGS TEKO-SEPARATE SEPARATOR.json [TEKO-BANDS WEIGHTS]
SONGS holds the bench's folders held-out and held-out-2, as the bench lists them. The separator's scores are kept in
SEPARATOR.json. Ends with 1 when the gate is closed."""
import json
import os
import subprocess
import sys
import tempfile

import numpy as np
import torch

from estimator import Estimator, inputs_of, summary_of
from fit import PARTS, confidences
from mixes import BandMeter, FRAMES, packed
import songs
from bench import INSTRUMENTS, parts_of, read
from spectra import BINS, below, istft, sdr, spread, stft

NEEDED = {"guitar": 0, "vocals": 1.5, "piano": 1, "bass": 1.5, "drums": 1.5}  # dB of mean gain
SETS = "held-out", "held-out-2"
LOOPS = {"held-out/h11", "held-out/h12", "held-out-2/s11", "held-out-2/s12"}
CONTEXT = 80  # frames at the ends of a block whose masks are another block's


def frozen_songs(folder):
    for name in SETS:
        songs.check(folder, name)
    return {f"{name}/{plan.name}": os.path.join(folder, name, plan.name) for name in SETS for plan in songs.SETS[name].songs}


def scored(song, estimate):
    """By instrument {"sdr": dB}, or {"below": dB} where it does not play; `estimate` takes the mix' path and an instrument."""
    mix, result = read(os.path.join(song, "mix.wav")), {}
    for instrument, part in parts_of(song).items():
        sound = estimate(os.path.join(song, "mix.wav"), instrument)
        result[instrument] = {"below": below(mix, sound)} if part is None else {"sdr": sdr(part, sound)}
    return result


def separators(program):
    def estimate(path, instrument):
        with tempfile.TemporaryDirectory() as folder:
            main, rest = (os.path.join(folder, name) for name in ("main.wav", "rest.wav"))
            subprocess.run([program, path, instrument, main, rest], check=True, stderr=subprocess.DEVNULL)
            return read(main)
    return estimate


class Network:
    """The estimator's results for one song after the other."""

    def __init__(self, program, weights):
        self._meter, self._model, self._path = BandMeter(program, "masks"), Estimator(), None
        kept = torch.load(weights)
        self._model.load_state_dict(kept["network"])
        self._presence = kept["presence"]
        self._model.eval()

    def __call__(self, path, instrument):
        if path != self._path:
            self._path, self._mix = path, read(path)
            self._masks = self._masks_of(self._mix)
            self._spectra = stft(self._mix)
        return istft(self._spectra * self._masks[:, INSTRUMENTS.index(instrument)], self._mix.shape[1])

    def _masks_of(self, mix):
        """(frames, PARTS, BINS)"""
        parts = np.zeros((PARTS, *mix.shape), np.float32)
        parts[0] = mix
        values = self._meter.measure(parts, PARTS * BINS)
        measured = torch.tensor(packed(values)).float()
        corrections = self._corrections(measured)
        confidence = confidences(self._presence, summary_of(measured[None], *map(torch.tensor, corrections))).numpy()
        gains, amounts = (spread(of_bands.transpose(1, 0, 2)) for of_bands in corrections)
        masks = np.clip(gains * values[:, -PARTS * BINS:].reshape(-1, PARTS, BINS) + amounts, 0, 1)
        return masks * confidence[0, :, None]

    def _corrections(self, mix):
        """Gains and amounts, (PARTS, frames, bands) each, from overlapping blocks."""
        frames = mix.shape[1]
        gains, amounts = (np.zeros((PARTS, frames, mix.shape[2]), np.float32) for _ in range(2))
        for begin in range(0, max(1, frames - 2 * CONTEXT), FRAMES - 2 * CONTEXT):
            begin = max(0, min(begin, frames - FRAMES))
            block = inputs_of(mix[None, :, begin:begin + FRAMES])
            skipped = CONTEXT if begin else 0
            with torch.no_grad():
                results = self._model(torch.nn.functional.pad(block, (0, 0, 0, FRAMES - block.shape[2])))
            for whole, result in zip((gains, amounts), results):
                whole[:, begin + skipped:begin + FRAMES] = result[0, :, skipped:block.shape[2]].numpy()
        return gains, amounts

    def close(self):
        self._meter.close()


def differences(old, new, key, names):
    """By instrument, how much better the new scores of the songs are."""
    pairs = {i: [(old[n][i][key], new[n][i][key]) for n in names if key in old[n].get(i, {})] for i in INSTRUMENTS}
    return {i: np.array(p) for i, p in pairs.items() if p}


def verdict(old, new):
    """The lines of the table, and whether the gate is open."""
    lines, is_open = ["| | " + " | ".join(INSTRUMENTS) + " |", "|---" * 6 + "|"], True
    for title, key, names, needed in (("songs", "sdr", old, NEEDED), ("absent", "below", old, {}), ("loops", "sdr", LOOPS, {})):
        pairs = differences(old, new, key, names)
        for row, of in (("separator", lambda p: p[:, 0]), ("estimator", lambda p: p[:, 1]), ("gain", lambda p: p[:, 1] - p[:, 0])):
            cells = (f"{of(pairs[i]).mean():.2f} [{of(pairs[i]).min():.1f}]" if i in pairs else "–" for i in INSTRUMENTS)
            lines.append(f"| {title}: {row} | " + " | ".join(cells) + " |")
        if title == "loops":
            is_open &= np.concatenate([p[:, 1] - p[:, 0] for p in pairs.values()]).mean() >= 0
        else:
            is_open &= all((p[:, 1] - p[:, 0]).mean() >= needed.get(i, 0) for i, p in pairs.items())
    return lines, bool(is_open)


def per_song(old, new):
    def cell(i, name):
        pair = [next(iter(s[name][i].values())) for s in (old, new)] if i in old[name] else None
        return "–" if pair is None else ("{:.1f} → {:.1f}" if "sdr" in old[name][i] else "({:.0f} → {:.0f})").format(*pair)

    return [f"| {name} | " + " | ".join(cell(i, name) for i in INSTRUMENTS) + " |" for name in old]


def main():
    folder, program, kept = sys.argv[1:4]
    torch.set_num_threads(1)
    frozen = frozen_songs(folder)
    if not os.path.exists(kept):
        results = {name: scored(song, separators(program)) for name, song in frozen.items()}
        with open(kept, "w") as file:
            json.dump(results, file, indent=1)
    if len(sys.argv) < 6:
        return
    with open(kept) as file:
        old = json.load(file)
    network = Network(*sys.argv[4:6])
    new = {name: scored(song, network) for name, song in frozen.items()}
    network.close()
    lines, is_open = verdict(old, new)
    print("\n".join(lines + per_song(old, new) + ["The gate is " + ("open." if is_open else "closed.")]))
    sys.exit(0 if is_open else 1)


if __name__ == "__main__":
    main()
