// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/scriptedserver.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>
#include <QUrlQuery>

#include <chrono>

using namespace std::chrono_literals;

namespace {

const QByteArray endOfHead = "\r\n\r\n";

QByteArray headOf(int status, const QList<QByteArray> &headers)
{
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(status) + (status < 300 ? " OK" : " Refused");
    for (const QByteArray &header : headers)
        head += "\r\n" + header;
    return head + endOfHead;
}

} // namespace

QByteArray ScriptedRequest::method() const
{
    return head.left(head.indexOf(' '));
}

QByteArray ScriptedRequest::path() const
{
    return head.left(head.indexOf('\r')).split(' ').value(1);
}

QByteArray ScriptedRequest::header(const QByteArray &name) const
{
    for (const QByteArray &line : head.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

QString ScriptedRequest::field(const QString &name) const
{
    QByteArray form = body;
    form.replace('+', "%20");
    return QUrlQuery(QString::fromUtf8(form)).queryItemValue(name, QUrl::FullyDecoded);
}

ScriptedAnswer ScriptedAnswer::text(const QByteArray &body, int status,
                                    const QList<QByteArray> &headers)
{
    ScriptedAnswer answer;
    answer.bytes =
        headOf(status,
               headers + QList<QByteArray>{"Content-Length: " + QByteArray::number(body.size())})
        + body;
    return answer;
}

ScriptedAnswer ScriptedAnswer::redirect(const QUrl &target, int status)
{
    return text("moved", status, {"Location: " + target.toEncoded()});
}

ScriptedAnswer ScriptedAnswer::wrongLength(const QByteArray &body, const QByteArray &announced)
{
    return raw(headOf(200, {"Content-Length: " + announced}) + body);
}

ScriptedAnswer ScriptedAnswer::raw(const QByteArray &bytes)
{
    ScriptedAnswer answer;
    answer.bytes = bytes;
    answer.ending = Ending::Close;
    return answer;
}

ScriptedAnswer ScriptedAnswer::never()
{
    return ScriptedAnswer().held();
}

ScriptedAnswer ScriptedAnswer::held() const
{
    ScriptedAnswer answer = *this;
    answer.isHeld = true;
    return answer;
}

ScriptedAnswer ScriptedAnswer::inPieces(qsizetype size) const
{
    ScriptedAnswer answer = *this;
    answer.pieceSize = size;
    return answer;
}

ScriptedServer::ScriptedServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &ScriptedServer::accept);
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("The scripted server cannot listen: %s", qPrintable(m_server.errorString()));
}

ScriptedServer::~ScriptedServer()
{
    for (QTcpSocket *socket : m_connections.keys())
        socket->disconnect(this);
}

QUrl ScriptedServer::url(const QByteArray &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort())
                + QString::fromUtf8(path));
}

void ScriptedServer::on(const QByteArray &path, const QList<ScriptedAnswer> &answers)
{
    m_script.insert(path, answers);
}

QList<ScriptedRequest> ScriptedServer::requests(const QByteArray &path) const
{
    QList<ScriptedRequest> matching;
    std::copy_if(m_requests.begin(), m_requests.end(), std::back_inserter(matching),
                 [&path](const ScriptedRequest &request) { return request.path() == path; });
    return matching;
}

void ScriptedServer::release()
{
    while (!m_holding.isEmpty()) {
        QTcpSocket *socket = m_holding.takeFirst();
        const auto connection = m_connections.find(socket);
        if (connection != m_connections.end() && std::exchange(connection->isHeld, false))
            send(socket, connection->held);
    }
}

void ScriptedServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        m_connections.insert(socket, {});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::bytesWritten, this,
                [this](qint64 size) { m_bytesSent += size; });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_connections.remove(socket);
            socket->deleteLater();
        });
    }
}

void ScriptedServer::read(QTcpSocket *socket)
{
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end() || connection->isOver)
        return;
    connection->input += socket->readAll();
    while (m_connections.contains(socket) && takeRequest(socket, m_connections[socket]))
        continue;
}

bool ScriptedServer::takeRequest(QTcpSocket *socket, Connection &connection)
{
    const qsizetype headEnd = connection.input.indexOf(endOfHead);
    if (headEnd < 0)
        return false;
    ScriptedRequest request;
    request.head = connection.input.left(headEnd + endOfHead.size());
    const qsizetype length = request.header("Content-Length").toLongLong();
    const qsizetype arrived = connection.input.size() - request.head.size();
    const qint64 limit = nextAnswer(request.path(), false).bodyLimit;
    const qsizetype needed = limit < 0 ? length : qMin<qsizetype>(length, limit);
    if (arrived < needed)
        return false;
    request.body = connection.input.mid(request.head.size(), length);
    connection.input.remove(0, request.head.size() + request.body.size());
    m_requests.append(request);
    const ScriptedAnswer answer = nextAnswer(request.path(), true);
    connection.isHeld = answer.isHeld;
    connection.held = answer;
    if (answer.isHeld)
        m_holding << socket;
    else
        send(socket, answer);
    emit requestReceived();
    return true;
}

ScriptedAnswer ScriptedServer::nextAnswer(const QByteArray &path, bool take)
{
    const auto script = m_script.find(path);
    if (script == m_script.end() || script->isEmpty())
        return ScriptedAnswer::text("nothing here", 404);
    return take && script->size() > 1 ? script->takeFirst() : script->first();
}

void ScriptedServer::send(QTcpSocket *socket, const ScriptedAnswer &answer)
{
    if (answer.pieceSize > 0) {
        m_connections[socket].output = answer.bytes;
        sendPiece(socket, answer);
        return;
    }
    socket->write(answer.bytes);
    end(socket, answer.ending);
}

void ScriptedServer::sendPiece(QTcpSocket *socket, const ScriptedAnswer &answer)
{
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end())
        return;
    QByteArray &output = connection->output;
    socket->write(output.left(answer.pieceSize));
    output.remove(0, answer.pieceSize);
    if (output.isEmpty())
        end(socket, answer.ending);
    else
        QTimer::singleShot(1ms, socket, [this, socket, answer] { sendPiece(socket, answer); });
}

void ScriptedServer::end(QTcpSocket *socket, ScriptedAnswer::Ending ending)
{
    if (ending == ScriptedAnswer::Ending::KeepAlive)
        return;
    m_connections[socket].isOver = true;
    if (ending == ScriptedAnswer::Ending::Close)
        socket->disconnectFromHost();
}
