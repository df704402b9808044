// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/base/programdata.h"
#include "settings/settings.h"
#include "settings/siblingprograms.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

const QStringList keys{"default_path_open",    "default_path_save",  "default_video_format",
                       "default_audio_format", "default_instrument", "default_video_player",
                       "default_audio_player", "settings_gui_scale"};

void makeFile(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
}

} // namespace

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
        QDir::setCurrent(QDir::rootPath());
    }

    void opening_data()
    {
        QTest::addColumn<QVariant>("scale");
        QTest::addColumn<double>("shown");
        QTest::addColumn<QSize>("size");
        QTest::newRow("nothing stored") << QVariant() << 1.0 << QSize(540, 670);
        QTest::newRow("small") << QVariant(0.6) << 0.6 << QSize(324, 402);
        QTest::newRow("truncated") << QVariant(1.33) << 1.33 << QSize(718, 891);
        QTest::newRow("large") << QVariant(1.5) << 1.5 << QSize(810, 1005);
        QTest::newRow("edited by hand") << QVariant("abc") << 1.0 << QSize(540, 670);
        QTest::newRow("unusable") << QVariant(50) << 1.5 << QSize(810, 1005);
    }

    void opening()
    {
        QFETCH(QVariant, scale);
        QFETCH(double, shown);
        QFETCH(QSize, size);
        if (scale.isValid())
            m_store->settings().setValue("settings_gui_scale", scale);
        QStringList events;
        connect(m_window.get(), &Settings::setProgramSettings, this, [&](const QVariant &data) {
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
    }

    /// "OK" in the view, after the window was opened over that value and, perhaps, another program
    /// has changed it before or meanwhile.
    void okStores_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("others");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("isBefore");
        const auto row = [](const char *name, const char *key, const char *stored,
                            const char *others, const char *expected, bool isBefore = false) {
            QTest::newRow(name) << key << stored << others << expected << isBefore;
        };
        row("not set", "default_instrument", "none", "", "none");
        row("a choice", "default_video_format", "WEBM", "", "WEBM");
        row("an unknown format", "default_audio_format", "OGG", "", "OGG");
        row("an unknown player", "default_video_player", "Winamp", "", "Winamp");
        row("a folder that is gone", "default_path_save", "/nowhere/music", "", "/nowhere/music");
        row("a folder as typed", "default_path_open", "my  songs/", "", "my  songs/");
        row("another program's choice", "default_instrument", "Bass", "Piano", "Piano");
        row("another program's folder", "default_path_save", "/nowhere/a", "/nowhere/b",
            "/nowhere/b");
        row("another program's earlier choice", "default_instrument", "Bass", "Piano", "Piano",
            true);
    }

    void okStores()
    {
        QFETCH(QString, key);
        QFETCH(QString, stored);
        QFETCH(QString, others);
        QFETCH(QString, expected);
        QFETCH(bool, isBefore);
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
        for (const QString &key : keys)
            m_store->settings().setValue(key, key == "settings_gui_scale" ? "1.2" : "x");
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

    void theScaleCountsAtOnce()
    {
        m_window->openWindow();
        m_window->saveScf(1.25);
        QCOMPARE(m_store->guiScale(), 1.25);
        QCOMPARE(m_window->minimumSize(), QSize(675, 837));
        QCOMPARE(m_window->maximumSize(), QSize(675, 837));
        QCOMPARE(m_window->rootObject()->property("scf").toDouble(), 1.25);
    }

    /// Whatever cannot be saved is told, and nothing that the user typed is lost.
    void unsavedIsTold()
    {
        QDir().mkpath("blocked.ini");
        useFile(m_folder->filePath("blocked.ini"));
        RecordedMessages messages;
        m_window->openWindow();
        const QString text = "Option Settings: The settings could not be saved to the file:\n\n"
            + QDir::toNativeSeparators(m_folder->filePath("blocked.ini"));
        m_window->save(QVariantMap{{"default_instrument", "Bass"}});
        QCOMPARE(messages.take(), QStringList(text));
        QVERIFY(m_window->isVisible());
        m_window->saveScf(1.1);
        QCOMPARE(messages.take(), QStringList(text));
        makeFile("player.exe");
        m_answer = "player.exe";
        m_window->checkPathIsExisted("Song Trimlet", "audio");
        QCOMPARE(messages.take(), QStringList(text));
        m_window->defaultSettings();
        QCOMPARE(messages.take(), QStringList(text));
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

    void candidates()
    {
        const QStringList paths = siblingCandidates("Song Trimlet 6");
        QStringList expected;
        for (const char *root : {"C:/Program Files/", "C:/Program Files (x86)/"}) {
            for (const char *rest :
                 {"SongTrimlet6/SongTrimlet6.exe", "SongTrimlet6/Song Trimlet 6.exe",
                  "Song Trimlet 6/SongTrimlet6.exe", "Song Trimlet 6/Song Trimlet 6.exe"})
                expected << QLatin1String(root) + QLatin1String(rest);
        }
        QCOMPARE(paths, expected);
    }

    void players_data()
    {
        QTest::addColumn<QString>("player");
        QTest::addColumn<QString>("before"); // stored; it exists if it is installed
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("isAsked");
        const QString six = "C:/Program Files/Song Trimlet 6/SongTrimlet6.exe";
        const QString five = "C:/Program Files (x86)/Song Trimlet 5/SongTrimlet5.exe";
        const QString two = "C:/Program Files (x86)/Karaoke Trimlet 2/Karaoke Trimlet 2.exe";
        const auto row = [](const char *name, const char *player, const QString &before,
                            const QStringList &installed, const QString &answer,
                            const QString &expected, bool isAsked) {
            QTest::newRow(name) << player << before << installed << answer << expected << isAsked;
        };
        row("system's video player", "Default Video Player", "", {}, "", "", false);
        row("system's audio player", "Default Audio Player", "", {}, "", "", false);
        row("newest", "Song Trimlet", "", {five, six}, "", six, false);
        row("older", "Song Trimlet", "", {five}, "", five, false);
        row("last place", "Karaoke Trimlet", "", {two}, "", two, false);
        row("stored", "Song Trimlet", "mine.exe", {"mine.exe", six}, "", "mine.exe", false);
        row("stored one deleted", "Song Trimlet", "mine.exe", {six}, "", six, false);
        row("told", "Video Trimlet", "", {"v.exe"}, "v.exe", "v.exe", true);
        row("told wrongly", "Video Trimlet", "", {}, "v.exe", "", true);
        row("given up", "Video Trimlet", "old.exe", {}, "", "old.exe", true);
    }

    void players()
    {
        QFETCH(QString, player);
        QFETCH(QString, before);
        QFETCH(QStringList, installed);
        QFETCH(QString, answer);
        QFETCH(QString, expected);
        QFETCH(bool, isAsked);
        const QString key = QString(player).remove(' ');
        if (!before.isEmpty())
            m_store->settings().setValue(key, before);
        for (const QString &path : installed)
            makeFile(path);
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
