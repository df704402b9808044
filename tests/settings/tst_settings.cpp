// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/programdata.h"
#include "processing/processingrules.h"
#include "results/resultopener.h"
#include "settings/settings.h"
#include "tests/support/files.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <functional>
#include <memory>

/// The settings window with its real view, a settings file of the test's own and scripted dialogs.
class TestSettings : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        // Programs are looked for on drive C, which is a folder here.
        QDir::setCurrent(m_folder->path());
        QDir().mkpath(documentsAppFolder());
        m_asked.clear();
        m_answer.clear();
        useFile(m_folder->filePath("teko.ini"));
    }

    void cleanup()
    {
        m_window.reset();
        m_store.reset(); // which would write its file into a folder that is gone
        QDir::setCurrent(QDir::rootPath());
    }

    void opening_data()
    {
        const Rows<QVariant, double, QSize> add;
        add("nothing stored", QVariant(), 1.0, QSize(540, 670));
        add("truncated", QVariant(1.33), 1.33, QSize(718, 891));
        add("unusable", QVariant(50), 1.5, QSize(810, 1005));
    }

    void opening()
    {
        const auto [scale, shown, size] = fetchRow<QVariant, double, QSize>();
        if (scale.isValid())
            m_store->settings().setValue("settings_gui_scale", scale);
        QStringList events;
        connect(m_window.get(), &Settings::setProgramSettings, this,
                [&, &shown = shown](const QVariant &data) {
                    QCOMPARE(data.toMap().size(), 7);
                    QCOMPARE(m_window->rootObject()->property("scf").toDouble(), shown);
                    events << (m_window->isVisible() ? "set late" : "set");
                });
        connect(m_window.get(), &Settings::loaded, this,
                [&] { events << (m_window->isVisible() ? "loaded" : "loaded early"); });
        m_window->openWindow();
        QCOMPARE(events, QStringList({"set", "loaded"}));
        QCOMPARE(m_window->windowTitle(), "Option Settings");
        QCOMPARE(m_window->minimumSize(), size);
        QCOMPARE(m_window->maximumSize(), size);
        QCOMPARE(m_store->settings().value("settings_gui_scale"), scale);
        QVERIFY(!(m_window->windowFlags() & Qt::WindowMaximizeButtonHint));
        QTRY_COMPARE(m_window->rootObject()->height(), double(size.height()));
        QTRY_COMPARE(button("CANCEL")->size().toSize(), (QSizeF(100, 36) * shown).toSize());
        m_window->saveScf(1.25);
        QCOMPARE(m_store->guiScale(), 1.25);
        QCOMPARE(m_window->minimumSize(), QSize(675, 837));
        QCOMPARE(m_window->maximumSize(), QSize(675, 837));
        QCOMPARE(m_window->rootObject()->property("scf").toDouble(), 1.25);
    }

    /// "OK" in the view, after the window was opened over that value and, perhaps, another program
    /// has changed it before or meanwhile.
    void okStores_data()
    {
        const Rows<QString, QString, QString, QString, bool> add;
        add("not set", "default_instrument", "none", "", "none", false);
        add("a choice", "default_video_format", "WEBM", "", "WEBM", false);
        add("an unknown format", "default_audio_format", "OGG", "", "OGG", false);
        add("an unknown player", "default_video_player", "Winamp", "", "Winamp", false);
        add("a folder that is gone", "default_path_save", "/nowhere/a", "", "/nowhere/a", false);
        add("a folder as typed", "default_path_open", "my  songs/", "", "my  songs/", false);
        add("another program's choice", "default_instrument", "Bass", "Piano", "Piano", false);
        add("another program's folder", "default_path_save", "/no/a", "/no/b", "/no/b", false);
        add("another's earlier choice", "default_instrument", "Bass", "Piano", "Piano", true);
    }

    void okStores()
    {
        const auto [key, stored, others, expected, isBefore] =
            fetchRow<QString, QString, QString, QString, bool>();
        m_store->settings().setValue(key, stored);
        QVERIFY(m_store->saveSettings());
        QSignalSpy back(m_window.get(), &Settings::showParent);
        QSignalSpy shown(m_window.get(), &Settings::setProgramSettings);
        if (isBefore)
            storeElsewhere(key, others);
        m_window->openWindow();
        if (isBefore)
            QCOMPARE(shown.constLast().constFirst().toMap().value(key), QVariant(others));
        else if (!others.isEmpty())
            storeElsewhere(key, others);
        click("OK");
        QTRY_COMPARE(back.size(), 1);
        QVERIFY(!m_window->isVisible());
        QCOMPARE(m_store->stringValue(key), expected);
        QCOMPARE(QSettings(m_store->settings().fileName(), QSettings::IniFormat).value(key),
                 QVariant(expected));
    }

    void defaultsComeBack()
    {
        for (const char *key :
             {"default_path_open", "default_path_save", "default_video_format",
              "default_audio_format", "default_instrument", "default_video_player",
              "default_audio_player", "settings_gui_scale"})
            m_store->settings().setValue(key, "1.2");
        m_store->settings().setValue("SongTrimlet", "kept");
        m_window->openWindow();
        QSignalSpy shown(m_window.get(), &Settings::setProgramSettings);
        click("Restore Default Settings");
        QTRY_COMPARE(shown.size(), 1);
        QCOMPARE(shown.constFirst().constFirst().toMap().value("default_audio_player"),
                 QVariant("Default Audio Player"));
        QCOMPARE(m_store->settings().allKeys(), QStringList("SongTrimlet"));
        QCOMPARE(m_window->maximumSize(), QSize(540, 670));
        QVERIFY(m_window->isVisible());
    }

    /// Whatever cannot be saved is told, and nothing that the user typed is lost.
    void unsavedIsTold()
    {
        QDir().mkpath("blocked.ini");
        useFile(m_folder->filePath("blocked.ini"));
        RecordedMessages messages;
        m_window->openWindow();
        m_answer = writeFile("player.exe");
        const QList<std::function<void()>> actions{
            [this] {
                m_window->save(QVariantMap{{"default_instrument", "Bass"}});
            },
            [this] { m_window->saveScf(1.1); },
            [this] { m_window->checkPathIsExisted("Song Trimlet", "audio"); },
            [this] { m_window->defaultSettings(); }};
        for (const auto &act : actions) {
            act();
            QCOMPARE(messages.take(),
                     QStringList("Option Settings: The settings could not be saved to the file:\n\n"
                                 + QDir::toNativeSeparators(m_folder->filePath("blocked.ini"))));
            QVERIFY(m_window->isVisible());
        }
    }

    void typedFolders_data()
    {
        const Rows<QString, bool> add;
        add("with spaces", "HERE/my own songs", true);
        add("trailing separator", "HERE/ends/", true);
        add("relative", "my songs", true);
        add("parent missing", "HERE/no/folder", false);
        add("missing drive", "/Z:/music", false);
        add("a file", QCoreApplication::applicationFilePath(), false);
        add("cannot be written to", "/proc", false);
        add("emptied", "", false);
    }

    /// Stored as typed; a folder that cannot be used is told before any work begins.
    void typedFolders()
    {
        const auto [pattern, isUsable] = fetchRow<QString, bool>();
        const QString typed = QString(pattern).replace("HERE", m_folder->path());
        m_window->openWindow();
        m_window->save(QVariantMap{{"default_path_save", typed}});
        QCOMPARE(m_store->stringValue("default_path_save"), typed);
        const QString problem = unusableFolder(m_store->defaultPathSave(), m_folder->path());
        QCOMPARE(problem.isEmpty(), isUsable);
        QVERIFY(isUsable || problem.contains("settings"));
    }

    void resultsInARelativeFolderAreOpenedByTheirWholePath()
    {
        OpenedUrls opened;
        openInPlayer(*m_store, "my songs/a.wav");
        QCOMPARE(opened.take(), QStringList(QDir::current().filePath("my songs/a.wav")));
    }

    void folderDialog()
    {
        QSignalSpy updates(m_window.get(), &Settings::updatePathField);
        for (const char *answer : {"", "/old", "/new"}) {
            m_answer = answer;
            m_window->chooseNewPath("default_path_save", "/old");
        }
        QCOMPARE(m_asked, QStringList(3, "Please Select a new folder|/old"));
        QCOMPARE(updates, QList<QVariantList>({{"/new", "default_path_save"}}));
        QVERIFY(m_store->settings().allKeys().isEmpty());
    }

    void players_data()
    {
        const Rows<QString, QString, QStringList, QString, QString, bool> add;
        const QString six = "C:/Program Files/Song Trimlet 6/SongTrimlet6.exe";
        const QString five = "C:/Program Files (x86)/Song Trimlet 5/SongTrimlet5.exe";
        const QString two = "C:/Program Files (x86)/Video Trimlet 2/Video Trimlet 2.exe";
        const QString joined = "C:/Program Files (x86)/SongTrimlet5/SongTrimlet5.exe";
        const QString half = "C:/Program Files/SongTrimlet6/Song Trimlet 6.exe";
        add("system's video player", "Default Video Player", "", {}, "", "", false);
        add("system's audio player", "Default Audio Player", "", {}, "", "", false);
        add("newest", "Song Trimlet", "", {five, joined, six}, "", six, false);
        add("older", "Song Trimlet", "", {five}, "", five, false);
        add("without blanks", "Song Trimlet", "", {joined}, "", joined, false);
        add("folder without blanks", "Song Trimlet", "", {half}, "", half, false);
        add("last place", "Video Trimlet", "", {two}, "", two, false);
        add("stored", "Song Trimlet", "mine.exe", {"mine.exe", six}, "", "mine.exe", false);
        add("stored one deleted", "Song Trimlet", "mine.exe", {six}, "", six, false);
        add("told", "Video Trimlet", "", {"v.exe"}, "v.exe", "v.exe", true);
        add("told wrongly", "Video Trimlet", "", {}, "v.exe", "", true);
        add("given up", "Video Trimlet", "old.exe", {}, "", "old.exe", true);
    }

    void players()
    {
        const auto [player, before, installed, answer, expected, isAsked] =
            fetchRow<QString, QString, QStringList, QString, QString, bool>();
        const QString key = QString(player).remove(' ');
        if (!before.isEmpty())
            m_store->settings().setValue(key, before);
        for (const QString &path : installed) {
            QDir().mkpath(QFileInfo(path).path());
            writeFile(path);
        }
        m_answer = answer;
        QSignalSpy resets(m_window.get(), &Settings::resetOpening);
        m_window->checkPathIsExisted(player, "video");
        QCOMPARE(m_store->stringValue(key), expected);
        QCOMPARE(m_asked,
                 isAsked ? QStringList("Please select where Video Trimlet installed|"
                                       "C:/Program Files/|Video Trimlet exe file (*.exe)")
                         : QStringList());
        const bool isReset = isAsked && installed.isEmpty();
        QCOMPARE(resets, isReset ? QList<QVariantList>({{"video"}}) : QList<QVariantList>());
    }

private:
    /// As another process would: beside, then renamed.
    void storeElsewhere(const QString &key, const QString &value)
    {
        const QString file = m_store->settings().fileName();
        QSettings other(file + ".other", QSettings::IniFormat);
        other.setValue(key, value);
        other.sync();
        QVERIFY(QFile::remove(file) && QFile::rename(file + ".other", file));
    }

    void useFile(const QString &file)
    {
        m_window.reset();
        m_store = std::make_unique<ProgramData>(file);
        const auto answer = [this](const QString &question) {
            m_asked << question;
            return m_answer;
        };
        const FileDialogs dialogs{
            [answer](const QString &caption, const QString &folder) {
                return answer(caption + '|' + folder);
            },
            [answer](const QString &caption, const QString &folder, const QString &filter) {
                return answer(caption + '|' + folder + '|' + filter);
            }};
        m_window = std::make_unique<Settings>(*m_store, dialogs);
    }

    /// The view's last button of that text.
    [[nodiscard]] QQuickItem *button(const QString &text) const
    {
        QQuickItem *found = nullptr;
        const auto items = m_window->rootObject()->findChildren<QQuickItem *>();
        for (QQuickItem *item : items) {
            if (item->inherits("QQuickAbstractButton") && item->property("text") == text)
                found = item;
        }
        return found;
    }

    void click(const QString &text)
    {
        const QQuickItem *target = button(text);
        QVERIFY(target);
        const QPointF centre(target->width() / 2, target->height() / 2);
        QTest::mouseClick(m_window.get(), Qt::LeftButton, {}, target->mapToScene(centre).toPoint());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<Settings> m_window;
    QStringList m_asked;
    QString m_answer;
};

TEKO_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
