// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/cues.h"
#include "localservice/engine/maskmodel.h"

namespace localservice {

/// How sure a separator is that a song's instrument plays in it and can be told from the others.
struct Confidence
{
    float value = 0; ///< 0 to 1; the instrument is made as much softer
    float low = 0; ///< below this the instrument seldom plays; it depends on the instrument

    /// Whether little is to be expected of the result.
    [[nodiscard]] bool isLow() const { return value < low; }
};

/// Listens to a song, or to pieces of it, to find out whether an instrument plays in it at all.
class SongSurvey final
{
public:
    SongSurvey(std::size_t channels, int sampleRate, Part wanted);

    /// Takes one hop, in order. Between two pieces of a song, call beginPiece().
    void push(const Planes &in);
    void beginPiece() { m_heard = 0; }

    /// How sure it is by what it has heard: 0 if that was nothing, 1 if it was too short.
    [[nodiscard]] Confidence confidence() const;

private:
    void add(const std::vector<float> &magnitudes);

    std::size_t m_wanted;
    FrameHistory m_history;
    CueMeter m_meter;
    MaskModel m_model;
    FrameMasks m_masks;
    int m_heard = 0; // hops of this piece
    std::size_t m_firstHighBin;
    // The song's energy; what of it each part gets; what the wanted one gets when its masks are
    // applied once more. High: what the wanted one gets from m_firstHighBin on.
    double m_energy = 0;
    std::array<double, partCount> m_shares{};
    double m_sure = 0;
    double m_highShare = 0;
    double m_highSure = 0;
};

} // namespace localservice
