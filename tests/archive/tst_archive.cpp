// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archive.h"
#include "archive/archivehandler.h"
#include "tests/support/installation.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"
#include "tests/support/toplevelwindow.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTimer>

#include <memory>

using Answer = ScriptedAnswer;

namespace {

const QByteArray list = "/teko-server/auth/archive.php";

QByteArray record(const QByteArray &name, const QByteArray &extension,
                  const QByteArray &original = {})
{
    return R"({"name":")" + name + R"(","deleted":"soon","instrument":"vocals","extension":")"
        + extension + R"(","demoFile":"no","local_file_path":")" + original + R"(","ai_id":"17"})";
}

} // namespace

/// The archive's windows with their real views, a scripted service and a fake ffmpeg.
class TestArchive : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("FAKE_DO");
        QFile::link("../ffmpeg.exe", m_ffmpeg);
        m_home = std::make_unique<Installation>();
        m_home->signIn("h+%");
        listRecords(record("Song", "wav") + ",7," + record("../Song", "wav"));
        m_window = std::make_unique<Archive>(*m_home->store);
    }

    void cleanup()
    {
        m_window.reset();
        m_home.reset();
    }

    void opening()
    {
        m_home->set("settings_gui_scale", 1.25);
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        QCOMPARE(m_window->size(), QSize(540, 500));
        m_window->openWindow();
        QCOMPARE(m_window->minimumSize(), QSize(675, 500));
        QCOMPARE(value("scf"), QVariant(1.25));
        QCOMPARE(value("isProcessing"), QVariant(false));
        const QVariantList rows = files.constLast().constFirst().toList();
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0].toMap().value("isUsable"), QVariant(true));
        QCOMPARE(rows[1].toMap().value("isUsable"), QVariant(false));
        QCOMPARE(server().requests(list).constFirst().field("hash"), "h+%");
    }

    void waits_data() { addNames({"answer", "close", "close and open again", "destroy"}); }

    /// Covered, and without the rows of an earlier user; whatever ends the waiting is safe.
    void waits()
    {
        QFETCH(QString, name);
        RecordedMessages messages;
        m_window->openWindow();
        server().on(list, {Answer::text("[]").held(), Answer::text("[]")});
        server().clearRequests();
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        QSignalSpy back(m_window.get(), &Archive::showParent);
        const auto act = [this, name, &files] {
            if (server().requests(list).size() != 1)
                return;
            server().disconnect(this);
            QVERIFY(m_window->isVisible() && value("isProcessing").toBool());
            QCOMPARE(files.constLast().constFirst().toList().size(), 0);
            if (name == "answer")
                server().release();
            else if (name == "destroy")
                m_window.reset();
            else
                m_window->close();
            if (name == "close and open again")
                m_window->openWindow();
        };
        connect(&server(), &ScriptedServer::requestReceived, this, act, Qt::QueuedConnection);
        m_window->openWindow();
        QCOMPARE(back.size(), name.startsWith("close") ? 1 : 0);
        QVERIFY(!m_window || m_window->isVisible() == (name != "close"));
        QCOMPARE(messages.texts(), QStringList());
    }

    void failures_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        add("out of reach", "/generate_204", Answer::cut(), "No internet connection!");
        add("refusal", list, Answer::text("<b>No</b>"), "<b>No</b>");
        add("50 MB of records", list, Answer::text('[' + QByteArray(50'000'000, '0') + ']'),
            "*too long*");
    }

    void failures()
    {
        const auto [path, answer, message] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        RecordedMessages messages;
        server().on(path, {answer});
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        m_window->openWindow();
        QVERIFY2(isLike(messages.texts().join(""), "Archive Error: " + message),
                 qPrintable(messages.texts().join("")));
        QCOMPARE(files.constLast().constFirst().toList().size(), 0);
        QCOMPARE(value("isProcessing"), QVariant(false));
    }

    void downloadingAndPlaying()
    {
        RecordedMessages messages;
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, true, "wav");
        QCOMPARE(handler()->rootObject()->property("mode"), QVariant("downloading"));
        QVERIFY(handler()->isModal());
        QCOMPARE(handler()->frameGeometry().center(), m_window->frameGeometry().center());
        QTRY_VERIFY(!handler()->isVisible());
        QCOMPARE(buttons.constLast(), QVariantList({0, "download", "play"}));
        QCOMPARE(m_home->saved(), QStringList("Mix Without vocals - Song.wav=the rest"));
        QCOMPARE(server().requests(Installation::download).constFirst().field("songID"), "17");
        QTRY_COMPARE(server().requests(Installation::cancel).size(), 1);

        m_window->changedFormat(0, "mp3");
        QCOMPARE(buttons.constLast(), QVariantList({0, "download", "download"}));
        OpenedUrls opened;
        m_window->operateFile(0, true, "wav");
        m_window->openFolder();
        const QString save = m_home->path("Save");
        QCOMPARE(opened.take(), QStringList({save + "/Mix Without vocals - Song.wav", save}));
        QCOMPARE(messages.texts(), QStringList());
    }

    /// The row of a file that was deleted meanwhile offers the download, whether it succeeds or
    /// not.
    void filesThatAreGone()
    {
        const QString file = writeFile(m_home->path("Save/vocals - Song.wav"));
        m_window->openWindow();
        QVERIFY(QFile::remove(file));
        server().on(Installation::download, {Answer::never()});
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, false, "wav");
        QCOMPARE(buttons.constLast(), QVariantList({0, "download", "download"}));
        writeFile(file);
        QMetaObject::invokeMethod(handler()->rootObject(), "cancelProcess");
        QCOMPARE(buttons.constLast(), QVariantList({0, "play", "download"}));
    }

    /// A full run after its demo was saved under another number: its row plays that one.
    void theTakeThatThisInstallationSaved()
    {
        writeFile(m_home->path("Save/vocals - Song.wav"), "the demo");
        const QString saved = writeFile(m_home->path("Save/vocals - Song (1).wav"));
        ResultMemory(*m_home->store)
            .remember(17, {saved, m_home->path("Save/Mix Without vocals - Song (1).wav")});
        Archive window(*m_home->store);
        window.openWindow();
        OpenedUrls opened;
        window.operateFile(0, false, "wav");
        QCOMPARE(opened.take(), QStringList(saved));
    }

    /// Without a number nothing can be asked for, but what is on disk can be played.
    void recordsWithoutANumber()
    {
        RecordedMessages messages;
        listRecords(record("Song", "wav").replace("17", ""));
        const QString file = writeFile(m_home->path("Save/vocals - Song.wav"));
        m_window->openWindow();
        OpenedUrls opened;
        m_window->operateFile(0, false, "wav");
        QCOMPARE(opened.take(), QStringList(file));
        m_window->operateFile(0, true, "wav");
        m_window->getFullFile(0);
        QCOMPARE(messages.texts().size(), 2);
        QVERIFY(messages.texts()[0].contains("reported no number"));
    }

    void brokenConversions_data()
    {
        const Rows<QString, QString> add;
        add("the download", "", "mp3");
        add("the stored file", "mp3", "flac");
    }

    /// Neither half a result nor its download stays; the stored one does.
    void brokenConversions()
    {
        const auto [before, broken] = fetchRow<QString, QString>();
        RecordedMessages messages;
        listRecords(record("Song", "mp3"));
        if (!before.isEmpty())
            writeFile(m_home->path("Save/vocals - Song." + before), "stored");
        m_window->openWindow();
        qputenv("FAKE_DO", "cut off");
        m_window->operateFile(0, false, "flac");
        QTRY_VERIFY(!handler()->isVisible());
        QCOMPARE(
            messages.texts(),
            QStringList("File Processing Error: The result could not be converted:\n\n"
                        + QDir::toNativeSeparators(m_home->path("Save/vocals - Song." + broken))));
        QCOMPARE(m_home->saved(),
                 before.isEmpty() ? QStringList() : QStringList("vocals - Song.mp3=stored"));
    }

    /// Refused before anything is downloaded; what needs no conversion goes on.
    void withoutFfmpeg()
    {
        RecordedMessages messages;
        QVERIFY(QFile::remove(m_ffmpeg));
        m_window->openWindow();
        m_window->operateFile(0, false, "mp3");
        QVERIFY(messages.texts().join("").contains("needs the program ffmpeg.exe"));
        QVERIFY(server().requests(Installation::download).isEmpty());
        m_window->operateFile(0, false, "wav");
        QTRY_COMPARE(m_home->saved(), QStringList("vocals - Song.wav=instrument"));
    }

    void filmThatIsGone()
    {
        RecordedMessages messages;
        listRecords(record("Song", "mp3", "/gone/%1.mp4"));
        m_window->openWindow();
        m_window->operateFile(0, false, "mkv");
        QCOMPARE(messages.take(),
                 QStringList("File Format Error: Cannot download and convert file to mkv, because "
                             "original video file is missed:\n\n"
                             + QDir::toNativeSeparators("/gone/%1.mp4")));
        QVERIFY(server().requests(Installation::download).isEmpty());
        m_home->set("default_path_save", m_home->path("x/y"));
        m_window->operateFile(0, false, "mp3");
        QVERIFY(messages.take().join("").contains("The folder for saved files cannot be used."));
    }

    void endingADownload_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        add("locations asked", Installation::download, Answer::never(), "");
        add("on its way", "/a", Answer::text("late").held(), "");
        add("refused", Installation::download, Answer::text("Gone"), "File Processing Error: Gone");
        add("cut off", "/a", Answer::wrongLength("instr", "10"),
            "File Processing Error: Download error:*");
    }

    /// Nothing of it stays, and the next try gets the result.
    void endingADownload()
    {
        const auto [path, answer, message] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        RecordedMessages messages;
        server().on(path, {answer});
        m_window->openWindow();
        m_window->operateFile(0, false, "wav");
        QTRY_VERIFY(!server().requests(path).isEmpty());
        if (message.isEmpty())
            QMetaObject::invokeMethod(handler()->rootObject(), "cancelProcess");
        QTRY_VERIFY(!handler()->isVisible());
        QTRY_COMPARE(server().requests(Installation::cancel).size(), 1);
        server().release();
        // Asks the same server, and so returns after the late answer would have come.
        m_window->loadArchiveFiles();
        QCOMPARE(m_home->saved(), QStringList());
        QVERIFY2(isLike(messages.texts().join(""), message), qPrintable(messages.texts().join("")));
        server().on(Installation::download, {Answer::text(m_home->address("/a") + '|')});
        server().on("/a", {Answer::text("instrument")});
        m_window->operateFile(0, false, "wav");
        QTRY_VERIFY(!handler()->isVisible());
        QCOMPARE(m_home->saved(), QStringList("vocals - Song.wav=instrument"));
    }

private:
    ScriptedServer &server() { return m_home->server; }
    void listRecords(const QByteArray &records)
    {
        server().on(list, {Answer::text('[' + records + ']')});
    }
    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }
    static ArchiveHandler *handler() { return topLevelWindow<ArchiveHandler>(); }

    /// In a folder that only this program uses.
    const QString m_ffmpeg = QCoreApplication::applicationDirPath() + "/ffmpeg.exe";
    std::unique_ptr<Installation> m_home;
    std::unique_ptr<Archive> m_window;
};

TEKO_TEST(TestArchive)
#include "tst_archive.moc"
