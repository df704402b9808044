// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/backendloader.h"
#include "app/base/programdata.h"
#include "app/startup.h"
#include "processing/processingrules.h"
#include "service/resultopener.h"
#include "settings/settings.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QQmlApplicationEngine>
#include <QTest>
#include <QWindow>

/// What is set in the settings window, where it counts: in the main window and before a run.
class TestSettingsRoad : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        QDir().mkpath(documentsAppFolder());
        QDir::setCurrent(m_folder.path());
    }

    void cleanup() { QDir::setCurrent(QDir::rootPath()); }

    /// The main window makes way, comes back in the new size, and the same window opens again.
    void theScaleReachesTheMainWindow()
    {
        QSettings &shared = ProgramData::instance().settings();
        shared.setValue("settings_gui_scale", 50);
        registerBackendTypes();
        QQmlApplicationEngine engine(QUrl("qrc:/qml/main.qml"));
        auto *main = qobject_cast<QWindow *>(engine.rootObjects().value(0));
        QVERIFY(main);
        QCOMPARE(main->maximumSize(), QSize(705, 315));
        auto *backend = main->findChild<BackendLoader *>();
        for (const double scale : {0.6, 1.25}) {
            backend->openSettingsWindow();
            QVERIFY(!main->isVisible());
            settingsWindow()->saveScf(scale);
            settingsWindow()->close();
            QVERIFY(main->isVisible());
            QCOMPARE(main->minimumSize(), QSize(int(470 * scale), int(210 * scale)));
            QCOMPARE(main->maximumSize(), main->minimumSize());
        }
        shared.clear();
    }

    void typedFolders_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("isUsable");
        QTest::newRow("with spaces") << m_folder.filePath("my own songs") << true;
        QTest::newRow("trailing separator") << m_folder.filePath("ends/") << true;
        QTest::newRow("relative") << "my songs" << true;
        QTest::newRow("parent missing") << m_folder.filePath("no/folder") << false;
        QTest::newRow("missing drive") << "/Z:/music" << false;
        QTest::newRow("a file") << QCoreApplication::applicationFilePath() << false;
        QTest::newRow("cannot be written to") << "/proc" << false;
        QTest::newRow("emptied") << "" << false;
    }

    /// Stored as typed; a folder that cannot be used is told before any work begins.
    void typedFolders()
    {
        QFETCH(QString, typed);
        QFETCH(bool, isUsable);
        ProgramData store(m_folder.filePath("teko.ini"));
        Settings window(store);
        window.openWindow();
        window.save(QVariantMap{{"default_path_save", typed}});
        QCOMPARE(store.stringValue("default_path_save"), typed);
        const QString problem = unusableFolder(store.defaultPathSave(), m_folder.path());
        QCOMPARE(problem.isEmpty(), isUsable);
        QVERIFY(isUsable || problem.contains("settings"));
    }

    void resultsInARelativeFolderAreOpenedByTheirWholePath()
    {
        QDesktopServices::setUrlHandler("file", this, "keepUrl");
        openInPlayer(ProgramData(m_folder.filePath("teko.ini")), "Default Audio Player",
                     "my songs/a.wav");
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(m_opened, QUrl::fromLocalFile(QDir::current().filePath("my songs/a.wav")));
    }

public slots:
    void keepUrl(const QUrl &url) { m_opened = url; }

private:
    [[nodiscard]] static Settings *settingsWindow()
    {
        Settings *found = nullptr;
        const auto widgets = QApplication::topLevelWidgets();
        for (QWidget *widget : widgets) {
            if (auto *settings = qobject_cast<Settings *>(widget))
                found = settings;
        }
        return found;
    }

    const QTemporaryDir m_folder;
    QUrl m_opened;
};

TEKO_TEST_MAIN(TestSettingsRoad)
#include "tst_settingsroad.moc"
