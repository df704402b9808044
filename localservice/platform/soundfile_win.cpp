// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include <windows.h>
#define ENABLE_SNDFILE_WINDOWS_PROTOTYPES 1

#include "localservice/platform/soundfile.h"

namespace localservice {

SNDFILE *openSoundFile(const std::filesystem::path &path, int mode, SF_INFO *info)
{
    return sf_wchar_open(path.c_str(), mode, info);
}

} // namespace localservice
