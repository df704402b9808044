// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
//
// teko-cues SEED < PARTS > SAMPLES: measures the separator's cues at random bins of a mix.
// PARTS: 32-bit floats at 44100 Hz: for each part of a song, in the order of Part, its left and its
// right channel, one after the other. SAMPLES: the number of floats of a record as a 32-bit
// integer, then records: the bin, its weight, its cues, for each part its likeness to the mix, for
// each part its energy. The last two are relative to the mix' energy in this bin.
#include "localservice/engine/cues.h"
#include "localservice/engine/part.h"

#include <cstdio>
#include <cstdlib>
#include <random>

using namespace localservice;

namespace {

constexpr int sampleRate = 44100;
constexpr float silence = 1e-7F;
// Neighbouring frames are much alike, so every other one is enough.
constexpr std::size_t frameStep = 2;
// Medians need a full history.
constexpr std::size_t firstHop = 20;

std::vector<float> readFloats()
{
    std::vector<float> values;
    std::vector<float> block(1 << 20);
    while (const std::size_t got = std::fread(block.data(), sizeof(float), block.size(), stdin))
        values.insert(values.end(), block.begin(),
                      block.begin() + static_cast<std::ptrdiff_t>(got));
    return values;
}

void writeFloats(const std::vector<float> &values)
{
    std::fwrite(values.data(), sizeof(float), values.size(), stdout);
}

// Low bins are few and hold much of the energy: they are taken more often.
float chanceOf(std::size_t bin)
{
    if (bin < 93)
        return 0.2F;
    return bin < 372 ? 0.08F : 0.025F;
}

class Song
{
public:
    explicit Song(std::vector<float> parts)
        : m_parts(std::move(parts))
        , m_frames(m_parts.size() / partCount / 2)
        , m_mix(2 * m_frames)
    {
        for (std::size_t i = 0; i < m_parts.size(); ++i)
            m_mix[i % m_mix.size()] += m_parts[i];
    }

    [[nodiscard]] std::size_t hops() const { return m_frames / Stft::hopSize; }

    [[nodiscard]] Planes hop(std::size_t index) const
    {
        Planes planes(2);
        for (std::size_t side = 0; side < 2; ++side) {
            const auto begin =
                m_mix.begin() + std::ptrdiff_t(side * m_frames + index * Stft::hopSize);
            planes[side].assign(begin, begin + Stft::hopSize);
        }
        return planes;
    }

    // The part's samples that the frame in the middle of the history after a hop was made of.
    [[nodiscard]] std::span<const float> behind(std::size_t hop, std::size_t part,
                                                std::size_t side) const
    {
        const std::size_t end = (hop + 1 - FrameHistory::reach) * Stft::hopSize;
        return std::span(m_parts).subspan((part * 2 + side) * m_frames + end - Stft::frameSize,
                                          Stft::frameSize);
    }

private:
    std::vector<float> m_parts;
    std::size_t m_frames;
    std::vector<float> m_mix;
};

class Sampler
{
public:
    Sampler(const Song &song, unsigned seed)
        : m_song(song)
        , m_random(seed)
    { }

    void take(std::size_t hop, const Frame &mix, const FrameCues &cues)
    {
        for (std::size_t part = 0; part < partCount; ++part) {
            for (std::size_t side = 0; side < 2; ++side)
                m_stft.forward(m_song.behind(hop, part, side), m_parts[part][side]);
        }
        for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
            if (m_chance(m_random) < chanceOf(bin))
                writeFloats(record(bin, mix, cues));
        }
    }

private:
    std::vector<float> record(std::size_t bin, const Frame &mix, const FrameCues &cues) const
    {
        const float energy = mix.magnitudes[bin] * mix.magnitudes[bin] + silence;
        std::vector<float> fields = {float(bin), energy / chanceOf(bin)};
        for (const std::vector<float> &values : cues.values)
            fields.push_back(values[bin]);
        for (const auto &part : m_parts) {
            float likeness = 0;
            for (std::size_t side = 0; side < 2; ++side)
                likeness += (part[side][bin] * std::conj(mix.channels[side][bin])).real();
            fields.push_back(likeness / energy);
        }
        for (const auto &part : m_parts)
            fields.push_back((std::norm(part[0][bin]) + std::norm(part[1][bin])) / energy);
        return fields;
    }

    const Song &m_song;
    Stft m_stft;
    std::array<std::array<Spectrum, 2>, partCount> m_parts;
    std::mt19937 m_random;
    std::uniform_real_distribution<float> m_chance{0, 1};
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: teko-cues SEED < PARTS > SAMPLES\n", stderr);
        return 2;
    }
    const Song song(readFloats());
    const std::int32_t fields = 2 + cueCount + 2 * partCount;
    std::fwrite(&fields, sizeof fields, 1, stdout);
    Sampler sampler(song, static_cast<unsigned>(std::atoi(argv[1])));
    FrameHistory history(2);
    CueMeter meter(sampleRate);
    for (std::size_t hop = 0; hop < song.hops(); ++hop) {
        history.push(song.hop(hop));
        const FrameCues &cues = meter.measure(history);
        if (hop >= firstHop && hop % frameStep == 0)
            sampler.take(hop, history.frame(0), cues);
    }
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? EXIT_SUCCESS : EXIT_FAILURE;
}
