// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "app/appfolder.h"
#include "app/base/programdata.h"
#include "processing/fileprocessing.h"
#include "service/serviceconnection.h"
#include "tests/support/childprocesses.h"
#include "tests/support/madesources.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <QtEndian>

#include <memory>

namespace {

/// The samples of a WAV file as 16-bit numbers; empty when it is anything else.
QList<qint16> samples(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const qsizetype data = bytes.indexOf("data");
    QList<qint16> result;
    for (qsizetype at = data + 8; data > 0 && at + 1 < bytes.size(); at += 2)
        result << qFromLittleEndian<qint16>(bytes.constData() + at);
    return result;
}

} // namespace

/// One file's whole road with the real ffmpeg and the real local service.
class TestRoad : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(makeAppFolder(documentsAppFolder(), localDataAppFolder()).exitCode, 0);
        m_store = std::make_unique<ProgramData>(m_folder.filePath("teko.ini"));
        m_store->settings().setValue("default_instrument", "Bass");
        m_service = std::make_unique<ServiceConnection>(*m_store);
        UserAuth account(*m_store);
        QSignalSpy signedIn(&account, &UserAuth::signedIn);
        account.initialCheck();
        QTRY_COMPARE(signedIn.size(), 1);
        for (const char *name : {"short.wav", "short.mp3", "short.mp4"})
            QVERIFY(makeSource(m_folder.filePath(QLatin1String(name)), 3));
        QVERIFY(makeSource(m_folder.filePath("long.mp4"), 40));
    }

    void init()
    {
        TestCase::init();
        for (const QString &folder : {m_store->defaultPathSave(), m_store->defaultPathTemp()}) {
            for (const QString &name : QDir(folder).entryList(QDir::Files))
                QFile::remove(folder + '/' + name);
        }
        m_window = std::make_unique<FileProcessing>(*m_store);
    }

    void cleanup()
    {
        m_window->removeUploadedFile();
        m_window.reset();
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
        QCOMPARE(names(m_store->defaultPathTemp()), QStringList());
    }

    void cleanupTestCase()
    {
        m_service.reset();
        QTRY_COMPARE(childProcesses("teko-service"), QStringList());
    }

    void fileToResults_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("streams");
        QTest::newRow("WAV") << "short.wav"
                             << "WAV" << QStringList{"pcm_s16le", "audio"};
        QTest::newRow("MP3") << "short.mp3"
                             << "FLAC" << QStringList{"flac", "audio"};
        QTest::newRow("MP4") << "short.mp4"
                             << "MKV" << QStringList{"h264", "video", "aac", "audio"};
        QTest::newRow("MP4 to sound") << "short.mp4"
                                      << "MP3" << QStringList{"mp3", "audio"};
    }

    void fileToResults()
    {
        QFETCH(QString, source);
        QFETCH(QString, format);
        QFETCH(QStringList, streams);
        RecordedMessages messages;
        openFile(source, format);
        m_window->startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(layer(), QStringLiteral("success"), 60000);
        const ResultPaths first = m_window->results();
        for (const QString &result : {first.main, first.mix}) {
            const QStringList facts = probed(result);
            QCOMPARE(facts.mid(0, facts.size() - 1), streams);
            QVERIFY2(qAbs(facts.constLast().toDouble() - 3) < 0.2, qPrintable(facts.constLast()));
        }
        if (format == "WAV") {
            const auto mix = samples(first.mix);
            auto sum = samples(first.main);
            for (qsizetype i = 0; i < sum.size() && i < mix.size(); ++i)
                sum[i] = qint16(sum.at(i) + mix.at(i));
            QVERIFY(!sum.isEmpty());
            QCOMPARE(sum, samples(m_folder.filePath(source)));
        }

        m_window->proceedAnotherInstrument();
        m_window->rootObject()->setProperty("selectedInstrument", "vocals");
        m_window->startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(layer(), QStringLiteral("success"), 60000);
        QVERIFY(first.main != m_window->results().main);
        QCOMPARE(names(m_store->defaultPathSave()).size(), 4);
        QCOMPARE(names(m_store->defaultPathTemp()).size(), 1);

        m_window->proceedAnotherFile();
        openFile("short.wav", "MP3");
        QCOMPARE(names(m_store->defaultPathTemp()), QStringList());
        m_window->startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(layer(), QStringLiteral("success"), 60000);
        QCOMPARE(messages.texts(), QStringList());
    }

    void cancelling_data()
    {
        QTest::addColumn<QString>("stage");
        for (const char *stage :
             {"converting", "uploading", "processing", "downloading", "instrument", "mix"})
            QTest::newRow(stage) << stage;
    }

    /// Cancels at a stage, finds nothing left behind, and gets the results by pressing "PROCESS"
    /// again.
    void cancelling()
    {
        QFETCH(QString, stage);
        RecordedMessages messages;
        openFile("long.mp4", "MP4");
        // These stages may be over before anybody looks for them: they are cancelled as they begin.
        QStringList announced{"downloading", "instrument"};
        bool isCancelled = false;
        connect(
            m_window.get(), &FileProcessing::changeLayerWithDelay, this,
            [&] {
                if (announced.isEmpty() || announced.takeFirst() != stage)
                    return;
                m_window->cancelProcess();
                isCancelled = true;
            },
            Qt::QueuedConnection);
        m_window->startProcess();
        const auto isReached = [&] {
            if (stage == "mix")
                return value("convertingText").contains("mix");
            return isCancelled || layer() == stage;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isReached(), 60000);
        if (!isCancelled)
            m_window->cancelProcess();
        QCOMPARE(layer(), QStringLiteral("select_instrument"));
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
        for (const QString &name : names(m_store->defaultPathSave()))
            QVERIFY2(stage == "mix" && !name.endsWith(".wav") && !name.startsWith("Mix"),
                     qPrintable(name));

        const auto isOver = [&] { return layer() == "success" || layer() == "select_instrument"; };
        // Pressed in the same instant, "PROCESS" may meet a service that is still receiving the
        // upload, or overtake the request that cancels.
        const bool mayBeRefused = stage == "uploading" || stage == "processing";
        for (int attempt = 0; attempt < 3 && layer() != "success"; ++attempt) {
            m_window->startProcess();
            QTRY_VERIFY_WITH_TIMEOUT(isOver(), 60000);
        }
        QCOMPARE(layer(), QStringLiteral("success"));
        QVERIFY(QFile::exists(m_window->results().mix));
        QVERIFY2(messages.texts().size() <= (mayBeRefused ? 1 : 0),
                 qPrintable(messages.texts().join('\n')));
    }

private:
    void openFile(const QString &name, const QString &format)
    {
        m_store->settings().setValue("default_audio_format", format);
        m_store->settings().setValue("default_video_format", format);
        m_window->openWindow(m_folder.filePath(name));
    }

    QString value(const char *name) const
    {
        return m_window->rootObject()->property(name).toString();
    }
    QString layer() const { return value("currentLayer"); }

    static QStringList names(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<ServiceConnection> m_service;
    std::unique_ptr<FileProcessing> m_window;
};

TEKO_TEST_MAIN(TestRoad)
#include "tst_road.moc"
