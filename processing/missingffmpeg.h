// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Whether ffmpeg is not beside the program. Then it has been said so in a message box, which
/// offers to open the folder that it belongs into.
[[nodiscard]] bool showsMissingFfmpeg();
