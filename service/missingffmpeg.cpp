// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/missingffmpeg.h"

#include "base/messageboxcustom.h"
#include "results/resultopener.h"
#include "service/ffmpegrun.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct MissingFfmpeg
{
    Q_DECLARE_TR_FUNCTIONS(MissingFfmpeg)
};

} // namespace

bool isFfmpegMissing()
{
    return !QFileInfo::exists(ffmpegProgram());
}

void showMissingFfmpeg()
{
    const auto answer = MessageBoxCustom::critical(
        MissingFfmpeg::tr("Converting Error"),
        MissingFfmpeg::tr("TEKO needs the program ffmpeg.exe in its own folder: put it there, and "
                          "try again."),
        MessageBoxCustom::Open | MessageBoxCustom::Cancel);
    if (answer == MessageBoxCustom::Open)
        openFolderInBrowser(QFileInfo(ffmpegProgram()).absolutePath());
}
