// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archivejob.h"
#include "archive/archiverequest.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

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
    void records_data()
    {
        const Rows<QByteArray, QByteArray, bool> add;
        add("whole", "", "", true);
        add("id as text", "17", "\"17\"", true);
        add("no name", "\"name\"", "\"nom\"", false);
        add("object as name", "\"Song\"", "{\"a\":[1]}", false);
        add("no instrument", "\"instrument\"", "\"x\"", false);
        add("no extension", "\"extension\"", "\"x\"", false);
        add("no object", whole, "7", false);
    }

    void records()
    {
        const auto [from, to, isUsable] = fetchRow<QByteArray, QByteArray, bool>();
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

    void namesOfFiles_data()
    {
        const Rows<QString, QString, bool> add;
        for (const QString good : {"Song", "Song..final", "..", "Aux", "\xc3\x9c %1 %2", "CON"})
            add("name " + good, good, "vocals", true);
        for (const QString unixName : {"A: side", "<img src=x>", "c:x"})
            add("name " + unixName, unixName, "vocals", QDir::separator() == u'/');
        for (const QString bad : {"../Song", "a/b", "a\\b", "\\\\host\\share", "a\nb", "a\x7f"}) {
            add("name " + bad, bad, "vocals", false);
            add("instrument " + bad, "Song", bad, false);
        }
        for (const QString bad : {"..", ".", "C:vocals", "CON", "nul.tar", "Lpt1", "com1 "})
            add("instrument " + bad, "Song", bad, false);
    }

    void namesOfFiles()
    {
        const auto [name, instrument, isPlain] = fetchRow<QString, QString, bool>();
        ArchiveRecord record = song("mp3");
        record.name = name;
        record.instrument = instrument;
        QCOMPARE(canNameFiles(record), isPlain);
        QCOMPARE(archivePaths("S", record, "mp3") == ResultPaths(), !isPlain);
        for (const char *bad : {"mp3/x", "a.b", "..", "mp3 ", "m:3"})
            QVERIFY2(!canNameFiles(song(bad)), bad);
    }

    void rows_data()
    {
        const Rows<ArchiveRecord, QStringList, QString, QString, bool> add;
        const QString main = "S/vocals - Song.";
        const QString mix = "S/Mix Without vocals - Song.";
        add("nothing here", song("mp3", "/a.mp4"), {}, "download", "download", false);
        add("instrument here", song("mp3"), {main + "mp3"}, "play", "download", false);
        add("mix here", song("mp3"), {mix + "mp3"}, "download", "play", false);
        add("another format here", song("mp3"), {main + "wav"}, "download", "download", false);
        add("video in upper case", song("mp3", "/a.MP4"), {"/a.MP4"}, "download", "download", true);
        add("song as source", song("mp3", "/a.mp3"), {"/a.mp3"}, "download", "download", false);
        add("address of a video", song("mp3", "http://h/a.mp4"), {"http://h/a.mp4"}, "download",
            "download", false);
        add("relative path of a video", song("mp3", "a.mp4"), {"a.mp4"}, "download", "download",
            false);
        add("both videos here", song("avi"), {main + "avi", mix + "avi"}, "play", "play", true);
        add("one video here", song("mp4"), {main + "mp4"}, "play", "download", false);
    }

    void rows()
    {
        const auto [record, files, instrument, mix, isVideo] =
            fetchRow<ArchiveRecord, QStringList, QString, QString, bool>();
        const QVariantMap row =
            archiveRow(record, archivePaths("S", record, record.extension), true, only(files));
        QCOMPARE(row.value("btnInstrument").toString(), instrument);
        QCOMPARE(row.value("btnMix").toString(), mix);
        QCOMPARE(row.value("isVideo").toBool(), isVideo);
        QCOMPARE(row.value("demoUser"), QVariant("yes"));
        QCOMPARE(archiveRow(record, {}, false, only({""})).value("demoUser"), QVariant("no"));
    }

    void jobs_data()
    {
        using Action = ArchiveJob::Action;
        const Rows<ArchiveRecord, QStringList, QString, Action> add;
        const QString mp3 = "S/Mix Without vocals - Song.mp3";
        const QString mp4 = "S/Mix Without vocals - Song.mp4";
        add("here", song("mp3"), {mp3}, "mp3", Action::Play);
        add("only the other result here", song("mp3"), {"S/vocals - Song.mp3"}, "mp3",
            Action::Download);
        add("stored here", song("mp3"), {mp3}, "flac", Action::Convert);
        add("stored missing", song("mp3"), {}, "wav", Action::Download);
        add("video of a song without video", song("mp3", "/a.mp4"), {mp3}, "mkv", Action::Refuse);
        add("video of a song with video", song("mp3", "/a.MP4"), {mp3, "/a.MP4"}, "mkv",
            Action::Convert);
        add("video to download", song("mp3", "/a.mp4"), {"/a.mp4"}, "mp4", Action::Download);
        add("video from a kind that no result has", song("mp3", "/a.avi"), {mp3, "/a.avi"}, "mkv",
            Action::Refuse);
        add("video from a stored one", song("mp4"), {mp4}, "mkv", Action::Convert);
        add("stored extension in upper case", song("MP4"), {"S/Mix Without vocals - Song.MP4"},
            "mkv", Action::Refuse);
        add("sound of a video that is gone", song("mp4", "/a.mp4"), {}, "mp3", Action::Download);
    }

    void jobs()
    {
        const auto [record, files, format, action] =
            fetchRow<ArchiveRecord, QStringList, QString, ArchiveJob::Action>();
        const QString path = "S/Mix Without vocals - Song.";
        QCOMPARE(archiveJob(record, path + record.extension, path + format, only(files)),
                 (ArchiveJob{action, path + record.extension, path + format}));
    }

    void originals_data()
    {
        const Rows<bool> add;
        for (const char *good : {"/in/Song.mp4", "/in/a:b/Song.MP3", "/in/http:/Song.vob"})
            add(good, true);
        for (const char *bad :
             {"", "/", "Song.mp4", "../Song.mp4", "http://h/Song.mp4", "file:///in/Song.mp4",
              "concat:/in/a.mp3|/in/b.mp3", "//host/share/Song.mp3", "\\\\host\\share\\Song.mp3",
              ":/qml/Song.mp3", "/in/Song", "/in/mp3", "/etc/passwd", "/in/list.m3u8"})
            add(bad, false);
    }

    /// Paths that cannot be the user's file are never accessed.
    void originals()
    {
        const auto [isOne] = fetchRow<bool>();
        int looks = 0;
        const auto everything = [&](const QString &) { return ++looks > 0; };
        QCOMPARE(isOriginalHere(QTest::currentDataTag(), everything), isOne);
        QCOMPARE(looks, isOne ? 1 : 0);
    }

    void fullRuns_data()
    {
        const Rows<ArchiveRecord, QString, FullRun> add;
        add("sound", song("flac", "/gone.mp4"), "WAV", {"/gone.mp4", "flac"});
        add("video here", song("mp4", "/a.mp4"), "WAV", {"/a.mp4", "mp4"});
        add("video gone", song("vob", "/gone.mp4"), "WAV", {"/gone.mp4", "wav"});
        add("video gone, none chosen", song("mp4", "/gone.mp4"), "none", {"/gone.mp4", "mp3"});
        add("video gone, upper case", song("MP4", "/gone.mp4"), "WAV", {"/gone.mp4", "MP4", true});
        add("address of a song", song("mp3", "http://h/a.mp3"), "WAV", {"Song.mp3", "mp3"});
        add("address of a video", song("mp4", "http://h/a.mp4"), "WAV", {"Song.wav", "wav"});
        add("no path", song("mp3"), "WAV", {"Song.mp3", "mp3"});
    }

    void fullRuns()
    {
        const auto [record, chosen, run] = fetchRow<ArchiveRecord, QString, FullRun>();
        QCOMPARE(fullRun(record, chosen, only({"/a.mp4", "http://h/a.mp4"})), run);
    }
};

TEKO_TEST(TestArchiveRules)
#include "tst_archiverules.moc"
