#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Mixes the parts that material.py rendered, each time otherwise, and has the separator's cues measured at random bins.

usage: samples.py PARTS TEKO-CUES SAMPLES
PARTS holds NNNN.npy; SAMPLES gets of each song NNNN-0.npz and NNNN-1.npz, two whole mixes, and NNNN-2.npz, a sparse one."""
import glob
import os
import subprocess
import sys

import numpy as np

from material import SCALE
from songs import LEVELS, PARTS
from sound import placed

ABSENT = {"guitar": 0.15, "vocals": 0.15, "piano": 0.2, "bass": 0.12, "drums": 0.12, "rest": 0.3}
SPARSE = 2  # the take with few parts


def seats(random):
    """Where guitar and piano sit: mostly on opposite sides, else one of them or both in the middle, or anywhere."""
    side = random.choice((-1, 1))
    guitar, piano = side * random.uniform(0.2, 1), -side * random.uniform(0.2, 1)
    kind = random.random()
    if kind < 0.3:
        guitar = random.normal(0, 0.12)
    elif kind < 0.45:
        piano = random.normal(0, 0.12)
    elif kind < 0.65:
        guitar, piano = random.normal(0, 0.12, 2)
    elif kind < 0.8:
        guitar, piano = random.uniform(-1, 1, 2)
    return {"guitar": guitar, "piano": piano, "rest": random.uniform(-0.6, 0.6)}


def few(parts, random):
    """One to three of the parts that are not silent."""
    sounding = [i for i in range(len(PARTS)) if parts[i].any()]
    chosen = random.permutation(sounding)[:random.integers(1, 4)]
    return [i in chosen for i in range(len(PARTS))]


def mixed(parts, random, sparse=False):
    """The parts (6, 2, frames) as they stand in one mix; some of them, or all but a few, are silent."""
    pans, mono = seats(random), random.random() < 0.07
    present = few(parts, random) if sparse else [random.random() >= ABSENT[part] for part in PARTS]
    result = np.zeros_like(parts)
    for i, part in enumerate(PARTS):
        pan = np.clip(pans.get(part, random.normal(0, 0.04)), -1, 1)
        width = 0.2 * random.random() if part == "bass" else random.uniform(0.1, 1.2)
        gain = 10 ** ((LEVELS[part] + 20 + random.normal(0, 3)) / 20)
        if present[i]:
            result[i] = placed(parts[i], pan, width) * gain
    if mono:
        result[:] = result.mean(1, keepdims=True)
    return result if np.abs(result[:5]).max() > 1e-3 else mixed(parts, random, sparse)


def measured(program, parts, seed):
    """What teko-cues says about a mix, as arrays by name."""
    output = subprocess.run([program, str(seed)], input=parts.astype(np.float32).tobytes(), stdout=subprocess.PIPE, check=True).stdout
    fields = int(np.frombuffer(output[:4], np.int32)[0])
    records = np.frombuffer(output[4:], np.float32).reshape(-1, fields)
    bins, weight, cues, like, energy = np.split(records, [1, 2, fields - 2 * len(PARTS), fields - len(PARTS)], axis=1)
    return {"bin": bins[:, 0].astype(np.int32), "weight": weight[:, 0] / weight.sum(), "cues": cues.astype(np.float16),
            "likeness": np.clip(like, -8, 8).astype(np.float16), "energy": np.clip(energy, 0, 64).astype(np.float16)}


def main():
    folder, program, output = sys.argv[1:4]
    os.makedirs(output, exist_ok=True)
    for path in sorted(glob.glob(os.path.join(folder, "*.npy"))):
        name = os.path.basename(path)[:-4]
        parts = np.load(path).astype(np.float32) / SCALE
        for take in range(SPARSE + 1):
            seed = int(name) + 1000 * take
            sample = measured(program, mixed(parts, np.random.default_rng(seed), take == SPARSE), seed)
            np.savez(os.path.join(output, f"{name}-{take}.npz"), **sample)


if __name__ == "__main__":
    main()
