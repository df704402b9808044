// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Whether there is no ffmpeg beside the program.
[[nodiscard]] bool isFfmpegMissing();

/// Says so in a message box, which offers to open the folder that ffmpeg belongs into.
void showMissingFfmpeg();
