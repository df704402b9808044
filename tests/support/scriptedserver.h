// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

/// One request as it came over the wire.
struct ScriptedRequest
{
    QByteArray head; ///< request line and headers, with the empty line that ends them
    QByteArray body;

    [[nodiscard]] QByteArray method() const;
    [[nodiscard]] QByteArray path() const; ///< with the query, if any
    /// The value of a header, its name in any case; empty when there is none.
    [[nodiscard]] QByteArray header(const QByteArray &name) const;
    /// The decoded value of a field of a form-encoded body.
    [[nodiscard]] QString field(const QString &name) const;
};

/// What the server does with a request. Made by the functions, then adorned by the members.
struct ScriptedAnswer
{
    enum class Ending { KeepAlive, Linger, Close }; ///< Linger: the client closes

    QByteArray bytes; ///< head and body as they are sent
    Ending ending = Ending::KeepAlive;
    bool isHeld = false; ///< sent only by ScriptedServer::release()
    qsizetype pieceSize = 0; ///< sent in pieces of this size, one a millisecond; 0: at once
    qint64 bodyLimit = -1; ///< act once so many bytes of the request's body have come; -1: all

    /// A whole answer.
    static ScriptedAnswer text(const QByteArray &body, int status = 200,
                               const QList<QByteArray> &headers = {});
    static ScriptedAnswer redirect(const QUrl &target, int status = 302);
    /// Announces the length but sends only the body that is given, then closes.
    static ScriptedAnswer wrongLength(const QByteArray &body, const QByteArray &announced);
    /// Bytes that need not be HTTP at all, then closes.
    static ScriptedAnswer raw(const QByteArray &bytes);
    /// No answer: closes the connection.
    static ScriptedAnswer cut() { return raw({}); }
    /// Takes the request and keeps silent.
    static ScriptedAnswer never();

    [[nodiscard]] ScriptedAnswer held() const;
    [[nodiscard]] ScriptedAnswer inPieces(qsizetype size) const;
};

/// An HTTP server on a loopback port that records every request and answers by a script. It lives
/// in the thread of the test, which must run an event loop (QTRY_… or QSignalSpy::wait()).
///
///     ScriptedServer server;
///     server.on("/teko-server/proceed.php", {ScriptedAnswer::text("17")});
///     server.on("/teko-server/remains.php", {ScriptedAnswer::text("8"),
///     ScriptedAnswer::text("-1")}); ProgramData store(…); store.setEndpointSource([&] { return
///     ServiceEndpoints {server.url(), server.url("/generate_204"), {}}; });
class ScriptedServer final : public QObject
{
    Q_OBJECT

public:
    explicit ScriptedServer(QObject *parent = nullptr);
    ~ScriptedServer() override;

    /// "http://127.0.0.1:PORT", without a trailing slash.
    [[nodiscard]] QUrl url(const QByteArray &path = {}) const;

    /// Each request for the path takes the next answer; the last one stays. A path without a
    /// script is answered with 404.
    void on(const QByteArray &path, const QList<ScriptedAnswer> &answers);
    /// Sends the held answers whose requests have come, in the order of the requests.
    void release();

    /// Whole requests in the order in which they were completed, those that were cut on purpose
    /// included with what had come of them.
    [[nodiscard]] const QList<ScriptedRequest> &requests() const { return m_requests; }
    [[nodiscard]] QList<ScriptedRequest> requests(const QByteArray &path) const;
    void clearRequests() { m_requests.clear(); }

    /// Bytes of answers that could be given to the system so far.
    [[nodiscard]] qint64 bytesSent() const { return m_bytesSent; }

signals:
    void requestReceived();

private:
    struct Connection
    {
        QByteArray input;
        QByteArray output; ///< the rest of an answer that goes in pieces
        ScriptedAnswer held;
        bool isHeld = false;
        bool isOver = false;
    };

    void accept();
    void read(QTcpSocket *socket);
    [[nodiscard]] bool takeRequest(QTcpSocket *socket, Connection &connection);
    [[nodiscard]] ScriptedAnswer nextAnswer(const QByteArray &path, bool take);
    void send(QTcpSocket *socket, const ScriptedAnswer &answer);
    void sendPiece(QTcpSocket *socket, const ScriptedAnswer &answer);
    void end(QTcpSocket *socket, ScriptedAnswer::Ending ending);

    QTcpServer m_server;
    QHash<QTcpSocket *, Connection> m_connections;
    QList<QTcpSocket *> m_holding; ///< in the order of the requests; may name ended connections
    QHash<QByteArray, QList<ScriptedAnswer>> m_script;
    QList<ScriptedRequest> m_requests;
    qint64 m_bytesSent = 0;
};
