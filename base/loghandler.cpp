// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/loghandler.h"

#include "base/logline.h"

#include <QDateTime>
#include <QFile>
#include <QLatin1String>
#include <QMutex>
#include <QTextStream>

namespace {

class LogWriter
{
public:
    explicit LogWriter(LogFolderSource folder)
        : m_folder(std::move(folder))
    { }

    void write(const QString &line)
    {
        const QMutexLocker lock(&m_mutex);
        if (m_path.isEmpty())
            open();
        if (m_file.isOpen())
            m_stream << line << Qt::endl;
    }

    void close()
    {
        const QMutexLocker lock(&m_mutex);
        m_file.close();
    }

private:
    void open()
    {
        const QString folder = m_folder();
        m_path = folder + QLatin1Char('/') + logFileName(QDateTime::currentDateTime());
        m_file.setFileName(m_path);
        if (!folder.isEmpty() && m_file.open(QIODevice::WriteOnly | QIODevice::Append))
            m_stream.setDevice(&m_file);
    }

    const LogFolderSource m_folder;
    QMutex m_mutex;
    QString m_path;
    QFile m_file;
    QTextStream m_stream;
};

LogWriter *writer = nullptr;

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message == QLatin1String("LOG_CLOSE")) {
        writer->close();
        return;
    }
    if (const auto line = logLine(type, context.category, message))
        writer->write(*line);
}

} // namespace

void installLogHandler(LogFolderSource folder)
{
    // Never freed: threads and static objects may log until the process is gone.
    writer = new LogWriter(std::move(folder));
    qInstallMessageHandler(handleMessage);
}
