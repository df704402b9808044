// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

#include <atomic>

/// Worker that finds out whether a file has a picture: a recording with a video suffix may contain
/// only sound.
class PictureProbe final : public QObject
{
    Q_OBJECT

public:
    /// `cancelFlag` belongs to the owner and outlives the worker: 1 stops the probe.
    PictureProbe(const std::atomic<int> *cancelFlag, const QString &file);

signals:
    void done(bool hasPicture);

public slots:
    /// Blocks the thread it runs in until ffmpeg has looked at the file, then emits done(), with
    /// false for a file that cannot be read and after a cancel.
    void probe();

private:
    const std::atomic<int> *const m_cancelFlag;
    const QString m_file;
};
