// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace localservice {

/// The shape of a sound. `bits` is the depth of the results: 16 or 24.
struct WavShape
{
    int channels = 0;
    int sampleRate = 0;
    int bits = 0;
    std::int64_t frames = 0;

    [[nodiscard]] double seconds() const { return static_cast<double>(frames) / sampleRate; }
    bool operator==(const WavShape &) const = default;
};

struct CloseSound
{
    void operator()(SNDFILE *file) const { sf_close(file); }
};
using SoundHandle = std::unique_ptr<SNDFILE, CloseSound>;

/// Reads a WAV file of 16 or 24 bit integers or 32 bit floats as whole numbers of the results'
/// depth.
class WavReader final
{
public:
    /// Throws Refusal when the file is no such WAV file or holds no sound.
    explicit WavReader(const std::filesystem::path &path);

    [[nodiscard]] const WavShape &shape() const { return m_shape; }
    /// Fills `samples` (interleaved) as far as the sound goes; returns the number of frames read.
    std::int64_t read(std::span<std::int32_t> samples);
    void rewind();

private:
    std::int64_t readFloats(std::span<std::int32_t> samples);

    SoundHandle m_file;
    WavShape m_shape;
    bool m_isFloat = false;
    std::vector<float> m_floats;
};

/// Writes a PCM WAV file of a shape's channels, rate and depth.
class WavWriter final
{
public:
    /// Throws Refusal when the file cannot be made.
    WavWriter(const std::filesystem::path &path, const WavShape &shape);

    /// Appends interleaved samples of the shape's depth; throws Refusal when the disk takes no
    /// more.
    void write(std::span<const std::int32_t> samples);
    /// Finishes the header and closes; throws Refusal when that does not succeed.
    void finish();

private:
    SoundHandle m_file;
    int m_channels;
    int m_shift;
    std::vector<std::int32_t> m_scaled;
};

} // namespace localservice
