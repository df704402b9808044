// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/cues.h"
#include "localservice/engine/maskmodel.h"

namespace localservice {

/// Listens to a song, or to pieces of it, to find out whether an instrument plays in it at all.
class SongSurvey final
{
public:
    SongSurvey(std::size_t channels, int sampleRate, Part wanted);

    /// Takes one hop, in order. Between two pieces of a song, call beginPiece().
    void push(const Planes &in);
    void beginPiece() { m_heard = 0; }

    /// How sure it is that the instrument plays and can be told from the others: 0 to 1.
    [[nodiscard]] float confidence() const;

private:
    // What of a song's energy a part gets.
    struct Sums
    {
        double share = 0;
        double sure = 0; // weighted by its masks once more
    };

    void add(const std::vector<float> &magnitudes, const std::vector<float> &mask);

    Part m_wanted;
    FrameHistory m_history;
    CueMeter m_meter;
    MaskModel m_model;
    FrameMasks m_masks;
    int m_heard = 0; // hops of this piece
    std::size_t m_firstHighBin;
    double m_energy = 0; // of the song
    Sums m_low; // below m_firstHighBin
    Sums m_high; // from there on
};

} // namespace localservice
