// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/wavfile.h"

#include <QRandomGenerator>

#include <cmath>
#include <functional>
#include <numbers>

/// Interleaved samples of a sound whose value at (frame, channel) a function returns, -1 to 1.
inline std::vector<std::int32_t> soundOf(const localservice::WavShape &shape,
                                         const std::function<double(qint64, int)> &value)
{
    const double maximum = std::ldexp(1.0, shape.bits - 1) - 1;
    std::vector<std::int32_t> samples;
    samples.reserve(std::size_t(shape.frames * shape.channels));
    for (qint64 frame = 0; frame < shape.frames; ++frame) {
        for (int channel = 0; channel < shape.channels; ++channel)
            samples.push_back(std::int32_t(std::lrint(maximum * value(frame, channel))));
    }
    return samples;
}

inline double sine(double hertz, qint64 frame, int rate)
{
    return 0.5 * std::sin(2 * std::numbers::pi * hertz * double(frame) / rate);
}

inline void writeWav(const std::filesystem::path &path, const localservice::WavShape &shape,
                     const std::vector<std::int32_t> &samples)
{
    localservice::WavWriter writer(path, shape);
    writer.write(samples);
    writer.finish();
}

inline std::vector<std::int32_t> readWav(const std::filesystem::path &path)
{
    localservice::WavReader reader(path);
    std::vector<std::int32_t> samples(std::size_t(reader.shape().frames * reader.shape().channels));
    reader.read(samples);
    return samples;
}

inline double energyOf(const std::vector<std::int32_t> &samples)
{
    double energy = 0;
    for (const std::int32_t sample : samples)
        energy += double(sample) * sample;
    return energy;
}
