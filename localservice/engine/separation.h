// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/part.h"
#include "localservice/engine/survey.h"
#include "localservice/engine/wavfile.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace localservice {

/// One song to separate, and where the two results go.
struct SeparationTask
{
    std::filesystem::path input;
    Part instrument = Part::Vocals;
    std::filesystem::path main; ///< the instrument alone
    std::filesystem::path mix; ///< the input without it
    std::string name = "Separation"; ///< in the log
};

/// Shared by a running separation and its owner. Thread-safe.
struct JobControl
{
    std::atomic<double> progress = 0; ///< 0 to 1
    std::atomic<bool> cancelled = false;
};

/// Separates a song with the built-in separator. The two results add up to the input exactly.
/// Returns nothing when it was cancelled; throws Refusal when it fails. Partly written results
/// stay: the caller passes temporary names.
[[nodiscard]] std::optional<Confidence> separate(const SeparationTask &task, JobControl &control);

/// Splits whole-number samples of `bits` depth: `part` (samples scaled to [-1, 1]) becomes `main`,
/// what is left of `input` becomes `mix`. Where the remainder would not fit into the depth, the
/// part is reduced.
void splitSamples(std::span<const std::int32_t> input, std::span<const float> part, int bits,
                  std::span<std::int32_t> main, std::span<std::int32_t> mix);

} // namespace localservice
