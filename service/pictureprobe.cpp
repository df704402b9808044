// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/pictureprobe.h"

#include "service/ffmpegarguments.h"
#include "service/ffmpegrun.h"

PictureProbe::PictureProbe(const std::atomic<int> *cancelFlag, const QString &file)
    : m_cancelFlag(cancelFlag)
    , m_file(file)
{ }

void PictureProbe::probe()
{
    emit done(runFfmpeg(this, ffmpegProgram(), pictureArguments(m_file), *m_cancelFlag));
}
