// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/stft.h"

#include <cmath>
#include <new>
#include <numbers>

namespace localservice {

namespace {

// The overlapped squares of the window add up to overlap / 2, the inverse transform to frameSize.
constexpr float inverseScale = 2.0F / (Stft::overlap * static_cast<float>(Stft::frameSize));

std::vector<float> squareRootHann()
{
    std::vector<float> window(Stft::frameSize);
    for (int i = 0; i < Stft::frameSize; ++i)
        window[i] = static_cast<float>(std::sin(std::numbers::pi * i / Stft::frameSize));
    return window;
}

} // namespace

Stft::Stft()
    : m_forward(kiss_fftr_alloc(frameSize, 0, nullptr, nullptr))
    , m_inverse(kiss_fftr_alloc(frameSize, 1, nullptr, nullptr))
    , m_window(squareRootHann())
    , m_scratch(frameSize)
{
    if (!m_forward || !m_inverse)
        throw std::bad_alloc();
}

void Stft::forward(std::span<const float> samples, Spectrum &spectrum)
{
    for (int i = 0; i < frameSize; ++i)
        m_scratch[i] = samples[i] * m_window[i];
    spectrum.resize(binCount);
    // std::complex<float> is laid out as an array of two floats, as kiss_fft_cpx is.
    kiss_fftr(m_forward.get(), m_scratch.data(), reinterpret_cast<kiss_fft_cpx *>(spectrum.data()));
}

void Stft::addInverse(const Spectrum &spectrum, std::span<float> sum)
{
    kiss_fftri(m_inverse.get(), reinterpret_cast<const kiss_fft_cpx *>(spectrum.data()),
               m_scratch.data());
    for (int i = 0; i < frameSize; ++i)
        sum[i] += m_scratch[i] * m_window[i] * inverseScale;
}

} // namespace localservice
