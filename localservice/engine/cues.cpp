// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/cues.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

// Ratios are limited: beyond, they say nothing more.
constexpr float leastRatio = -5;
constexpr float greatestRatio = 3;
constexpr float greatestRise = 4;
// Added to magnitudes before ratios are taken.
constexpr float silence = 1e-4F;
// The width of the middle in the stereo field, in units of pan.
constexpr float middleWidth = 0.3F;
// How much of an onset still rings a frame later.
constexpr float ringingDecay = 0.75F;
// The neighbours to either side that a peak is compared with.
constexpr int peakReach = 8;
// The neighbours to either side that are heard together with a bin.
constexpr int aroundReach = 10;
// The frames over which the usual level of a bin is a mean, about: some seconds.
constexpr int usualFrames = 200;
// The frames before and after between which the slope is taken.
constexpr int slopeReach = 5;
// The frames after this one in which a tone settles.
constexpr int settlingFrames = 4;
// How much of an onset of all frequencies still rings a frame later.
constexpr float wideRingingDecay = 0.85F;
// The onsets, in octaves of rise together, over which the habit of a bin is a mean.
constexpr float habitWeight = 60;
// Each cue, and the one that is its mean around a bin.
constexpr std::array<std::pair<Cue, Cue>, 4> surroundings = {
    {{Cue::Sustained, Cue::SustainedAround},
     {Cue::Transient, Cue::TransientAround},
     {Cue::Middle, Cue::MiddleAround},
     {Cue::Side, Cue::SideAround}}};
constexpr std::array<float, 7> bandEdgesHertz = {10, 130, 300, 1000, 4000, 11800, 22100};

float ratioOf(float magnitude, float level)
{
    return std::clamp(std::log2(magnitude + silence) - level, leastRatio, greatestRatio);
}

float riseTo(float after, float before)
{
    return std::clamp(std::log2((after + silence) / (before + silence)), -greatestRise,
                      greatestRise);
}

std::size_t binAt(float hertz, float hertzPerBin)
{
    return std::clamp<std::size_t>(static_cast<std::size_t>(std::lround(hertz / hertzPerBin)), 1,
                                   Stft::binCount);
}

// The mean rise from one frame to the next, in each band.
template <std::size_t count>
auto risesBetween(const Frame &before, const Frame &after,
                  const std::array<std::size_t, count> &edges)
{
    std::array<float, count - 1> rises{};
    for (std::size_t band = 0; band + 1 < count; ++band) {
        for (std::size_t bin = edges[band]; bin < edges[band + 1]; ++bin)
            rises[band] += std::clamp(after.levels[bin] - before.levels[bin], 0.0F, greatestRise);
        const std::size_t width = edges[band + 1] - edges[band];
        rises[band] /= static_cast<float>(std::max<std::size_t>(width, 1));
    }
    return rises;
}

float between(std::span<const float> values, float position)
{
    const auto index = static_cast<std::size_t>(position);
    const float share = position - static_cast<float>(index);
    return values[index] * (1 - share) + values[std::min(index + 1, values.size() - 1)] * share;
}

// Where a bin lies between the channels.
struct StereoPosition
{
    float pan = 0; // -1 left, 0 middle, 1 right
    float similarity = 1; // 0 the channels differ wholly, 1 they are alike
    float agreement = 1; // -1 the channels cancel each other, 1 they agree
};

StereoPosition positionOf(std::complex<float> left, std::complex<float> right)
{
    const float l = std::norm(left);
    const float r = std::norm(right);
    if (l + r <= 0)
        return {};
    const std::complex<float> product = left * std::conj(right);
    return {(r - l) / (l + r), 2 * std::abs(product) / (l + r), 2 * product.real() / (l + r)};
}

// Where each bin lies between the centres of the bands, by octaves.
std::vector<float> bandPositions(float hertzPerBin)
{
    constexpr std::size_t count = bandEdgesHertz.size() - 1;
    std::array<float, count> centres{};
    for (std::size_t band = 0; band < count; ++band)
        centres[band] = std::log2((bandEdgesHertz[band] + bandEdgesHertz[band + 1]) / 2);
    std::vector<float> positions(Stft::binCount);
    std::size_t band = 0;
    for (std::size_t bin = 1; bin < positions.size(); ++bin) {
        const float octave = std::log2(static_cast<float>(bin) * hertzPerBin);
        while (band + 2 < count && centres[band + 1] < octave)
            ++band;
        const float share = (octave - centres[band]) / (centres[band + 1] - centres[band]);
        positions[bin] = static_cast<float>(band) + std::clamp(share, 0.0F, 1.0F);
    }
    return positions;
}

} // namespace

CueMeter::CueMeter(int sampleRate)
    : m_bass(static_cast<float>(sampleRate) / Stft::frameSize, 36, 260, 6)
    , m_voice(static_cast<float>(sampleRate) / Stft::frameSize, 85, 900, 10)
    , m_bandPositions(bandPositions(static_cast<float>(sampleRate) / Stft::frameSize))
    , m_usualLevels(Stft::binCount)
    , m_struckHabits(Stft::binCount)
    , m_scratch(Stft::binCount)
{
    const float hertzPerBin = static_cast<float>(sampleRate) / Stft::frameSize;
    for (auto &values : m_cues.values)
        values.assign(Stft::binCount, 1);
    for (std::size_t i = 0; i < m_bandEdges.size(); ++i)
        m_bandEdges[i] = binAt(bandEdgesHertz[i], hertzPerBin);
}

const FrameCues &CueMeter::measure(const FrameHistory &history)
{
    measureRatios(history);
    measurePositions(history.frame(0));
    measureOnsets(history);
    measureShape(history);
    measurePitches(history);
    measureSurroundings(history.frame(0));
    measureLoudness(history.frame(0));
    measureTones(history);
    measureHabits();
    return m_cues;
}

void CueMeter::measureRatios(const FrameHistory &history)
{
    const Frame &frame = history.frame(0);
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const float level = frame.levels[bin];
        m_cues.of(Cue::Sustained)[bin] = ratioOf(history.sustained()[bin], level);
        m_cues.of(Cue::Wandering)[bin] = ratioOf(history.wandering()[bin], level);
        m_cues.of(Cue::Transient)[bin] = ratioOf(history.transient()[bin], level);
    }
}

void CueMeter::measurePositions(const Frame &frame)
{
    const bool wide = frame.channels.size() > 1;
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const StereoPosition place =
            wide ? positionOf(frame.channels[0][bin], frame.channels[1][bin]) : StereoPosition{};
        const float x = place.pan / middleWidth;
        m_cues.of(Cue::Middle)[bin] = std::exp(-x * x) * place.similarity;
        m_cues.of(Cue::Similarity)[bin] = place.similarity;
        m_cues.of(Cue::Agreement)[bin] = place.agreement;
        m_cues.of(Cue::Side)[bin] = std::abs(place.pan);
    }
}

void CueMeter::measureOnsets(const FrameHistory &history)
{
    // An onset inside a frame shows in two: the second one counts as well.
    const auto now = risesBetween(history.frame(-1), history.frame(0), m_bandEdges);
    const auto next = risesBetween(history.frame(0), history.frame(1), m_bandEdges);
    std::array<float, bandCount> rises{};
    float wide = 0;
    for (std::size_t band = 0; band < bandCount; ++band) {
        rises[band] = std::max(now[band], next[band]);
        m_ringing[band] = std::max(rises[band], ringingDecay * m_ringing[band]);
        wide += rises[band] / bandCount;
    }
    std::fill(m_cues.of(Cue::WideOnset).begin(), m_cues.of(Cue::WideOnset).end(), wide);
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        m_cues.of(Cue::Onset)[bin] = between(rises, m_bandPositions[bin]);
        m_cues.of(Cue::Ringing)[bin] = between(m_ringing, m_bandPositions[bin]);
    }
}

void CueMeter::measureShape(const FrameHistory &history)
{
    const Frame &frame = history.frame(0);
    const Frame &past = history.frame(-slopeReach);
    const Frame &future = history.frame(slopeReach);
    double energy = 0;
    const auto energyAt = [&frame](int bin) {
        const bool inside = bin >= 0 && bin < Stft::binCount;
        return inside ? double(frame.magnitudes[bin]) * frame.magnitudes[bin] : 0.0;
    };
    for (int bin = -peakReach; bin < Stft::binCount; ++bin) {
        energy += energyAt(bin + peakReach) - energyAt(bin - peakReach - 1);
        if (bin < 0)
            continue;
        const double mean = std::max(energy, 0.0) / (2 * peakReach + 1);
        m_cues.of(Cue::Peak)[bin] =
            -ratioOf(static_cast<float>(std::sqrt(mean)), frame.levels[bin]);
        m_cues.of(Cue::Slope)[bin] = riseTo(future.peaks[bin], past.peaks[bin]);
    }
}

void CueMeter::measurePitches(const FrameHistory &history)
{
    const Frame &frame = history.frame(0);
    const std::span<const float> transient = history.transient();
    const std::span<const float> sustained = history.sustained();
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const float lasting = sustained[bin] / (sustained[bin] + transient[bin] + silence);
        m_scratch[bin] = std::min(frame.magnitudes[bin], 2 * sustained[bin]) * lasting;
    }
    m_bass.trace(m_scratch, m_cues.of(Cue::BassComb));
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        const float struck = transient[bin] / (frame.magnitudes[bin] + silence);
        m_scratch[bin] =
            frame.magnitudes[bin] * m_cues.of(Cue::Middle)[bin] / (1 + struck * struck);
    }
    m_voice.trace(m_scratch, m_cues.of(Cue::VoiceComb));
    std::fill(m_cues.of(Cue::BassSalience).begin(), m_cues.of(Cue::BassSalience).end(),
              m_bass.salience());
    std::fill(m_cues.of(Cue::VoiceSalience).begin(), m_cues.of(Cue::VoiceSalience).end(),
              m_voice.salience());
    std::fill(m_cues.of(Cue::VoiceMotion).begin(), m_cues.of(Cue::VoiceMotion).end(),
              m_voice.motion());
}

void CueMeter::measureSurroundings(const Frame &frame)
{
    constexpr int count = Stft::binCount;
    const auto addAt = [&](int bin, double sign, double &weight, std::array<double, 4> &sums) {
        if (bin < 0 || bin >= count)
            return;
        const double energy = sign * (double(frame.magnitudes[bin]) * frame.magnitudes[bin] + 1e-8);
        weight += energy;
        for (std::size_t i = 0; i < surroundings.size(); ++i)
            sums[i] += energy * m_cues.of(surroundings[i].first)[bin];
    };
    double weight = 0;
    std::array<double, 4> sums{};
    for (int bin = -aroundReach; bin < count; ++bin) {
        addAt(bin + aroundReach, 1, weight, sums);
        addAt(bin - aroundReach - 1, -1, weight, sums);
        if (bin < 0)
            continue;
        for (std::size_t i = 0; i < surroundings.size(); ++i)
            m_cues.of(surroundings[i].second)[bin] =
                static_cast<float>(sums[i] / std::max(weight, 1e-12));
    }
}

void CueMeter::measureLoudness(const Frame &frame)
{
    const bool isSilent = *std::max_element(frame.magnitudes.begin(), frame.magnitudes.end()) <= 0;
    if (!isSilent)
        m_soundingFrames = std::min(m_soundingFrames + 1, usualFrames);
    const float rate = isSilent ? 0 : 1 / static_cast<float>(m_soundingFrames);
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        m_usualLevels[bin] += rate * (frame.levels[bin] - m_usualLevels[bin]);
        m_cues.of(Cue::Loudness)[bin] =
            std::clamp(frame.levels[bin] - m_usualLevels[bin], leastRatio, greatestRatio);
    }
}

void CueMeter::measureTones(const FrameHistory &history)
{
    const Frame &frame = history.frame(0);
    const Frame &future = history.frame(slopeReach);
    constexpr std::size_t last = Stft::binCount - 1;
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        float soon = 0;
        for (int distance = 1; distance <= settlingFrames; ++distance)
            soon += history.frame(distance).steadiness[bin];
        m_cues.of(Cue::Steady)[bin] = frame.steadiness[bin];
        m_cues.of(Cue::Settling)[bin] = soon / settlingFrames;
        const float above =
            frame.peaks[std::min(2 * bin, last)] + frame.peaks[std::min(3 * bin, last)];
        m_cues.of(Cue::Overtones)[bin] = ratioOf(above / 2, frame.levels[bin]);
        m_cues.of(Cue::Lasting)[bin] = riseTo(future.peaks[bin], frame.peaks[bin]);
    }
}

void CueMeter::measureHabits()
{
    const float wide = m_cues.of(Cue::WideOnset).front();
    m_wideRinging = std::max(wide, wideRingingDecay * m_wideRinging);
    std::vector<float> &ringing = m_cues.of(Cue::WideRinging);
    std::fill(ringing.begin(), ringing.end(), m_wideRinging);
    m_struckWeight = std::min(m_struckWeight + wide, habitWeight);
    const float rate = wide / std::max(m_struckWeight, 1.0F);
    for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
        m_struckHabits[bin] += rate * (m_cues.of(Cue::Loudness)[bin] - m_struckHabits[bin]);
        m_cues.of(Cue::StruckHabit)[bin] = m_struckHabits[bin];
    }
}

} // namespace localservice
