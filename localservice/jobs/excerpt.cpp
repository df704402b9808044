// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/excerpt.h"

#include "localservice/base/refusal.h"
#include "localservice/engine/wavfile.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

constexpr std::int64_t blockFrames = 4096;

} // namespace

void copyBeginning(const std::filesystem::path &source, double seconds,
                   const std::filesystem::path &target)
{
    WavReader reader(source);
    WavShape shape = reader.shape();
    shape.frames = std::min<std::int64_t>(shape.frames, std::llround(seconds * shape.sampleRate));
    WavWriter writer(target, shape);
    std::vector<std::int32_t> block(static_cast<std::size_t>(shape.channels * blockFrames));
    for (std::int64_t left = shape.frames; left > 0;) {
        const auto frames = std::min(left, blockFrames);
        const std::span<std::int32_t> part =
            std::span(block).first(static_cast<std::size_t>(frames * shape.channels));
        if (reader.read(part) != frames)
            throw Refusal("The file can no longer be read.");
        writer.write(part);
        left -= frames;
    }
    writer.finish();
}

} // namespace localservice
