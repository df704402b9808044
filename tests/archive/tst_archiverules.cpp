// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/archiverequest.h"
#include "archive/archivejob.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

const QByteArray whole =
    R"({"name":"Song","deleted":"2026-12-21","instrument":"vocals","extension":"mp3",
    "demoFile":"no","local_file_path":"/in/Song.mp4","ai_id":17})";

ArchiveAnswer answer(const QByteArray &body)
{
    return archiveAnswer({AccountAnswer::Kind::Answered, QString::fromUtf8(body)});
}

ArchiveRecord song(const QString &extension, const QString &original = {})
{
    return {"Song", "soon", "vocals", extension, "no", original, 17};
}

FileTest only(const QStringList &files)
{
    return [files](const QString &path) { return files.contains(path); };
}

} // namespace

class TestArchiveRules : public TestCase
{
    Q_OBJECT

private slots:
    void replies_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("records");
        const auto row = [](const char *name, const QByteArray &body, const QString &error,
                            int records) { QTest::newRow(name) << body << error << records; };
        row("nothing kept", "[]", "", 0);
        row("records", '[' + whole + ',' + whole + ']', "", 2);
        row("refusal", "You are <b>not</b> signed in.", "You are <b>not</b> signed in.", 0);
        row("object", "{}", "{}", 0);
        row("nothing", " \n", "The service gave an empty answer.", 0);
        row("cut JSON", "[" + whole, "[" + QString::fromUtf8(whole), 0);
        row("far too deep", QByteArray(40000, '[') + QByteArray(40000, ']'), "*left out.)", 0);
        row("far too long", '[' + QByteArray(longestArchive, ' ') + ']', "*too long*", 0);
    }

    void replies()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, error);
        const ArchiveAnswer got = answer(body);
        QVERIFY2(isLike(got.error, error), qPrintable(got.error));
        QTEST(int(got.records.size()), "records");
    }

    void records_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<bool>("isUsable");
        const auto row = [](const char *name, const QByteArray &from, const QByteArray &to,
                            bool isUsable) { QTest::newRow(name) << from << to << isUsable; };
        row("whole", "", "", true);
        row("id as text", "17", "\"17\"", true);
        row("id with a fraction", "17", "17.5", false);
        row("id too large", "17", "99999999999", false);
        row("negative id", "17", "-1", false);
        row("null id", "17", "null", false);
        row("list as id", "17", "[17]", false);
        row("no name", "\"name\"", "\"nom\"", false);
        row("empty name", "\"Song\"", "\"\"", false);
        row("object as name", "\"Song\"", "{\"a\":[1]}", false);
        row("no instrument", "\"instrument\"", "\"x\"", false);
        row("no extension", "\"extension\"", "\"x\"", false);
        row("no object", whole, "7", false);
        row("null", whole, "null", false);
        row("list", whole, "[[[]]]", false);
    }

    void records()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(bool, isUsable);
        QByteArray changed = whole;
        if (!from.isEmpty())
            changed.replace(from, to);
        const ArchiveRecords got =
            archiveRecords(answer('[' + changed + ',' + whole + ']').records);
        const ArchiveRecord expected{"Song", "2026-12-21",   "vocals", "mp3",
                                     "no",   "/in/Song.mp4", 17};
        QCOMPARE(got.usable, QList<ArchiveRecord>(isUsable ? 2 : 1, expected));
        QCOMPARE(got.leftOut, isUsable ? 0 : 1);
        QCOMPARE(got.problems.size(), isUsable ? 0 : 1);
    }

    void onlyTheFirstProblemsAreTold()
    {
        const ArchiveRecords got = archiveRecords(QVariantList(100000, 7));
        QCOMPARE(got.leftOut, 100000);
        QVERIFY(got.problems.size() < 100);
    }

    void namesOfFiles_data()
    {
        QTest::addColumn<bool>("isPlain");
        for (const char *good : {"Song", "Song..final", "..b", "Console", "COM10", "<img src=x>",
                                 "\xc3\x9c %1 %2", "1999", "Part 2: home"})
            QTest::newRow(good) << true;
        for (const char *bad :
             {"..", ".", "../Song", "a/b", "/etc/Song", "a\\b", "\\\\host\\share", "C:Song",
              "c:\\Song", "CON", "nul.tar", "Lpt1", "com1 ", "a\nb", "a\tb", "a\x7f"})
            QTest::newRow(bad) << false;
    }

    void namesOfFiles()
    {
        QFETCH(bool, isPlain);
        const QString part = QString::fromUtf8(QTest::currentDataTag());
        ArchiveRecord inName = song("mp3");
        inName.name = part;
        ArchiveRecord inInstrument = song("mp3");
        inInstrument.instrument = part;
        for (const ArchiveRecord &record : {inName, inInstrument}) {
            QCOMPARE(canNameFiles(record), isPlain);
            QCOMPARE(archivePaths("S", record, "mp3") == ResultPaths(), !isPlain);
            const QVariantMap row = archiveRow(record, "S", false, [](auto &) { return true; });
            QCOMPARE(row.value("isUsable").toBool(), isPlain);
        }
        for (const char *bad : {"mp3/x", "a.b", "..", "mp3 ", "m:3", "con"})
            QVERIFY2(!canNameFiles(song(bad)), bad);
    }

    void rows_data()
    {
        QTest::addColumn<ArchiveRecord>("record");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("instrument");
        QTest::addColumn<QString>("mix");
        QTest::addColumn<bool>("isVideo");
        const auto row = [](const char *name, const ArchiveRecord &record, const QStringList &files,
                            const QString &instrument, const QString &mix, bool isVideo) {
            QTest::newRow(name) << record << files << instrument << mix << isVideo;
        };
        const QString main = "S/vocals - Song.";
        const QString mix = "S/Mix Without vocals - Song.";
        row("nothing here", song("mp3", "/a.mp4"), {}, "download", "download", false);
        row("instrument here", song("mp3"), {main + "mp3"}, "play", "download", false);
        row("mix here", song("mp3"), {mix + "mp3"}, "download", "play", false);
        row("another format here", song("mp3"), {main + "wav"}, "download", "download", false);
        row("film in upper case", song("mp3", "/a.MP4"), {"/a.MP4"}, "download", "download", true);
        row("song as source", song("mp3", "/a.mp3"), {"/a.mp3"}, "download", "download", false);
        row("address of a film", song("mp3", "http://h/a.mp4"), {"http://h/a.mp4"}, "download",
            "download", false);
        row("relative path of a film", song("mp3", "a.mp4"), {"a.mp4"}, "download", "download",
            false);
        row("both films here", song("avi"), {main + "avi", mix + "avi"}, "play", "play", true);
        row("one film here", song("mp4"), {main + "mp4"}, "play", "download", false);
    }

    void rows()
    {
        QFETCH(ArchiveRecord, record);
        QFETCH(QStringList, files);
        const QVariantMap row = archiveRow(record, "S", true, only(files));
        QTEST(row.value("btnInstrument").toString(), "instrument");
        QTEST(row.value("btnMix").toString(), "mix");
        QTEST(row.value("isVideo").toBool(), "isVideo");
        QCOMPARE(row.value("demoUser"), QVariant("yes"));
        QCOMPARE(archiveRow(record, {}, false, only({""})).value("demoUser"), QVariant("no"));
    }

    void jobs_data()
    {
        using Action = ArchiveJob::Action;
        QTest::addColumn<ArchiveRecord>("record");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("format");
        QTest::addColumn<Action>("action");
        const auto row = [](const char *name, const ArchiveRecord &record, const QStringList &files,
                            const QString &format, Action action) {
            QTest::newRow(name) << record << files << format << action;
        };
        const QString mp3 = "S/Mix Without vocals - Song.mp3";
        const QString mp4 = "S/Mix Without vocals - Song.mp4";
        row("here", song("mp3"), {mp3}, "mp3", Action::Play);
        row("only the other result here", song("mp3"), {"S/vocals - Song.mp3"}, "mp3",
            Action::Download);
        row("stored here", song("mp3"), {mp3}, "flac", Action::Convert);
        row("stored missing", song("mp3"), {}, "wav", Action::Download);
        row("film of a song without film", song("mp3", "/a.mp4"), {mp3}, "mkv", Action::Refuse);
        row("film of a song with film", song("mp3", "/a.MP4"), {mp3, "/a.MP4"}, "mkv",
            Action::Convert);
        row("film to download", song("mp3", "/a.mp4"), {"/a.mp4"}, "mp4", Action::Download);
        row("film from a kind that no result has", song("mp3", "/a.avi"), {mp3, "/a.avi"}, "mkv",
            Action::Refuse);
        row("film from a stored one", song("mp4"), {mp4}, "mkv", Action::Convert);
        row("stored extension in upper case", song("MP4"), {"S/Mix Without vocals - Song.MP4"},
            "mkv", Action::Refuse);
        row("sound of a film that is gone", song("mp4", "/a.mp4"), {}, "mp3", Action::Download);
    }

    void jobs()
    {
        QFETCH(ArchiveRecord, record);
        QFETCH(QStringList, files);
        QFETCH(QString, format);
        QFETCH(ArchiveJob::Action, action);
        const QString path = "S/Mix Without vocals - Song.";
        QCOMPARE(archiveJob(record, "S", true, format, only(files)),
                 (ArchiveJob{action, path + record.extension, path + format}));
    }

    void originals_data()
    {
        QTest::addColumn<bool>("isOne");
        for (const char *good : {"/in/Song.mp4", "/in/a:b/Song.MP3", "/in/http:/Song.vob"})
            QTest::newRow(good) << true;
        for (const char *bad :
             {"", "/", "Song.mp4", "../Song.mp4", "http://h/Song.mp4", "file:///in/Song.mp4",
              "concat:/in/a.mp3|/in/b.mp3", "//host/share/Song.mp3", "\\\\host\\share\\Song.mp3",
              ":/qml/Song.mp3", "/in/Song", "/in/mp3", "/etc/passwd", "/in/list.m3u8"})
            QTest::newRow(bad) << false;
    }

    /// What cannot be the user's file is not even looked for.
    void originals()
    {
        QFETCH(bool, isOne);
        int looks = 0;
        const auto everything = [&](const QString &) { return ++looks > 0; };
        QCOMPARE(isOriginalHere(QTest::currentDataTag(), everything), isOne);
        QCOMPARE(looks, isOne ? 1 : 0);
    }

    void fullRuns_data()
    {
        QTest::addColumn<ArchiveRecord>("record");
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<FullRun>("run");
        const auto row = [](const char *name, const ArchiveRecord &record, const char *chosen,
                            const FullRun &run) { QTest::newRow(name) << record << chosen << run; };
        row("sound", song("flac", "/gone.mp4"), "WAV", {"/gone.mp4", "flac"});
        row("film here", song("mp4", "/a.mp4"), "WAV", {"/a.mp4", "mp4"});
        row("film gone", song("vob", "/gone.mp4"), "WAV", {"/gone.mp4", "wav"});
        row("film gone, none chosen", song("mp4", "/gone.mp4"), "none", {"/gone.mp4", "mp3"});
        row("film gone, upper case", song("MP4", "/gone.mp4"), "WAV", {"/gone.mp4", "MP4", true});
        row("address of a song", song("mp3", "http://h/a.mp3"), "WAV", {"Song.mp3", "mp3"});
        row("address of a film", song("mp4", "http://h/a.mp4"), "WAV", {"Song.wav", "wav"});
        row("no path", song("mp3"), "WAV", {"Song.mp3", "mp3"});
    }

    void fullRuns()
    {
        QFETCH(ArchiveRecord, record);
        QFETCH(QString, chosen);
        QTEST(fullRun(record, chosen, only({"/a.mp4", "http://h/a.mp4"})), "run");
    }
};

TEKO_TEST_MAIN(TestArchiveRules)
#include "tst_archiverules.moc"
