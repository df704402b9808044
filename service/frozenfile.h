// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFile>
#include <QIODevice>

/// A file to upload, with the size that it had when it was opened. When the file becomes shorter,
/// reading fails and errorString() says why; bytes added later are not read.
/// It can be read only once: a request body that cannot be rewound is never silently sent twice.
/// The file is closed as soon as it was read to its end.
class FrozenFile final : public QIODevice
{
    Q_OBJECT

public:
    explicit FrozenFile(const QString &path, QObject *parent = nullptr);

    /// Opens the file read-only; the mode must be ReadOnly.
    bool open(OpenMode mode) override;
    [[nodiscard]] qint64 size() const override { return m_size; }
    bool seek(qint64 position) override;
    bool reset() override;

    /// Closes the file, so that it can be removed while this object still lives.
    void release();

    [[nodiscard]] QString fileName() const { return m_file.fileName(); }
    /// The file turned out shorter than announced, or could not be read.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    qint64 fail(const QString &reason);

    QFile m_file;
    qint64 m_size = 0;
    bool m_wasRead = false;
    bool m_hasFailed = false;
};
