#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Trains the estimator with mixes that mixes.py makes meanwhile; prints scores on mixes of held-out sources.

usage: train.py MIXES FIRST STEPS WEIGHTS [FROM]
At step S it draws from the mixes before number FIRST + S x FRESH and waits for those that are not made yet.
FROM are weights to go on with; WEIGHTS.part are those of a run that did not end."""
import os
import sys
import time

import numpy as np
import torch

import fit
from estimator import Estimator, inputs_of, summary_of
from fit import AUDIBLE, confidences, cosine, cost, scaled

BATCH, FRESH, RATE, REPORTED = 2, 0.25, 2e-3, 400
SEPARATOR = torch.ones(()), torch.zeros(())  # gains and amounts that change nothing
VALIDATION = range(9, 409, 10)
PRESENCE = [number for number in range(400) if number % 10 != 9]


def loaded(folder, numbers):
    paths = [os.path.join(folder, f"{number:05d}.npy") for number in numbers]
    while not all(os.path.exists(path) for path in paths):
        time.sleep(1)
    return torch.tensor(np.stack([np.load(path) for path in paths])).float()


def some_below(end, random):
    """The numbers of the mixes of a step; none of validation's."""
    numbers = random.integers(0, end, BATCH)
    return numbers - (numbers % 10 == 9)


def cost_of(mixes, corrections):
    return cost(*scaled(summary_of(mixes, *corrections), 1))


def learn(model, optimizer, mixes, random):
    """One step; returns its cost against the separator's."""
    if random.random() < 0.5:
        mixes[:, 1] *= -1  # left and right change places
    optimizer.zero_grad()
    with torch.autocast("cpu", torch.bfloat16):  # half the time
        corrections = model(inputs_of(mixes))
    value = cost_of(mixes, [correction.float() for correction in corrections])
    value.backward()
    torch.nn.utils.clip_grad_norm_(model.parameters(), 20)
    optimizer.step()
    return float(value - cost_of(mixes, SEPARATOR))


def summaries(folder, numbers, estimate):
    """Of mixes; `estimate` returns gains and amounts."""
    with torch.no_grad():
        return torch.cat([summary_of(mix, *estimate(inputs_of(mix))) for mix in (loaded(folder, [n]) for n in numbers)])


def report(title, summary, gain=1):
    """Prints for each instrument the mean SDR where it plays, and the mean level below the mix where it does not."""
    has, wrong, gets = scaled(summary, torch.as_tensor(gain))
    plays = has > AUDIBLE
    scores = torch.where(plays, 10 * torch.log10((has + 1e-9) / wrong), 0).sum(0) / plays.sum(0)
    below = torch.where(plays, 0, -10 * torch.log10(gets + 1e-6)).sum(0) / (~plays).sum(0)
    print(title, "SDR", scores[:-1].numpy().round(2), "absent", below[:-1].numpy().round(1), flush=True)


def kept(model, folder, path):
    """Writes the network and the weights of its confidence that an instrument plays; reports validation's scores with them."""
    fit.QUIET = 23  # dB: what does not play is then as quiet as the separator leaves it
    presence = fit.fitted_presence(summaries(folder, PRESENCE, model.eval()))
    torch.save({"network": model.state_dict(), "presence": presence}, path + ".part")
    os.replace(path + ".part", path)
    validation = summaries(folder, VALIDATION, model)
    report("with confidence", validation, confidences(presence, validation))


def main():
    folder, first, steps, path = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4]
    torch.set_num_threads(1)
    torch.manual_seed(0)
    random = np.random.default_rng(1)
    model = Estimator()
    if len(sys.argv) > 5:
        model.load_state_dict(torch.load(sys.argv[5])["network"])
    report("the separator alone", summaries(folder, VALIDATION, lambda inputs: SEPARATOR))
    optimizer, costs = torch.optim.AdamW(model.parameters(), RATE, weight_decay=1e-2), []
    for step in range(steps):
        cosine(optimizer, RATE * min(1, (step + 1) / 30), step / steps)
        costs.append(learn(model.train(), optimizer, loaded(folder, some_below(first + int(FRESH * step), random)), random))
        if step % REPORTED == REPORTED - 1:
            report(f"step {step + 1}, cost {np.mean(costs[-REPORTED:]):+.2f}", summaries(folder, VALIDATION, model.eval()))
            torch.save({"network": model.state_dict()}, path + ".part")
    kept(model, folder, path)


if __name__ == "__main__":
    main()
