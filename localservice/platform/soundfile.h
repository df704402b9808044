// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sndfile.h>

#include <filesystem>

namespace localservice {

/// sf_open() for any path of this system; null when it fails, sf_strerror(nullptr) then says why.
[[nodiscard]] SNDFILE *openSoundFile(const std::filesystem::path &path, int mode, SF_INFO *info);

} // namespace localservice
