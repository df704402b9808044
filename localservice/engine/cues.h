// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/framehistory.h"
#include "localservice/engine/pitch.h"

#include <array>

namespace localservice {

/// What is measured at each bin of a frame, to tell which instrument sounds there. Ratios are in
/// octaves of magnitude.
enum class Cue {
    Sustained, ///< how much of it lasts
    Wandering, ///< how much of it lasts while its pitch moves
    Transient, ///< how much of it is struck: alike at all frequencies
    Middle, ///< 1 in the middle of the stereo field and alike on both sides
    Similarity, ///< 0 the channels differ wholly, 1 they are alike
    Agreement, ///< -1 the channels cancel each other, 1 they agree
    Side, ///< 0 middle, 1 one channel only
    Onset, ///< the rise since the latest frame, around its frequency
    Ringing, ///< how high it rose lately, around its frequency
    WideOnset, ///< the rise at all frequencies
    Peak, ///< how far it stands out among its neighbours
    Slope, ///< the rise from the past to the future
    BassComb, ///< how near to a harmonic of a bass tone
    VoiceComb, ///< how near to a harmonic of the strongest tone in the middle
    BassSalience, ///< how much that bass tone stands out
    VoiceSalience, ///< how much that tone in the middle stands out
    SustainedAround, ///< Sustained, Transient, Middle and Side, of all that sounds around
    TransientAround,
    MiddleAround,
    SideAround,
    Loudness, ///< against the latest seconds, at its frequency
    VoiceMotion, ///< how far that tone in the middle moves
    Steady, ///< how much of a steady tone it is: its phase runs on
    Settling, ///< how much of a steady tone it is about to be
    Overtones, ///< how much sounds an octave and a twelfth above
    Lasting, ///< the rise from now to the future
    StruckHabit, ///< how far it rises, as a rule, when all frequencies do
    WideRinging, ///< how high all frequencies rose lately
    Always ///< 1
};
inline constexpr std::size_t cueCount = 29;

/// The cues of one frame.
struct FrameCues
{
    std::array<std::vector<float>, cueCount> values; ///< for each cue, its value at all bins

    [[nodiscard]] std::vector<float> &of(Cue cue) { return values[static_cast<std::size_t>(cue)]; }
};

/// Measures the cues of one frame after the other, in order.
class CueMeter final
{
public:
    explicit CueMeter(int sampleRate);

    /// The cues of the frame in the middle; they stay until the next call.
    const FrameCues &measure(const FrameHistory &history);

private:
    static constexpr int bandCount = 6;

    void measureRatios(const FrameHistory &history);
    void measurePositions(const Frame &frame);
    void measureOnsets(const FrameHistory &history);
    void measureShape(const FrameHistory &history);
    void measurePitches(const FrameHistory &history);
    void measureSurroundings(const Frame &frame);
    void measureLoudness(const Frame &frame);
    void measureTones(const FrameHistory &history);
    void measureHabits();

    FrameCues m_cues;
    PitchComb m_bass;
    PitchComb m_voice;
    std::array<std::size_t, bandCount + 1> m_bandEdges{};
    std::vector<float> m_bandPositions; // of all bins, between the centres of the bands
    std::array<float, bandCount> m_ringing{};
    std::vector<float> m_usualLevels;
    std::vector<float> m_struckHabits;
    float m_struckWeight = 0; // of the onsets that m_struckHabits is a mean of
    float m_wideRinging = 0;
    int m_soundingFrames = 0; // that m_usualLevels is a mean of
    std::vector<float> m_scratch;
};

} // namespace localservice
