# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Sound as float32 arrays (2, frames) at RATE, and what a studio does to it. `random` is numpy's Generator everywhere."""
import numpy as np
import scipy.signal
import soundfile

RATE = 44100


def load(path):
    """The sound of a file, brought to two channels and RATE."""
    data, rate = soundfile.read(path, dtype="float32", always_2d=True)
    sound = data.T[:2] if data.shape[1] > 1 else np.repeat(data.T, 2, axis=0)
    if rate != RATE:
        step = np.gcd(rate, RATE)
        sound = scipy.signal.resample_poly(sound, RATE // step, rate // step, axis=1)
    return sound.astype(np.float32)


def save(path, sound, subtype="PCM_16"):
    soundfile.write(path, np.clip(sound, -1, 1).T, RATE, subtype=subtype)


def fitted(sound, frames):
    """Cut or filled up with silence."""
    return np.pad(sound[:, :frames], ((0, 0), (0, max(0, frames - sound.shape[1]))))


def at_speed(sound, ratio):
    """Played faster (and higher) by a ratio."""
    count = int(sound.shape[1] / ratio)
    old = np.arange(sound.shape[1])
    return np.stack([np.interp(np.arange(count) * ratio, old, channel) for channel in sound]).astype(np.float32)


def levelled(sound, decibels):
    """Scaled so that its parts that sound have this RMS level."""
    block = RATE // 10
    energy = (sound[:, :sound.shape[1] // block * block].reshape(2, -1, block) ** 2).mean((0, 2))
    if energy.max(initial=0) < 1e-12:
        return sound
    level = np.sqrt(energy[energy > energy.max() * 1e-4].mean())
    return (sound * (10 ** (decibels / 20) / level)).astype(np.float32)


def placed(sound, pan, width):
    """At a place between -1 (left) and 1 (right), by constant power; `width` scales the sides."""
    middle, side = (sound[0] + sound[1]) / 2, (sound[0] - sound[1]) / 2 * width
    angle = (pan + 1) * np.pi / 4
    return (np.stack([(middle + side) * np.cos(angle), (middle - side) * np.sin(angle)]) * np.sqrt(2)).astype(np.float32)


def equalised(sound, depth, random):
    """With a random tone: a tilt and three bells of up to `depth` dB."""
    frequency = np.fft.rfftfreq(sound.shape[1], 1 / RATE)
    octave = np.log2(np.maximum(frequency, 10) / 1000)
    gain = random.uniform(-depth, depth) / 12 * np.clip(octave, -4, 4)
    for _ in range(3):
        gain += random.uniform(-depth, depth) * np.exp(-((octave - random.uniform(-4, 3.5)) / random.uniform(0.3, 1.2)) ** 2)
    return np.fft.irfft(np.fft.rfft(sound) * 10 ** (gain / 20), sound.shape[1]).astype(np.float32)


def driven(sound, gain):
    """Distorted as by an amplifier."""
    return (np.tanh(levelled(sound, -20) * gain) / gain).astype(np.float32)


def room(seconds, random):
    """The impulse response of a room: noise that decays, dull later than bright."""
    frames = int(min(2.5, seconds * 1.2) * RATE)
    noise = random.normal(size=(2, frames))
    noise[1] = noise[0] + random.uniform(0.4, 1) * (noise[1] - noise[0])
    time, frequency = np.arange(frames) / RATE, np.fft.rfftfreq(frames, 1 / RATE)
    response = 0
    for edge, decay in ((5000, seconds / 2), (1500, seconds)):
        filtered = np.fft.irfft(np.fft.rfft(noise) / (1 + (frequency / edge) ** 2), frames)
        response = response + filtered * 10 ** (-3 * time / decay)
    response = np.pad(response, ((0, 0), (int(random.uniform(0.003, 0.04) * RATE), 0)))
    return response / np.sqrt((response ** 2).sum(1).mean())


def reverberated(sound, decibels, seconds, random):
    """With a room's answer at this level beside the dry sound."""
    answer = scipy.signal.fftconvolve(sound, room(seconds, random), axes=1)[:, :sound.shape[1]]
    return (sound + 10 ** (decibels / 20) * answer).astype(np.float32)
