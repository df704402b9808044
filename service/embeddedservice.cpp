// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/embeddedservice.h"

#include "service/serviceaddress.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>

namespace {

constexpr qsizetype maxLineLength = 1 << 16;
constexpr int graceMs = 2000;
constexpr qint64 maxLogBytes = 1 << 20;
constexpr std::chrono::seconds startTimeout(20);

bool isThisMachine(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") && QHostAddress(url.host()).isLoopback();
}

} // namespace

std::optional<ServiceAnnouncement> parseAnnouncement(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    const QUrl url = baseUrl(object.value(QLatin1String("url")).toString());
    if (!isThisMachine(url))
        return {};
    return ServiceAnnouncement{url, object.value(QLatin1String("email")).toString(),
                               object.value(QLatin1String("hash")).toString(),
                               object.value(QLatin1String("log")).toString()};
}

EmbeddedService::EmbeddedService(const QString &program, const QString &dataFolder, QObject *parent)
    : QObject(parent)
    , m_dataFolder(dataFolder)
    , m_log(dataFolder + QLatin1String("/service.log"))
{
    m_process.setProgram(program);
    m_process.setArguments({QStringLiteral("--embedded"), QStringLiteral("--data"), dataFolder});
    m_process.setStandardErrorFile(m_log, QIODevice::Append);
    m_startTimer.setSingleShot(true);
    m_startTimer.setInterval(startTimeout);
    connect(&m_startTimer, &QTimer::timeout, this, &EmbeddedService::abortStart);
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &EmbeddedService::readOutput);
    connect(&m_process, &QProcess::errorOccurred, this, &EmbeddedService::processFailed);
    connect(&m_process, &QProcess::finished, this, &EmbeddedService::processEnded);
}

EmbeddedService::~EmbeddedService()
{
    m_process.disconnect(this);
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.closeWriteChannel();
    if (m_process.waitForFinished(graceMs))
        return;
    m_process.kill();
    m_process.waitForFinished(graceMs);
}

void EmbeddedService::start()
{
    qInfo() << "EmbeddedService::start";
    QDir().mkpath(m_dataFolder);
    // The service's log holds recovery codes, its database the session of this computer's account.
    QFile::setPermissions(m_dataFolder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // Appended to, since another instance of the program may be writing there.
    QFile log(logFile());
    if (log.size() > maxLogBytes)
        log.remove();
    launch();
}

void EmbeddedService::launch()
{
    m_state = State::Starting;
    m_firstLine.clear();
    m_startTimer.start();
    m_process.start();
}

void EmbeddedService::abortStart()
{
    if (!isStarting())
        return;
    fail(tr("The processing service of this computer does not answer."));
    m_process.kill();
}

void EmbeddedService::readOutput()
{
    const QByteArray output = m_process.readAllStandardOutput();
    // Output after the first line is read and discarded, so that it does not pile up in memory.
    if (m_state != State::Starting)
        return;
    m_firstLine += output;
    const qsizetype end = m_firstLine.indexOf('\n');
    if (end < 0 && m_firstLine.size() < maxLineLength)
        return;
    m_announcement = parseAnnouncement(m_firstLine.left(end));
    m_firstLine.clear();
    if (!m_announcement) {
        m_process.closeWriteChannel();
        return fail(tr("The processing service of this computer did not report its address."));
    }
    if (!m_announcement->log.isEmpty())
        m_log = m_announcement->log;
    settle(State::Ready);
}

void EmbeddedService::processFailed(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        fail(tr("The processing service of this computer cannot be started:\n\n%1")
                 .arg(m_process.errorString()));
}

void EmbeddedService::processEnded()
{
    if (m_state == State::Failed)
        return;
    m_announcement.reset();
    if (m_restartsLeft > 0) {
        --m_restartsLeft;
        qInfo() << "EmbeddedService: the service has ended by itself and is started again";
        launch();
        return;
    }
    fail(tr("The processing service of this computer has ended unexpectedly.\nIts log may say "
            "why:\n\n%1")
             .arg(QDir::toNativeSeparators(logFile())));
}

void EmbeddedService::fail(const QString &message)
{
    if (m_state == State::Failed)
        return;
    m_announcement.reset();
    qInfo().noquote() << "EmbeddedService:" << message;
    QMetaObject::invokeMethod(
        this, [this, message] { emit failed(message); }, Qt::QueuedConnection);
    settle(State::Failed);
}

void EmbeddedService::settle(State state)
{
    const bool wasStarting = isStarting();
    m_startTimer.stop();
    m_state = state;
    if (state == State::Ready)
        emit ready();
    if (wasStarting)
        emit settled();
}
