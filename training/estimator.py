# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""A network that corrects the separator's masks, in bands of frames. Mixes are as mixes.py packs them: (mixes, FIELDS, frames, bands)."""
import torch
from torch import nn

from fit import HIGH, PARTS
from mixes import CENTRES

WIDTHS = [16, 32, 48, 64, 96]
PADDED = 144  # bands, filled up for four halvings
INPUTS = 6 + PARTS


def fields_of(mixes):
    """By name, what teko-bands said of each part: (mixes, PARTS, frames, bands) each, as shares of the mix' energy."""
    of_parts = mixes[:, 5:].unflatten(1, (PARTS, 5))
    return dict(zip(("masked", "masked_twice", "own", "like", "like_masked"), of_parts.unbind(2)))


def inputs_of(mixes):
    """What the network sees: the energy against the mix' loudest, the place in the stereo field, what lasts, what is struck, the masks."""
    octaves = mixes[:, :1] - mixes[:, :1].amax((2, 3), keepdim=True)
    ratios = torch.log(mixes[:, 3:5].clamp(1e-3, 8))
    masks = torch.log(fields_of(mixes)["masked"].clamp(0, 1) + 1e-2)
    place = torch.linspace(-1, 1, mixes.shape[3]).expand_as(octaves)
    return torch.cat([octaves.clamp(-20, 0) / 6 + 1.5, mixes[:, 1:3], ratios / 2, place, masks / 2 + 1], 1)


def layer(inputs, outputs):
    return nn.Sequential(nn.Conv2d(inputs, outputs, 3, padding=1, bias=False), nn.BatchNorm2d(outputs), nn.ReLU(inplace=True))


class Stage(nn.Module):
    """Two layers; the second adds to what the first made."""

    def __init__(self, inputs, outputs):
        super().__init__()
        self.first, self.second = layer(inputs, outputs), layer(outputs, outputs)

    def forward(self, x):
        x = self.first(x)
        return x + self.second(x)


class Estimator(nn.Module):
    """From coarser and coarser views of ten seconds, for each part a gain of the separator's mask, 0 to 2, and an amount that is
    added to it, -1 to 1. Untrained it changes little."""

    def __init__(self):
        super().__init__()
        self.of_band = nn.Parameter(torch.zeros(INPUTS, 1, PADDED))
        self.down = nn.ModuleList(Stage(a, b) for a, b in zip([INPUTS] + WIDTHS, WIDTHS))
        self.overall = nn.Sequential(nn.Conv2d(WIDTHS[-1], WIDTHS[-1], (1, 3), padding=(0, 1)), nn.ReLU(), nn.Conv2d(WIDTHS[-1], WIDTHS[-1], 1))
        self.narrow = nn.ModuleList(nn.Conv2d(b, a, 1) for a, b in zip(WIDTHS, WIDTHS[1:]))
        self.up = nn.ModuleList(layer(width, width) for width in WIDTHS[:-1])
        self.last = nn.Conv2d(WIDTHS[0], 2 * PARTS, 1)
        nn.init.normal_(self.last.weight, std=0.01)
        for start in (self.last.bias, self.overall[-1].weight, self.overall[-1].bias):
            nn.init.zeros_(start)

    def forward(self, inputs):
        """(mixes, INPUTS, frames, bands) to gains and amounts, (mixes, PARTS, frames, bands) each; frames in sixteens."""
        bands = inputs.shape[3]
        x, views = nn.functional.pad(inputs, (0, PADDED - bands)) + self.of_band, []
        for i, stage in enumerate(self.down):
            x = stage(nn.functional.avg_pool2d(x, 2) if i else x)
            views.append(x)
        x = x + self.overall(x.mean(2, keepdim=True))  # what the ten seconds are like as a whole
        for i in reversed(range(len(self.up))):
            x = views[i] + nn.functional.interpolate(self.narrow[i](x), scale_factor=2)
            x = x + self.up[i](x)
        gains, amounts = self.last(x)[..., :bands].split(PARTS, 1)
        return 2 * torch.sigmoid(gains), torch.tanh(amounts)


def summary_of(mixes, gains, amounts):
    """As fit.py's summaries, (mixes, 6, PARTS), all as shares of the mix' energy: what each part's mask lets through, the energy of
    its result, the likeness of its result with the part, the part's energy; then the first two of the high bands alone."""
    fields = fields_of(mixes)
    weight = torch.exp2(mixes[:, :1] - mixes[:, :1].amax((2, 3), keepdim=True))
    weight = weight / weight.sum((2, 3), keepdim=True)
    gets = gains ** 2 * fields["masked_twice"] + 2 * gains * amounts * fields["masked"] + amounts ** 2
    like = gains * fields["like_masked"] + amounts * fields["like"]
    values = ((gains * fields["masked"] + amounts).clamp(1e-6, 1), gets, like, fields["own"])
    high = torch.tensor(CENTRES >= HIGH)
    return torch.stack([(weight * value).sum((2, 3)) for value in (*values, values[0] * high, values[1] * high)], 1)
