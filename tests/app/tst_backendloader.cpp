// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "app/backendloader.h"
#include "app/startup.h"
#include "app/webpage.h"
#include "archive/archive.h"
#include "base/programdata.h"
#include "processing/fileprocessing.h"
#include "settings/settings.h"
#include "tests/support/installation.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"
#include "tests/support/toplevelwindow.h"

#include <QDir>
#include <QFileDialog>
#include <QMetaMethod>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace {

/// Chooses a file in the dialog that opens next, or cancels it; returns its folder.
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
        if (!file.isEmpty())
            dialog->selectFile(file); // as typed: the dialog's own folder stays
        static_cast<QDialog *>(dialog)->done(file.isEmpty() ? QDialog::Rejected
                                                            : QDialog::Accepted);
    });
    backend.selectFile();
    return start;
}

} // namespace

/// The main window and its backend, without a service in reach.
class TestBackendLoader : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        for (const char *name : {"/Save", "/Audio", "/Logs", "/Temp"})
            QDir().mkpath(documentsAppFolder() + name);
        registerBackendTypes();
    }

    void init()
    {
        TestCase::init();
        store().settings().clear();
        store().setEndpointSource([] {
            return ServiceEndpoints{QUrl("http://127.0.0.1:9"), QUrl("http://127.0.0.1:9/x"), {}};
        });
    }

    /// The dialog remembers its folder for this run; a cancelled one changes nothing.
    void dialogFolder()
    {
        BackendLoader backend;
        QSignalSpy hidden(&backend, &BackendLoader::hideMainWindow);
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        RecordedMessages messages;
        const QTemporaryDir folder;
        const QString file = writeFile(folder.filePath("song.wav"));
        const QString open = store().defaultPathOpen();
        QCOMPARE(chooseFile(backend, {}), open);
        QCOMPARE(hidden.size(), 0);
        QCOMPARE(chooseFile(backend, file), open);
        QCOMPARE(chooseFile(backend, {}), QDir(folder.path()).absolutePath());
        QCOMPARE(hidden.size(), 1);
        QCOMPARE(shown.size(), 1);
        QVERIFY(messages.texts().value(0).startsWith("No Internet Connection: "));
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

    /// Centred over the main window, as far as the screen allows, at every opening and when it
    /// grows.
    void windowsTakeTheMainWindowsPlace()
    {
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        auto *backend = main->findChild<BackendLoader *>();
        const QRect space = main->screen()->availableGeometry();
        for (const QPoint &place : {QPoint(160, 280), QPoint(700, 750), QPoint(-200, -50)}) {
            main->setPosition(place);
            backend->openSettingsWindow();
            auto *window = topLevelWindow<Settings>();
            QVERIFY(space.contains(window->frameGeometry()));
            QRect expected = window->frameGeometry();
            expected.moveCenter(main->frameGeometry().center());
            QVERIFY(!space.contains(expected) || window->frameGeometry() == expected);
            window->saveScf(1.1);
            QVERIFY(space.contains(window->frameGeometry()));
            window->saveScf(1);
            window->close();
        }
    }

    /// The main window makes way, comes back in the new size, and the same window opens again.
    void theScaleReachesTheMainWindow()
    {
        store().settings().setValue("settings_gui_scale", 50);
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QCOMPARE(main->maximumSize(), QSize(705, 315));
        auto *backend = main->findChild<BackendLoader *>();
        for (const double scale : {0.6, 1.25}) {
            backend->openSettingsWindow();
            QVERIFY(!main->isVisible());
            topLevelWindow<Settings>()->saveScf(scale);
            topLevelWindow<Settings>()->close();
            QVERIFY(main->isVisible());
            QCOMPARE(main->minimumSize(), QSize(int(470 * scale), int(210 * scale)));
            QCOMPARE(main->maximumSize(), main->minimumSize());
        }
        backend->resetScf();
        QVERIFY(!store().settings().contains("settings_gui_scale"));
    }

    void helpMenuActions()
    {
        BackendLoader backend;
        RecordedMessages messages;
        backend.showInitialMessage();
        QVERIFY(messages.take().value(0).startsWith("Welcome: "));
        OpenedUrls opened;
        backend.showLogs();
        QCOMPARE(opened.take(), QStringList(store().defaultPathLogs()));
        QVERIFY(!backend.getLoggingStatus());
        backend.toggleLogging(true);
        QVERIFY(backend.getLoggingStatus());
        QVERIFY(readFile(store().settings().fileName()).contains("APP_LOGFILE_ENABLED=true"));
        const ServiceEndpoints ends{QUrl("http://s:1"), QUrl(), QUrl("http://site")};
        for (const auto &[name, page] : {std::pair("/helpdesk.html", "http://site/helpdesk.html"),
                                         {"/", "http://site/"},
                                         {"/teko-server/x.php", "http://s:1/teko-server/x.php"},
                                         {"https://else/a b", "https://else/a b"}})
            QCOMPARE(webPage(name, ends), QUrl(page));
    }

    /// The views are checked and compiled against descriptions of the types, which have to be true.
    void describedTypes()
    {
        for (const QMetaObject *type :
             {&BackendLoader::staticMetaObject, &UserAuth::staticMetaObject}) {
            const QByteArray text =
                readFile(TEKO_QML_TYPES + QString(type->className()) + "/plugins.qmltypes");
            for (int i = type->methodOffset(); i < type->methodCount(); ++i) {
                const QMetaMethod method = type->method(i);
                QVERIFY2(text.contains("name: \"" + method.name() + '"'), method.name());
            }
            QCOMPARE(text.count("Signal {") + text.count("Method {"),
                     type->methodCount() - type->methodOffset());
        }
    }

    /// The upload is removed in the name of the user who leaves, and nothing of either stays here.
    void logout()
    {
        Installation home;
        home.server.on("/teko-server/auth/logout.php", {ScriptedAnswer::text("1")});
        home.server.on(Installation::download, {ScriptedAnswer::never()});
        store().setEndpointSource([&home] {
            return ServiceEndpoints{home.server.url(), home.server.url("/generate_204"), {}};
        });
        store().settings().setValue("default_instrument", "Bass");
        UserRecord user;
        user.hash = "h";
        store().setUser(user);
        BackendLoader backend;
        backend.loadFile(home.source("a.wav"));
        auto *window = topLevelWindow<FileProcessing>();
        window->startProcess();
        QTRY_COMPARE(home.server.requests(Installation::download).size(), 1);
        backend.logout();
        QCOMPARE(store().user(), UserRecord());
        QCOMPARE(home.temporary().filter(".wav"), QStringList());
        QTRY_COMPARE(home.server.requests("/teko-server/auth/logout.php").size(), 1);
        const ScriptedRequest removal = home.server.requests(Installation::removal).value(0);
        QCOMPARE(removal.header("Cookie"), "teko-session=h");
        writeFile(home.path("Temp/left.wav"));
        backend.clearMemory();
        QCOMPARE(home.temporary(), QStringList());
    }

    /// The archive makes way for the processing window; out of reach the main window comes back.
    void demosInFullNeedTheService()
    {
        BackendLoader backend;
        RecordedMessages messages;
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        QSignalSpy runs(&backend, &BackendLoader::runFromDemo);
        backend.openArchive();
        QCOMPARE(messages.take(), QStringList("Archive Error: No internet connection!"));
        auto *archive = topLevelWindow<Archive>();
        emit archive->reProcessDemo("Song.wav", "vocals", "wav", 17);
        QVERIFY(!archive->isVisible() && !topLevelWindow<FileProcessing>()->isVisible());
        QVERIFY(messages.take().value(0).startsWith("No Internet Connection: "));
        QCOMPARE(shown.size(), 1);
        QCOMPARE(runs.size(), 0);
    }

#ifndef Q_OS_WIN // which lends a program no other user folders
    /// The program itself, to its main window.
    void starts()
    {
        const QTemporaryDir home;
        QDir(home.path()).mkpath("Documents/TEKO");
        writeFile(home.filePath("Documents/TEKO/teko.ini"),
                  "[General]\nAPP_LOGFILE_ENABLED=true\n");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home.path());
        environment.insert("TEKO_SERVICE_URL", "http://127.0.0.1:9");
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(TEKO_PROGRAM, QStringList());
        const QString logs = home.filePath("Documents/TEKO/Logs");
        QTRY_VERIFY(
            readFile(logs + '/' + filesIn(logs).value(0)).contains("UserAuth::initialCheck"));
        QVERIFY(program.readAllStandardError().contains("LOGGING ENABLED"));
        program.kill();
        QVERIFY(program.waitForFinished());
    }
#endif

private:
    static ProgramData &store()
    {
        return ProgramData::instance();
    }
};

TEKO_TEST(TestBackendLoader)
#include "tst_backendloader.moc"
