// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/ffmpegarguments.h"

#include <QObject>

#include <atomic>

/// Worker for one conversion. Each slot blocks the thread it runs in until ffmpeg has ended. A
/// failure is not signalled: the receiver of the signal checks whether the output exists. Partial
/// output of a conversion that failed, was cancelled or filled the disk is removed; an earlier file
/// of that name which ffmpeg did not touch stays.
class ConvertingFile final : public QObject
{
    Q_OBJECT

public:
    /// `cancelFlag` belongs to the owner and outlives the worker: 1 stops the conversion, 0 lets it
    /// run. `original` is needed for outputs with a picture. `main` is true for the isolated
    /// instrument, false for the mix, and selects the signal of prepareFinal().
    ConvertingFile(const std::atomic<int> *cancelFlag, const QString &input, const QString &output,
                   const QString &original, bool main);

signals:
    /// prepareToUpload() has finished, successfully or not.
    void doneUploadConverting();
    /// convertFile(), or prepareFinal() for the instrument, has finished, successfully or not.
    void doneMain();
    /// prepareFinal() for the mix has finished, successfully or not.
    void doneMix();

public slots:
    /// Converts the user's file to the WAV that is uploaded. Always emits doneUploadConverting().
    void prepareToUpload();
    /// Converts a downloaded result to the chosen format. The input is removed, unless the
    /// conversion failed. Emits doneMain() or doneMix(), or nothing when cancelled before the last
    /// run of ffmpeg.
    void prepareFinal();
    /// Converts a stored result to another format; the input stays. Emits doneMain(), or nothing
    /// when cancelled before the last run of ffmpeg.
    void convertFile();

private:
    [[nodiscard]] bool isCancelled() const;
    void run(const QStringList &arguments, const QString &target);
    [[nodiscard]] bool runPlan(const ConversionPlan &plan);

    const std::atomic<int> *const m_cancelFlag;
    const ConversionFiles m_files;
    const bool m_main;
};
