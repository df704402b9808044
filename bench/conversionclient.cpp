// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// conversionclient upload|result|archived INPUT OUTPUT ORIGINAL [CANCEL-AFTER-MILLISECONDS]
// Prints the seconds that the conversion took on its worker thread, or those from the cancel to the
// end of the thread.
#include "service/convertingfile.h"
#include "service/workerthread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>

namespace {

class Bench final : public QObject
{
public:
    explicit Bench(const QStringList &arguments)
        : m_arguments(arguments)
    { }

    void start()
    {
        m_timer.start();
        auto worker = std::make_unique<ConvertingFile>(&m_cancel, m_arguments[2], m_arguments[3],
                                                       m_arguments[4], true);
        if (m_arguments[1] == QLatin1String("upload")) {
            m_thread.start(std::move(worker), &ConvertingFile::prepareToUpload,
                           &ConvertingFile::doneUploadConverting, this, &Bench::finish);
        } else {
            const bool isArchived = m_arguments[1] == QLatin1String("archived");
            m_thread.start(std::move(worker),
                           isArchived ? &ConvertingFile::convertFile
                                      : &ConvertingFile::prepareFinal,
                           &ConvertingFile::doneMain, this, &Bench::finish);
        }
        if (m_arguments.size() > 5)
            QTimer::singleShot(m_arguments[5].toInt(), this, &Bench::cancel);
    }

private:
    void cancel()
    {
        m_timer.start();
        m_cancel = 1;
        finish();
    }

    void finish()
    {
        m_thread.stop();
        std::printf("%.4f\n", double(m_timer.nsecsElapsed()) / 1e9);
        QCoreApplication::quit();
    }

    const QStringList m_arguments;
    std::atomic<int> m_cancel = 0;
    QElapsedTimer m_timer;
    WorkerThread m_thread;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 5) {
        std::fputs("conversionclient upload|result|archived INPUT OUTPUT ORIGINAL [CANCEL-AFTER]\n",
                   stderr);
        return 2;
    }
    Bench bench(app.arguments());
    bench.start();
    return QCoreApplication::exec();
}
