#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Fits the weights of the separator's cues, and of what tells that an instrument plays, to samples of songs of known parts.

usage: fit.py SAMPLES [STEPS] > localservice/engine/cueweights.cpp
Prints the scores on songs of held-out sources (every tenth) to standard error; the weights that it writes are fitted to all songs."""
import glob
import os
import sys

import numpy as np
import torch

KNOTS = np.log2([30, 60, 125, 250, 500, 1000, 2000, 4000, 8000, 16000])  # as weightKnots in the engine
HERTZ_PER_BIN = 44100 / 4096
PARTS = 6
BINS_A_STEP, SONGS_A_STEP = 18000, 4
AUDIBLE = 1e-3  # of a mix' energy: a part with less does not play
QUIET = 17.5  # dB below the mix: enough for a part that does not play
ABSENT_COST = torch.tensor([0.3, 0.3, 0.3, 0.3, 1, 0.3])  # of each dB that an absent part is louder; few songs are without drums
HIGH = round(3000 / HERTZ_PER_BIN)  # the bin from which on the survey looks once more
FAINT = 1e-3  # of a mix' energy: so little that it says nothing
HIGH_CLUES = slice(PARTS + 1, PARTS + 3)
SELDOM = 0.03  # of the songs in which a part plays: so many may be called doubtful
SILENCE = 0.05  # a confidence
SPARSE = "-2.npz"  # how the samples of sparse mixes end
DRUMS = 4
# The greatest confidence: drums of loops are unlike those learned from, and a wrong guess is loud; a guitar may be anything.
MOST = torch.tensor([0.8, 1, 1, 1, 0.85, 1])
# What a weight of presence costs: where the clues say little, confidence had better not vary much.
CAUTION = torch.tensor([0.1, 1e-3, 0.1, 0.05, 1e-3, 0.1])[:, None]


def knot_shares():
    """For each bin the shares of the knots between which it lies."""
    octave = np.log2(np.maximum(np.arange(2049), 0.5) * HERTZ_PER_BIN)
    place = np.interp(octave, KNOTS, np.arange(len(KNOTS)))
    return torch.tensor(np.maximum(0, 1 - np.abs(place[:, None] - np.arange(len(KNOTS)))), dtype=torch.float32)


SHARES = knot_shares()


class Song:
    """The sampled bins of one mix."""

    def __init__(self, path):
        data = np.load(path)
        self.number = int(os.path.basename(path).split("-")[0])
        self.weight, self.bin = torch.tensor(data["weight"]), torch.tensor(data["bin"].astype(np.int64))
        self.cues, self.like, self.energy = (torch.tensor(data[name]) for name in ("cues", "likeness", "energy"))

    def some(self, chosen):
        weight = self.weight[chosen]
        return self.cues[chosen].float(), self.bin[chosen], weight / weight.sum(), self.like[chosen].float(), self.energy[chosen].float()

    def all(self):
        return self.some(slice(None))


class Masks(torch.nn.Module):
    """As MaskModel in the engine."""

    def __init__(self, cues):
        super().__init__()
        self.register_buffer("mean", torch.zeros(cues))
        self.register_buffer("scale", torch.ones(cues))
        self.weights = torch.nn.Parameter(torch.zeros(len(KNOTS) * cues, PARTS))

    def forward(self, cues, bins):
        at_knots = SHARES[bins][:, :, None] * ((cues - self.mean) / self.scale)[:, None, :]
        return torch.softmax(at_knots.flatten(1) @ self.weights, 1)

    def look_at(self, songs):
        some = torch.cat([song.cues[::50].float() for song in songs])
        spread = some.std(0)
        self.scale.copy_(torch.where(spread > 1e-3, spread, 1.0))
        self.mean.copy_(torch.where(spread > 1e-3, some.mean(0), 0.0))

    def plain(self):
        """(part, cue, knot), to be applied to cues as they are measured; the last cue is always 1."""
        weights = self.weights.detach().reshape(len(KNOTS), -1, PARTS).permute(2, 1, 0) / self.scale[None, :, None]
        weights[:, -1] -= (weights * self.mean[None, :, None]).sum(1)
        return weights.numpy()


def measures(masks, weight, like, energy):
    """Of a mix' energy, for each part: what it has, what is wrong with its result, and what its result has."""
    weight = weight[:, None]
    return (weight * energy).sum(0), (weight * (energy - 2 * masks * like + masks ** 2)).sum(0), (weight * masks ** 2).sum(0)


def cost(has, wrong, gets):
    """Minus SDR, with a surcharge where it is worse than silence; for an absent part, its level in excess."""
    plays = (has > AUDIBLE).float()
    decibels = 10 * torch.log10((wrong + 1e-4) / (has + 1e-4))
    excess = torch.relu(10 * torch.log10(gets + 10 ** -2.2) + QUIET)
    each = plays * (decibels + 3 * torch.relu(decibels + 0.3)) + (1 - plays) * ABSENT_COST * excess
    return (each * torch.tensor([1, 1, 1, 1, 1, 0.3])).sum(-1).mean()


def cosine(optimizer, rate, share):
    for group in optimizer.param_groups:
        group["lr"] = rate * (0.5 + 0.5 * np.cos(np.pi * share)) + 1e-5


def fitted_masks(songs, steps):
    torch.manual_seed(0)
    random = np.random.default_rng(0)
    model = Masks(songs[0].cues.shape[1])
    model.look_at(songs)
    optimizer = torch.optim.Adam(model.parameters(), 5e-3)
    for step in range(steps):
        cosine(optimizer, 5e-3, step / steps)
        optimizer.zero_grad()
        for index in random.choice(len(songs), SONGS_A_STEP, replace=False):
            song = songs[index]
            cues, bins, weight, like, energy = song.some(torch.randint(len(song.bin), (BINS_A_STEP,)))
            cost(*measures(model(cues, bins), weight, like, energy)).backward()
        optimizer.step()
    return model


def summaries(model, songs):
    """For each song and part: its share of the energy, its result's energy, its likeness with its part, its part's energy;
    then the first two of the high bins alone."""
    rows = []
    with torch.no_grad():
        for song in songs:
            cues, bins, weight, like, energy = song.all()
            masks, weight = model(cues, bins), weight[:, None]
            high = masks * (bins >= HIGH)[:, None]
            rows.append(torch.stack([(weight * m).sum(0) for m in (masks, masks ** 2, masks * like, energy, high, high * masks)]))
    return torch.stack(rows)


def clues(summary):
    """(songs, part, clue): the shares of all parts; its own sureness; its share of the high bins and its sureness there; 1."""
    share, gets, high_share, high_gets = summary[:, 0], summary[:, 1], summary[:, 4] + FAINT, summary[:, 5]
    own = torch.stack([gets / share, torch.log(high_share), high_gets / high_share, torch.ones_like(share)], 2)
    return torch.cat([torch.log(share + FAINT)[:, None].expand(-1, PARTS, -1), own], 2)


def confidences(weights, summary):
    """As SongSurvey::confidence in the engine."""
    return MOST * torch.sigmoid((clues(summary) * weights).sum(2))


def scaled(summary, gain):
    return summary[:, 3], summary[:, 3] - 2 * gain * summary[:, 2] + gain ** 2 * summary[:, 1], gain ** 2 * summary[:, 1]


def fitted_presence(summary):
    """Weights (part, clue) of confidences by which scaled results cost least."""
    given = clues(summary)
    mean, spread = given.mean(0), given.std(0)
    mean[:, -1], spread[:, -1] = 0, 1
    allowed = torch.ones_like(mean)
    allowed[:DRUMS, HIGH_CLUES] = allowed[DRUMS + 1:, HIGH_CLUES] = 0  # a dull guitar is a guitar
    weights = torch.zeros_like(mean)
    weights[:, -1] = 2
    weights.requires_grad_()
    optimizer = torch.optim.Adam([weights], 0.03)
    for step in range(3000):
        cosine(optimizer, 0.03, step / 3000)
        optimizer.zero_grad()
        gain = MOST * torch.sigmoid(((given - mean) / spread * weights * allowed).sum(2))
        (cost(*scaled(summary, gain)) + (CAUTION * weights[:, :-1] ** 2).sum()).backward()
        optimizer.step()
    plain = weights.detach() * allowed / spread
    plain[:, -1] -= (plain * mean).sum(1)
    return plain


def low_confidences(weights, summary):
    """For each part the confidence that it hardly ever has where it plays. Where that would tell of less than half of the songs
    without it, so little that it means nothing but silence."""
    values, plays = confidences(weights, summary), summary[:, 3] > AUDIBLE
    lows = [values[plays[:, part], part].quantile(SELDOM) for part in range(PARTS)]
    told = [(values[~plays[:, part], part] < low).float().mean() for part, low in enumerate(lows)]
    print("told of absent parts:", [round(float(share), 2) for share in told], file=sys.stderr)
    return [float(low) if share > 0.5 else SILENCE for low, share in zip(lows, told)]


def report(title, summary, weights):
    has, wrong, gets = scaled(summary, confidences(weights, summary))
    for part in range(PARTS - 1):
        plays = has[:, part] > AUDIBLE
        scores = 10 * torch.log10(has[plays, part] / wrong[plays, part])
        below = -10 * torch.log10(gets[~plays, part] + 1e-6)
        absent = f"{below.median():.1f} [{below.min():.1f}]" if len(below) else "–"
        print(f"{title}, part {part}: SDR {scores.median():.1f} [{scores.min():.1f}], absent {absent} below", file=sys.stderr)


def written(numbers):
    lines = []
    for begin in range(0, len(numbers), 14):
        lines.append("    " + " ".join(f"{n}," for n in numbers[begin:begin + 14]))
    return "\n".join(lines)


def row(weights, most, low):
    shares, own = (", ".join(f"{w:.3f}F" for w in some) for some in (weights[:PARTS], [*weights[PARTS:], most, low]))
    return f"    {{{{{shares}}}, {own}}},"


def fitted(songs, sparse, steps):
    """Masks, fitted to songs; the weights of presence; and what these were fitted to: the songs and sparse ones."""
    model = fitted_masks(songs, steps)
    summary = summaries(model, songs + sparse)
    return model, fitted_presence(summary), summary


def main():
    torch.set_num_threads(1)
    paths = sorted(glob.glob(os.path.join(sys.argv[1], "*.npz")))
    songs, sparse = ([Song(path) for path in paths if path.endswith(SPARSE) == is_sparse] for is_sparse in (False, True))
    steps = int(sys.argv[2]) if len(sys.argv) > 2 else 700
    learned, held_out = [([s for s in some if (s.number % 10 == 9) == is_held_out] for some in (songs, sparse)) for is_held_out in (False, True)]
    trial, presence, _ = fitted(*learned, steps)
    for title, some in zip(("held out", "held out, sparse"), held_out):
        report(title, summaries(trial, some), presence)
    model, presence, summary = fitted(songs, sparse, steps)
    report("all", summary, presence)
    weights = np.round(model.plain() * 1000).astype(int).ravel()
    rows = [row(*each) for each in zip(presence[:-1], MOST, low_confidences(presence, summary))]
    print(TEXT.format(weights=written(weights), presence="\n".join(rows)), end="")


TEXT = """// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// Written by training/fit.py.
#include "localservice/engine/cueweights.h"

namespace localservice {{

// clang-format off
const std::array<std::int16_t, partCount * cueCount * weightKnots.size()> cueWeights = {{
{weights}
}};

const std::array<PresenceWeights, partCount - 1> presenceWeights = {{{{
{presence}
}}}};
// clang-format on

}} // namespace localservice
"""

if __name__ == "__main__":
    main()
