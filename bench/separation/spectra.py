# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Short-time spectra as the service's separator takes them, the bands of an estimator, and the best mask that bands allow."""
import numpy as np
import scipy.fft

from sound import RATE

FRAME, HOP = 4096, 1024
BINS = FRAME // 2 + 1
WINDOW = np.sin(np.pi * np.arange(FRAME) / FRAME).astype(np.float32)


def stft(sound):
    """(2, frames) to (2, spectra, BINS); every sample lies under four windows."""
    pad = FRAME - HOP
    padded = np.pad(sound, ((0, 0), (pad, pad + -sound.shape[1] % HOP)))
    frames = np.lib.stride_tricks.sliding_window_view(padded, FRAME, axis=1)[:, ::HOP]
    return scipy.fft.rfft(frames * WINDOW, axis=-1)


def istft(spectra, frames):
    pieces = scipy.fft.irfft(spectra, FRAME, axis=-1) * WINDOW
    count = pieces.shape[1]
    sound = np.zeros((2, (count + 3) * HOP), np.float32)
    for i in range(4):  # the quarters of all windows
        sound[:, i * HOP:(i + count) * HOP] += pieces[:, :, i * HOP:(i + 1) * HOP].reshape(2, -1)
    return sound[:, FRAME - HOP:FRAME - HOP + frames] / 2


def band_edges():
    """The bins at which bands begin, and BINS: one bin each at first, then a 24th of their frequency."""
    edges = [0]
    while edges[-1] * RATE / FRAME < 20000:
        edges.append(edges[-1] + max(1, round(edges[-1] / 24)))
    return np.array(edges[:-1] + [BINS])


EDGES = band_edges()
BANDS = len(EDGES) - 1
CENTRES = (EDGES[:-1] + EDGES[1:] - 1) / 2


def pooled(values):
    """The sums over the bands of the last axis."""
    return np.add.reduceat(values, EDGES[:-1], axis=-1)


def spread(masks):
    """Masks of bands as masks of bins, straight between the bands' centres."""
    bins = np.arange(BINS)
    i = np.clip(np.searchsorted(CENTRES, bins, "right") - 1, 0, BANDS - 2)
    share = np.clip((bins - CENTRES[i]) / (CENTRES[i + 1] - CENTRES[i]), 0, 1).astype(np.float32)
    return masks[..., i] * (1 - share) + masks[..., i + 1] * share


def best_masks(mix, part):
    """The masks of bands that bring the mix' spectra nearest to a part's."""
    like = pooled((part * mix.conj()).real.sum(0))
    return np.clip(like / (pooled((np.abs(mix) ** 2).sum(0)) + 1e-9), 0, 1)


def oracle(mix, part):
    """What the best masks of bands make of a part, as sound."""
    spectra = stft(mix)
    return istft(spectra * spread(best_masks(spectra, stft(part))), mix.shape[1])


def sdr(part, estimate):
    """Signal to distortion in dB, both channels, the whole song; silence scores 0."""
    error = ((part - estimate) ** 2).sum(dtype=np.float64)
    return 10 * np.log10((part ** 2).sum(dtype=np.float64) / max(error, 1e-12))


def below(mix, estimate):
    """How far a result lies below the mix, in dB."""
    return 10 * np.log10((mix ** 2).sum(dtype=np.float64) / max((estimate ** 2).sum(dtype=np.float64), 1e-12))
