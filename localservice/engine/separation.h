// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/part.h"
#include "localservice/engine/wavfile.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace localservice {

/// One song to take apart, and where the two results go.
struct SeparationTask
{
    std::filesystem::path input;
    Part instrument = Part::Vocals;
    std::optional<double> secondsAtMost; ///< only the beginning, when given
    std::filesystem::path main; ///< gets the instrument alone
    std::filesystem::path mix; ///< gets the input without it
};

/// How much of its input a task covers.
[[nodiscard]] std::int64_t framesToTake(const SeparationTask &task, const WavShape &shape);

/// The strings between a running separation and the rest of the service; any thread may pull them.
struct JobControl
{
    std::atomic<double> share = 0; ///< how much is done, 0 to 1
    std::atomic<bool> cancelled = false;
};

/// Takes a song apart with the built-in separator. The two results add up to the input exactly.
/// Gives false when it was cancelled; throws Refusal when it cannot be done. Whatever it has
/// written by then stays: the caller gives it files of no name yet.
[[nodiscard]] bool separate(const SeparationTask &task, JobControl &control);

/// Splits whole-number samples of `bits` depth: `part` (samples scaled to [-1, 1]) becomes `main`,
/// what is left of `input` becomes `mix`. Where the remainder would not fit into the depth, the
/// part gives way.
void splitSamples(std::span<const std::int32_t> input, std::span<const float> part, int bits,
                  std::span<std::int32_t> main, std::span<std::int32_t> mix);

} // namespace localservice
