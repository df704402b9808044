// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/programdata.h"
#include "settings/settings.h"
#include "tests/support/files.h"
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

    /// "OK" in the view, after the window was opened over that value and, perhaps, another program
    /// has changed it before or meanwhile.
    void okStores_data()
    {
        const Rows<QString, QString, QString, QString, bool> add;
        add("not set", "default_instrument", "none", "", "none", false);
        add("a choice", "default_video_format", "WEBM", "", "WEBM", false);
        add("an unknown format", "default_audio_format", "OGG", "", "OGG", false);
        add("a folder that is gone", "default_path_save", "/nowhere/a", "", "/nowhere/a", false);
        add("another program's choice", "default_instrument", "Bass", "Piano", "Piano", false);
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

    /// Nothing that could not be saved counts, and nothing that was typed is lost.
    void failedSaves()
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
            [this] { m_window->checkPathIsExisted("Song Trimlet", "audio"); }};
        for (const auto &act : actions) {
            act();
            QVERIFY(messages.take().join("").startsWith("Option Settings: The settings could not"));
            QVERIFY(m_window->isVisible());
        }
        QCOMPARE(m_window->maximumSize(), QSize(540, 670));
        m_window->cancel();
        QCOMPARE(m_store->settings().allKeys(), QStringList());
    }

    void players_data()
    {
        const Rows<QString, QString, QStringList, QString, QString, bool> add;
        const QString six = "C:/Program Files/Song Trimlet 6/SongTrimlet6.exe";
        const QString five = "C:/Program Files (x86)/Song Trimlet 5/SongTrimlet5.exe";
        const QString two = "C:/Program Files (x86)/Video Trimlet 2/Video Trimlet 2.exe";
        const QString joined = "C:/Program Files (x86)/SongTrimlet5/SongTrimlet5.exe";
        add("system's video player", "Default Video Player", "", {}, "", "", false);
        add("newest", "Song Trimlet", "", {five, joined, six}, "", six, false);
        add("older", "Song Trimlet", "", {five}, "", five, false);
        add("without blanks", "Song Trimlet", "", {joined}, "", joined, false);
        add("last place", "Video Trimlet", "", {two}, "", two, false);
        add("stored", "Song Trimlet", "mine.exe", {"mine.exe", six}, "", "mine.exe", false);
        add("stored one deleted", "Song Trimlet", "mine.exe", {six}, "", six, false);
        add("named by the user", "Video Trimlet", "", {"v.exe"}, "v.exe", "v.exe", true);
        add("named wrongly", "Video Trimlet", "", {}, "v.exe", "", true);
        add("dialog cancelled", "Video Trimlet", "old.exe", {}, "", "old.exe", true);
    }

    void players()
    {
#ifdef Q_OS_WIN
        QSKIP("It would make files in the real folder of programs.");
#endif
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

TEKO_TEST(TestSettings)
#include "tst_settings.moc"
