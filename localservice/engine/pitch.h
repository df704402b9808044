// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <vector>

namespace localservice {

/// Finds the fundamental of the strongest harmonic sound of a spectrum and shows where its
/// harmonics lie.
class PitchComb final
{
public:
    /// Looks for fundamentals between two frequencies, with so many harmonics.
    PitchComb(float hertzPerBin, float lowest, float highest, int harmonics);

    /// Writes to `comb`, for each bin, how near it is to a harmonic of the strongest fundamental of
    /// `magnitudes`, times how much that one stands out: 0 to 1.
    void trace(std::span<const float> magnitudes, std::span<float> comb);
    /// How much the latest fundamental stood out: 0 to 1.
    [[nodiscard]] float salience() const { return m_salience; }
    /// How far it moved lately, in semitones: 0 to 1.5; a leap to another tone does not count.
    [[nodiscard]] float motion() const { return m_motion; }

private:
    [[nodiscard]] float score(float bins) const;
    [[nodiscard]] float refined(float bins) const;
    float strongestFundamental();

    int m_harmonics;
    float m_salience = 0;
    float m_motion = 0;
    float m_latest = 0; // the latest fundamental, in bins
    std::vector<float> m_candidates; // fundamentals, in bins
    std::vector<float> m_compressed;
};

} // namespace localservice
