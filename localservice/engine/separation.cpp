// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/separation.h"

#include "localservice/engine/separator.h"
#include "localservice/engine/survey.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace localservice {

namespace {

// The survey listens to the first half of each piece of this many hops: about 12 seconds.
constexpr int pieceHops = 512;
// The survey's share of the progress.
constexpr double surveyShare = 0.3;

void toPlanes(std::span<const std::int32_t> samples, int bits, Planes &planes)
{
    const float scale = std::ldexp(1.0F, 1 - bits);
    for (std::size_t channel = 0; channel < planes.size(); ++channel) {
        for (std::size_t i = 0; i < Stft::hopSize; ++i)
            planes[channel][i] = scale * static_cast<float>(samples[i * planes.size() + channel]);
    }
}

bool isSilent(const std::vector<std::int32_t> &samples)
{
    return std::ranges::all_of(samples, [](std::int32_t sample) { return sample == 0; });
}

// One run through a song from its beginning, hop by hop.
class HopReader
{
public:
    HopReader(WavReader &reader, std::int64_t frames)
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
        samples.assign(Stft::hopSize * m_channels, 0);
        const auto wanted = std::min<std::int64_t>(m_left, Stft::hopSize);
        // A file that ends early is silent from there on.
        if (wanted > 0)
            m_reader.read(std::span(samples).first(static_cast<std::size_t>(wanted) * m_channels));
        m_left -= wanted;
        return wanted;
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

Confidence survey(WavReader &reader, Part instrument, JobControl &control)
{
    const WavShape &shape = reader.shape();
    const auto channels = static_cast<std::size_t>(shape.channels);
    SongSurvey song(channels, shape.sampleRate, instrument);
    HopReader hops(reader, shape.frames);
    std::vector<std::int32_t> samples;
    Planes hop(channels, std::vector<float>(Stft::hopSize));
    for (int turn = 0; hops.next(samples) > 0 && !control.cancelled;) {
        control.progress = surveyShare * hops.share();
        // A piece begins where something sounds.
        if (turn == 0 && isSilent(samples))
            continue;
        if (turn == 0)
            song.beginPiece();
        if (turn < pieceHops / 2) {
            toPlanes(samples, shape.bits, hop);
            song.push(hop);
        }
        turn = (turn + 1) % pieceHops;
    }
    return song.confidence();
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
    const std::int32_t maximum = (std::int32_t{1} << (bits - 1)) - 1;
    const std::int32_t minimum = -maximum - 1;
    for (std::size_t i = 0; i < input.size(); ++i) {
        const float wanted = std::clamp(part[i], -1.0F, 1.0F) * scale;
        // Both the part and what it leaves must fit: 0 always does.
        const std::int32_t lower = std::max(minimum, input[i] - maximum);
        const std::int32_t upper = std::min(maximum, input[i] - minimum);
        main[i] = std::clamp(static_cast<std::int32_t>(std::lrint(wanted)), lower, upper);
        mix[i] = input[i] - main[i];
    }
}

std::optional<Confidence> separate(const SeparationTask &task, JobControl &control)
{
    WavReader reader(task.input);
    const WavShape shape = reader.shape();
    const Confidence confidence = survey(reader, task.instrument, control);

    const auto channels = static_cast<std::size_t>(shape.channels);
    Separator separator(channels, shape.sampleRate, task.instrument, confidence.value);
    ResultPair results(task, shape);
    HopReader hops(reader, shape.frames);
    Planes in(channels, std::vector<float>(Stft::hopSize));
    Planes out = in;
    std::deque<PendingHop> pending;
    for (int index = 0; !control.cancelled; ++index) {
        PendingHop hop;
        hop.frames = hops.next(hop.samples);
        toPlanes(hop.samples, shape.bits, in);
        pending.push_back(std::move(hop));
        separator.push(in, out);
        control.progress = surveyShare + (1 - surveyShare) * hops.share();
        if (index < Separator::delay)
            continue;
        if (pending.front().frames == 0)
            break;
        results.write(pending.front(), out);
        pending.pop_front();
    }
    if (control.cancelled)
        return std::nullopt;
    results.finish();
    return confidence;
}

} // namespace localservice
