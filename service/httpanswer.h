// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

/// Takes the answer to one HTTP/1.1 request apart while it arrives, in pieces of any size.
class HttpAnswer
{
public:
    /// Takes what has arrived and gives the part of the answer's body in it. Bytes after a whole
    /// or a broken answer are thrown away.
    [[nodiscard]] QByteArray take(const QByteArray &bytes);
    /// The connection has ended. A body without an announced length is whole by that.
    void end();

    /// Everything has arrived.
    [[nodiscard]] bool isWhole() const { return m_part == Part::Whole; }
    /// It is no HTTP, or does not keep to it.
    [[nodiscard]] bool isBroken() const { return m_part == Part::Broken; }
    /// Status and headers are complete; the interim ones of 1xx never are.
    [[nodiscard]] bool hasHead() const { return m_hasHead; }
    [[nodiscard]] int status() const { return m_status; }
    /// What stands behind the status, for people.
    [[nodiscard]] const QByteArray &reason() const { return m_reason; }
    [[nodiscard]] const QList<std::pair<QByteArray, QByteArray>> &headers() const
    {
        return m_headers;
    }

private:
    enum class Part {
        StatusLine,
        Headers,
        CountedBody,
        BodyToTheEnd,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailer,
        Whole,
        Broken
    };

    [[nodiscard]] bool takeLine();
    void readLine(const QByteArray &line);
    void readStatus(const QByteArray &line);
    void readHeader(const QByteArray &line);
    void readChunkSize(const QByteArray &line);
    void endHead();
    [[nodiscard]] Part bodyFraming();
    [[nodiscard]] bool takeBody(QByteArray &body);

    Part m_part = Part::StatusLine;
    QByteArray m_pending; ///< arrived, but not yet taken apart
    qint64 m_lineBytes = 0; ///< of head, chunk sizes and trailer since the last body byte
    qint64 m_left = 0; ///< of the counted body or the chunk
    int m_status = 0;
    QByteArray m_reason;
    bool m_hasHead = false;
    QList<std::pair<QByteArray, QByteArray>> m_headers;
};
