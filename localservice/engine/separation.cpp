// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/separation.h"

#include "localservice/engine/separator.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace localservice {

namespace {

    // Listening beforehand takes two of this many hops.
    constexpr int kListenEvery = 16;
    // What listening beforehand is worth in the progress.
    constexpr double kListenShare = 0.03;

    void toPlanes(std::span<const std::int32_t> samples, int bits, Planes &planes)
    {
        const float scale = std::ldexp(1.0F, 1 - bits);
        for (std::size_t channel = 0; channel < planes.size(); ++channel) {
            for (std::size_t i = 0; i < Stft::kHop; ++i)
                planes[channel][i] =
                    scale * static_cast<float>(samples[i * planes.size() + channel]);
        }
    }

    // One run through a song from its beginning, hop by hop.
    class Hops
    {
    public:
        Hops(WavReader &reader, std::int64_t frames)
            : m_reader(reader)
            , m_frames(frames)
            , m_left(frames)
            , m_channels(static_cast<std::size_t>(reader.shape().channels))
        {
            m_reader.rewind();
        }

        // The next hop, filled up with silence; the number of frames that are the song's.
        std::int64_t next(std::vector<std::int32_t> &samples)
        {
            samples.assign(Stft::kHop * m_channels, 0);
            const auto wanted = std::min<std::int64_t>(m_left, Stft::kHop);
            const auto got = wanted > 0 ? m_reader.read(std::span(samples).first(
                                 static_cast<std::size_t>(wanted) * m_channels))
                                        : 0;
            // A file that ends before its time is silent from there on.
            m_left -= wanted;
            return std::max(got, wanted);
        }

        [[nodiscard]] double share() const
        {
            return 1 - static_cast<double>(m_left) / static_cast<double>(m_frames);
        }

    private:
        WavReader &m_reader;
        std::int64_t m_frames;
        std::int64_t m_left;
        std::size_t m_channels;
    };

    // Hears a few frames of the whole song to learn who sits where; mono songs have no seats.
    Seating listen(WavReader &reader, std::int64_t frames, JobControl &control)
    {
        const WavShape &shape = reader.shape();
        if (shape.channels < 2)
            return {};
        const auto channels = static_cast<std::size_t>(shape.channels);
        Panorama panorama(static_cast<float>(shape.sampleRate) / Stft::kFrame);
        Hops hops(reader, frames);
        Stft stft;
        std::vector<std::int32_t> samples;
        Planes hop(channels, std::vector<float>(Stft::kHop));
        std::array<std::vector<float>, 2> heard{std::vector<float>(Stft::kFrame),
                                                std::vector<float>(Stft::kFrame)};
        std::array<Spectrum, 2> before;
        std::array<Spectrum, 2> now;
        for (int index = 0; hops.next(samples) > 0 && !control.cancelled; ++index) {
            toPlanes(samples, shape.bits, hop);
            const int turn = index % kListenEvery;
            for (std::size_t side = 0; side < 2; ++side) {
                std::copy(heard[side].begin() + Stft::kHop, heard[side].end(), heard[side].begin());
                std::copy(hop[side].begin(), hop[side].end(), heard[side].end() - Stft::kHop);
                if (turn < 2)
                    stft.forward(heard[side], turn == 0 ? before[side] : now[side]);
            }
            if (turn == 1)
                panorama.add(before, now);
            control.share = kListenShare * hops.share();
        }
        return panorama.seating();
    }

    struct PendingHop
    {
        std::vector<std::int32_t> samples;
        std::int64_t frames = 0;
    };

    // Writes the two results of one hop.
    class ResultPair
    {
    public:
        ResultPair(const SeparationTask &task, const WavShape &shape)
            : m_bits(shape.bits)
            , m_main(task.main, shape)
            , m_mix(task.mix, shape)
        { }

        void write(const PendingHop &hop, const Planes &part)
        {
            const auto count = static_cast<std::size_t>(hop.frames) * part.size();
            m_part.resize(count);
            for (std::size_t i = 0; i < count; ++i)
                m_part[i] = part[i % part.size()][i / part.size()];
            m_mainSamples.resize(count);
            m_mixSamples.resize(count);
            splitSamples(std::span(hop.samples).first(count), m_part, m_bits, m_mainSamples,
                         m_mixSamples);
            m_main.write(m_mainSamples);
            m_mix.write(m_mixSamples);
        }

        void finish()
        {
            m_main.finish();
            m_mix.finish();
        }

    private:
        int m_bits;
        WavWriter m_main;
        WavWriter m_mix;
        std::vector<float> m_part;
        std::vector<std::int32_t> m_mainSamples;
        std::vector<std::int32_t> m_mixSamples;
    };

} // namespace

void splitSamples(std::span<const std::int32_t> input, std::span<const float> part, int bits,
                  std::span<std::int32_t> main, std::span<std::int32_t> mix)
{
    const float scale = std::ldexp(1.0F, bits - 1);
    const std::int32_t most = (std::int32_t{1} << (bits - 1)) - 1;
    const std::int32_t least = -most - 1;
    for (std::size_t i = 0; i < input.size(); ++i) {
        const float wanted = std::clamp(part[i], -1.0F, 1.0F) * scale;
        // Both the part and what it leaves must fit: 0 always does.
        const std::int32_t lower = std::max(least, input[i] - most);
        const std::int32_t upper = std::min(most, input[i] - least);
        main[i] = std::clamp(static_cast<std::int32_t>(std::lrint(wanted)), lower, upper);
        mix[i] = input[i] - main[i];
    }
}

std::int64_t framesToTake(const SeparationTask &task, const WavShape &shape)
{
    if (!task.secondsAtMost)
        return shape.frames;
    return std::min<std::int64_t>(shape.frames,
                                  std::llround(*task.secondsAtMost * shape.sampleRate));
}

bool separate(const SeparationTask &task, JobControl &control)
{
    WavReader reader(task.input);
    WavShape shape = reader.shape();
    shape.frames = framesToTake(task, shape);
    const Seating seating = listen(reader, shape.frames, control);

    const auto channels = static_cast<std::size_t>(shape.channels);
    Separator separator(channels, shape.sampleRate, task.instrument, seating);
    ResultPair results(task, shape);
    Hops hops(reader, shape.frames);
    Planes in(channels, std::vector<float>(Stft::kHop));
    Planes out = in;
    std::deque<PendingHop> pending;
    for (int index = 0; !control.cancelled; ++index) {
        PendingHop hop;
        hop.frames = hops.next(hop.samples);
        toPlanes(hop.samples, shape.bits, in);
        pending.push_back(std::move(hop));
        separator.push(in, out);
        control.share = kListenShare + (1 - kListenShare) * hops.share();
        if (index < Separator::kDelay)
            continue;
        if (pending.front().frames == 0)
            break;
        results.write(pending.front(), out);
        pending.pop_front();
    }
    if (control.cancelled)
        return false;
    results.finish();
    return true;
}

} // namespace localservice
