// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QProcess>
#include <QTimer>
#include <QUrl>

#include <optional>

/// What the embedded service reports when it is ready.
struct ServiceAnnouncement
{
    QUrl url; ///< where it listens, without a trailing slash
    QString email; ///< the local account that it keeps
    QString hash;
    QString log; ///< the file with its messages; empty when it does not say

    bool operator==(const ServiceAnnouncement &) const = default;
};

/// Reads the one JSON line; nothing when it is anything else or names no address on this machine.
[[nodiscard]] std::optional<ServiceAnnouncement> parseAnnouncement(const QByteArray &line);

/// The processing service as a child process. It is stopped with this object; it also exits when
/// its standard input closes because this process crashed. When it exits unexpectedly it is
/// restarted, twice at most.
class EmbeddedService final : public QObject
{
    Q_OBJECT

public:
    /// The data folder is made when it is missing.
    EmbeddedService(const QString &program, const QString &dataFolder, QObject *parent = nullptr);
    ~EmbeddedService() override;

    /// Starts the service and returns at once. Call once. Times out if the service prints no line;
    /// it is then killed, and failed() is emitted.
    void start();

    /// Whether it was started but has neither announced itself nor failed yet.
    [[nodiscard]] bool isStarting() const { return m_state == State::Starting; }

    /// What the service has announced; nothing while it is starting and once it has failed.
    [[nodiscard]] const std::optional<ServiceAnnouncement> &announcement() const
    {
        return m_announcement;
    }

    /// The file that takes the service's messages: its own when it says so, since it uses another
    /// folder while another program has it.
    [[nodiscard]] const QString &logFile() const { return m_log; }

signals:
    /// After each start that succeeded.
    void ready();
    /// The service cannot be started, or has exited unexpectedly too often, with a text for the
    /// user. Emitted once, from the event loop, never from inside another call.
    void failed(const QString &message);
    /// Emitted when a start attempt finished, successful or not; after ready().
    void settled();

private:
    enum class State { Idle, Starting, Ready, Failed };

    void readOutput();
    void processFailed(QProcess::ProcessError error);
    void processEnded();
    void launch();
    void abortStart();
    void fail(const QString &message);
    void settle(State state);

    const QString m_dataFolder;
    QString m_log;
    QProcess m_process;
    State m_state = State::Idle;
    int m_restartsLeft = 2;
    QTimer m_startTimer;
    QByteArray m_firstLine;
    std::optional<ServiceAnnouncement> m_announcement;
};
