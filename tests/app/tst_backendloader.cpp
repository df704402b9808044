// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "app/backendloader.h"
#include "app/base/programdata.h"
#include "app/mediafilter.h"
#include "app/startup.h"
#include "app/webpage.h"
#include "settings/settings.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMetaMethod>
#include <QQmlApplicationEngine>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace {

Settings *settingsWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Settings *>(widget))
            return window;
    }
    return nullptr;
}

/// Chooses a file in the dialog that opens next; tells where it opened.
QString chooseFile(BackendLoader &backend, const QString &file)
{
    QString start;
    QTimer::singleShot(0, &backend, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), "Please choose a media file");
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
        QVERIFY(dialog->windowFlags() & Qt::WindowStaysOnTopHint);
        start = dialog->directory().absolutePath();
        if (file.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->setDirectory(QFileInfo(file).absolutePath());
        dialog->selectFile(file);
        static_cast<QDialog *>(dialog)->accept();
    });
    backend.selectFile();
    return start;
}

} // namespace

/// The main window's backend without a service in reach: what is opened closes again at once.
class TestBackendLoader : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QDir().mkpath(documentsAppFolder());
        ProgramData::instance().setEndpointSource([] { return unreachable(); });
        registerBackendTypes();
    }

    void metaObjectKeepsItsOrder()
    {
        QStringList methods;
        const QMetaObject &meta = BackendLoader::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            methods << meta.method(i).typeName() + QByteArray(" ")
                    + meta.method(i).methodSignature();
        QCOMPARE(methods.join(", "),
                 "void runFromDemo(), void hideMainWindow(), void showMainWindow(), "
                 "void callSubscriptionCreating(), void scfChanged(double), void selectFile(), "
                 "void afterSettings(), void unlockFullAccess(), "
                 "void reProcessDemo(QString,QString,QString), void loadFile(QString), "
                 "void openMyAccountWindow(), void openSettingsWindow(), void openArchive(), "
                 "void onCompleted(), void clearMemory(), void openUrl(QString), "
                 "void checkForUpdates(), void showLogs(), void logout(), void resetScf(), "
                 "void showInitialMessage(), void toggleLogging(bool), bool getLoggingStatus()");
    }

    void filters()
    {
        const QString audio = "*.aac *.aif *.aiff *.m4a *.mp1 *.mp3 *.mp4 *.ogg *.wav *.wma *.flac";
        const QString video = "*.avi *.flv *.m4v *.mov *.mp4 *.mpg *.rm *.vob *.webm *.wmv *.mkv";
        QCOMPARE(mediaFileFilter(),
                 QString("All Openable Files (%1 %2);;\nAudio Files (%1);;\nVideo Files (%2)")
                     .arg(audio, video));
    }

    void webPages_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("address");
        QTest::newRow("service") << "/teko-server/redirect-user-guide.php"
                                 << "http://127.0.0.1:9/teko-server/redirect-user-guide.php";
        QTest::newRow("maker") << "/helpdesk.html"
                               << "http://maker.example/helpdesk.html";
        QTest::newRow("whole") << "https://else.example/a b"
                               << "https://else.example/a b";
    }

    void webPages()
    {
        QFETCH(QString, page);
        QFETCH(QString, address);
        QCOMPARE(webPage(page, unreachable()), QUrl(address));
    }

    /// The dialog remembers its folder for this run, and a dialog that is given up changes nothing.
    void dialogFolder()
    {
        BackendLoader backend;
        QSignalSpy hidden(&backend, &BackendLoader::hideMainWindow);
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        RecordedMessages messages;
        const QString file = m_folder.filePath("song.wav");
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        const QString open = ProgramData::instance().defaultPathOpen();
        QCOMPARE(chooseFile(backend, {}), open);
        QCOMPARE(hidden.size(), 0);
        QCOMPARE(chooseFile(backend, file), open);
        QCOMPARE(chooseFile(backend, {}), QDir(m_folder.path()).absolutePath());
        QCOMPARE(hidden.size(), 1);
        QCOMPARE(shown.size(), 1);
        QVERIFY(messages.texts().value(0).startsWith("No Internet Connection: "));
        QCOMPARE(ProgramData::instance().defaultPathOpen(), open);
    }

    void clearMemoryRemovesFilesAlone()
    {
        const QString folder = ProgramData::instance().defaultPathTemp();
        QVERIFY(QDir(folder).mkpath("kept"));
        for (const char *name : {"a.wav", ".hidden", "kept/b.wav"})
            QVERIFY(QFile(QDir(folder).filePath(name)).open(QIODevice::WriteOnly));
        BackendLoader().clearMemory();
        QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{"kept"});
        QVERIFY(QFile::exists(folder + "/kept/b.wav"));
    }

    /// A file of the command line waits for the sign-in, and does not come back at a later one.
    void givenFile()
    {
        QObject mainView;
        const auto *backend = new BackendLoader(&mainView);
        auto *account = new UserAuth(&mainView);
        QSignalSpy hidden(backend, &BackendLoader::hideMainWindow);
        RecordedMessages messages;
        openOnceSignedIn(mainView, "song.wav");
        emit account->signedOut();
        QCoreApplication::processEvents();
        QCOMPARE(hidden.size(), 0);
        for (int time = 0; time < 2; ++time) {
            emit account->signedIn();
            QCoreApplication::processEvents();
            QCOMPARE(hidden.size(), 1);
        }
    }

    void windowsTakeTheMainWindowsPlace_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::newRow("in the middle") << QPoint(160, 280);
        QTest::newRow("at the corner") << QPoint(700, 750);
        QTest::newRow("beyond the other corner") << QPoint(-200, -50);
    }

    /// Over its middle, as far as the screen allows; at every opening anew.
    void windowsTakeTheMainWindowsPlace()
    {
        QFETCH(QPoint, place);
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QVERIFY(main);
        auto *backend = main->findChild<BackendLoader *>();
        for (const QPoint &shift : {QPoint(), QPoint(-20, -20)}) {
            main->setPosition(place + shift);
            backend->openSettingsWindow();
            const QRect space = main->screen()->availableGeometry();
            const QRect window = settingsWindow()->frameGeometry();
            QVERIFY(space.contains(window));
            QRect wished = window;
            wished.moveCenter(main->frameGeometry().center());
            if (space.contains(wished))
                QCOMPARE(window.topLeft(), wished.topLeft());
            settingsWindow()->close();
        }
    }

private:
    static ServiceEndpoints unreachable()
    {
        return {QUrl("http://127.0.0.1:9"), QUrl("http://127.0.0.1:9/generate_204"),
                QUrl("http://maker.example")};
    }

    QTemporaryDir m_folder;
};

TEKO_TEST_MAIN(TestBackendLoader)
#include "tst_backendloader.moc"
