// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "app/backendloader.h"
#include "app/startup.h"
#include "base/programdata.h"
#include "settings/settings.h"
#include "tests/support/files.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"
#include "tests/support/toplevelwindow.h"

#include <QDir>
#include <QFileDialog>
#include <QQmlApplicationEngine>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>

namespace {

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
        ProgramData::instance().setEndpointSource([] {
            return ServiceEndpoints{QUrl("http://127.0.0.1:9"), QUrl("http://127.0.0.1:9/x"), {}};
        });
        registerBackendTypes();
    }

    /// The dialog remembers its folder for this run, and a dialog that is given up changes nothing.
    void dialogFolder()
    {
        BackendLoader backend;
        QSignalSpy hidden(&backend, &BackendLoader::hideMainWindow);
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        RecordedMessages messages;
        const QTemporaryDir folder;
        const QString file = writeFile(folder.filePath("song.wav"));
        const QString open = ProgramData::instance().defaultPathOpen();
        QCOMPARE(chooseFile(backend, {}), open);
        QCOMPARE(hidden.size(), 0);
        QCOMPARE(chooseFile(backend, file), open);
        QCOMPARE(chooseFile(backend, {}), QDir(folder.path()).absolutePath());
        QCOMPARE(hidden.size(), 1);
        QCOMPARE(shown.size(), 1);
        QVERIFY(messages.texts().value(0).startsWith("No Internet Connection: "));
        QCOMPARE(ProgramData::instance().defaultPathOpen(), open);
    }

    void clearMemoryRemovesFilesAlone()
    {
        const QString folder = ProgramData::instance().defaultPathTemp();
        QVERIFY(QDir(folder).mkpath("kept"));
        for (const char *name : {"/a.wav", "/.hidden", "/kept/b.wav"})
            writeFile(folder + name);
        BackendLoader().clearMemory();
        QCOMPARE(filesIn(folder), QStringList());
        QCOMPARE(filesIn(folder + "/kept"), QStringList("b.wav"));
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

    /// Over its middle, as far as the screen allows; at every opening anew.
    void windowsTakeTheMainWindowsPlace()
    {
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QVERIFY(main);
        auto *backend = main->findChild<BackendLoader *>();
        for (const QPoint &place :
             {QPoint(160, 280), QPoint(140, 260), QPoint(700, 750), QPoint(-200, -50)}) {
            main->setPosition(place);
            backend->openSettingsWindow();
            const QRect space = main->screen()->availableGeometry();
            const QRect window = topLevelWindow<Settings>()->frameGeometry();
            QVERIFY(space.contains(window));
            QRect wished = window;
            wished.moveCenter(main->frameGeometry().center());
            QVERIFY(!space.contains(wished) || window.topLeft() == wished.topLeft());
            topLevelWindow<Settings>()->close();
        }
    }

    /// The main window makes way, comes back in the new size, and the same window opens again.
    void theScaleReachesTheMainWindow()
    {
        QSettings &shared = ProgramData::instance().settings();
        shared.setValue("settings_gui_scale", 50);
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QVERIFY(main);
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
        shared.clear();
    }
};

TEKO_TEST_MAIN(TestBackendLoader)
#include "tst_backendloader.moc"
