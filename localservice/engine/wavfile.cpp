// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/wavfile.h"

#include "localservice/base/refusal.h"
#include "localservice/platform/soundfile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace localservice {

namespace {

constexpr int maxChannels = 32;
constexpr int minSampleRate = 1000;
constexpr int maxSampleRate = 768000;
// Sound files count in 32 bit numbers up to here; beyond, the header must be an RF64 one.
constexpr std::int64_t maxRiffBytes = std::int64_t{4000} * 1000 * 1000;

constexpr const char *notAWav = "The file is not a WAV file.";
constexpr const char *diskFull = "There is no room left for the results.";

bool isWav(int format)
{
    const int container = format & SF_FORMAT_TYPEMASK;
    return container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX
        || container == SF_FORMAT_RF64;
}

int bitsOf(int format)
{
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_16:
        return 16;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_FLOAT:
        return 24;
    default:
        throw Refusal("The WAV file must hold 16 or 24 bit samples, or 32 bit floats.");
    }
}

void checkShape(const WavShape &shape)
{
    if (shape.frames <= 0)
        throw Refusal("The file holds no sound.");
    if (shape.channels < 1 || shape.channels > maxChannels)
        throw Refusal("The file has more channels than can be processed.");
    if (shape.sampleRate < minSampleRate || shape.sampleRate > maxSampleRate)
        throw Refusal("The file has a sample rate that cannot be processed.");
}

} // namespace

WavReader::WavReader(const std::filesystem::path &path)
{
    SF_INFO info{};
    m_file.reset(openSoundFile(path, SFM_READ, &info));
    if (!m_file || !isWav(info.format))
        throw Refusal(notAWav);
    m_isFloat = (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT;
    m_shape = {info.channels, info.samplerate, bitsOf(info.format), info.frames};
    checkShape(m_shape);
}

std::int64_t WavReader::read(std::span<std::int32_t> samples)
{
    if (m_isFloat)
        return readFloats(samples);
    const auto frames = static_cast<sf_count_t>(samples.size()) / m_shape.channels;
    const sf_count_t got = sf_readf_int(m_file.get(), samples.data(), frames);
    // libsndfile returns integers scaled to 32 bits.
    for (std::int32_t &sample : samples.first(static_cast<std::size_t>(got * m_shape.channels)))
        sample >>= 32 - m_shape.bits;
    return got;
}

std::int64_t WavReader::readFloats(std::span<std::int32_t> samples)
{
    m_floats.resize(samples.size());
    const auto frames = static_cast<sf_count_t>(samples.size()) / m_shape.channels;
    const sf_count_t got = sf_readf_float(m_file.get(), m_floats.data(), frames);
    const float full = std::ldexp(1.0F, m_shape.bits - 1);
    for (std::size_t i = 0; i < static_cast<std::size_t>(got * m_shape.channels); ++i) {
        const float value = std::isnan(m_floats[i]) ? 0 : m_floats[i];
        samples[i] =
            static_cast<std::int32_t>(std::lrint(std::clamp(value * full, -full, full - 1)));
    }
    return got;
}

void WavReader::rewind()
{
    if (sf_seek(m_file.get(), 0, SEEK_SET) != 0)
        throw Refusal("The file can no longer be read.");
}

WavWriter::WavWriter(const std::filesystem::path &path, const WavShape &shape)
    : m_channels(shape.channels)
    , m_shift(32 - shape.bits)
{
    const std::int64_t bytes = shape.frames * shape.channels * (shape.bits / 8);
    SF_INFO info{};
    info.channels = shape.channels;
    info.samplerate = shape.sampleRate;
    info.format = (bytes < maxRiffBytes ? SF_FORMAT_WAV : SF_FORMAT_RF64)
        | (shape.bits == 16 ? SF_FORMAT_PCM_16 : SF_FORMAT_PCM_24);
    m_file.reset(openSoundFile(path, SFM_WRITE, &info));
    if (!m_file)
        throw Refusal(diskFull);
}

void WavWriter::write(std::span<const std::int32_t> samples)
{
    m_scaled.resize(samples.size());
    std::transform(samples.begin(), samples.end(), m_scaled.begin(), [this](std::int32_t sample) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(sample) << m_shift);
    });
    const auto frames = static_cast<sf_count_t>(samples.size()) / m_channels;
    if (sf_writef_int(m_file.get(), m_scaled.data(), frames) != frames)
        throw Refusal(diskFull);
}

void WavWriter::finish()
{
    sf_write_sync(m_file.get());
    const bool failed = sf_error(m_file.get()) != SF_ERR_NO_ERROR;
    if (sf_close(m_file.release()) != 0 || failed)
        throw Refusal(diskFull);
}

} // namespace localservice
