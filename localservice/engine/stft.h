// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kiss_fftr.h>

#include <complex>
#include <memory>
#include <span>
#include <vector>

namespace localservice {

using Spectrum = std::vector<std::complex<float>>;

/// The short-time Fourier transform of the separator: frames of 4096 samples every 1024, under a
/// square-root Hann window on both sides, so that overlapped frames add up to the signal again.
class Stft final
{
public:
    static constexpr int frameSize = 4096;
    static constexpr int hopSize = 1024;
    static constexpr int binCount = frameSize / 2 + 1;
    static constexpr int overlap = frameSize / hopSize;

    Stft();

    /// The spectrum of frameSize samples.
    void forward(std::span<const float> samples, Spectrum &spectrum);
    /// Adds the windowed signal of `spectrum` to frameSize samples of `sum`.
    void addInverse(const Spectrum &spectrum, std::span<float> sum);

private:
    struct Free
    {
        void operator()(kiss_fftr_cfg plan) const { kiss_fftr_free(plan); }
    };
    using Plan = std::unique_ptr<kiss_fftr_state, Free>;

    Plan m_forward;
    Plan m_inverse;
    std::vector<float> m_window;
    std::vector<float> m_scratch;
};

} // namespace localservice
