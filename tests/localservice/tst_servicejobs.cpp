// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/processing.h"
#include "localservice/api/servicestatus.h"
#include "localservice/base/refusal.h"
#include "stores.h"
#include "tests/support/rows.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <Poco/Data/Session.h>

#include <fstream>

/// The queue, its jobs and their files.
class TestServiceJobs final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        initialiseSecrets();
        m_dir = std::make_unique<QTemporaryDir>();
    }

    void runsInterruptedJobsAgain()
    {
        std::int32_t id = 0;
        std::string hash;
        {
            Stores stores(*m_dir);
            hash = stores.accounts.localSession();
            id = stores.addJob(stores.accounts.accountOf(hash)->id, "a.wav");
            const auto runner = stores.run(waitForCancel);
            QTRY_VERIFY(stores.stateOf(id) == JobState::Running);
        }
        Stores stores(*m_dir);
        QCOMPARE(stores.accounts.localSession(), hash);
        const Job kept = stores.jobs.find(id).value();
        QCOMPARE(kept.instrument, std::string("drums"));
        QVERIFY(kept.state == JobState::Queued);
        QVERIFY(stores.uploads.find(kept.account, "a.wav"));
        QVERIFY(stores.startNext()); // as a service that was killed leaves it
        const auto runner = stores.run(copyTwice);
        QTRY_VERIFY(stores.stateOf(id) == JobState::Ready);
        QVERIFY(std::filesystem::exists(stores.folder.mixResult(stores.jobs.find(id)->token)));
    }

    void keepsItsFilesPrivate()
    {
        if (QDir::separator() != u'/')
            QSKIP("On Windows that is the user's folder's matter.");
        const QDir data(m_dir->filePath("data"));
        QVERIFY(data.mkpath("."));
        const auto anybody = QFile::ReadOther | QFile::ReadGroup;
        for (const char *name : {"service.db.damaged-1", "reserve", "service.log", "holiday.txt"}) {
            QFile file(data.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.setPermissions(anybody));
        }
        const Stores stores(*m_dir);
        QStringList others;
        for (const QFileInfo &file : data.entryInfoList(QDir::Files)) {
            if (file.permissions() & anybody)
                others << file.fileName();
        }
        QCOMPARE(others, QStringList("holiday.txt"));
    }

    void findsTheJobOfAnEqualUpload()
    {
        Stores stores(*m_dir);
        const std::int32_t id = stores.addJob(stores.addAccount("a@b"), "a.wav");
        Job equal = *stores.jobs.find(id);
        Job demo = equal;
        demo.demo = true;
        QVERIFY(!stores.jobs.findDuplicate(demo, "a.wav"));
        QVERIFY(!stores.jobs.findDuplicate(equal, "b.wav"));
        QVERIFY(stores.startNext());
        QVERIFY(stores.jobs.findDuplicate(equal, "a.wav"));
        equal.account = stores.addAccount("b@b");
        QVERIFY(!stores.jobs.findDuplicate(equal, "a.wav"));
        equal.account = stores.jobs.find(id)->account;
        QVERIFY(stores.jobs.move(id, JobState::Running, JobState::Ready));
        QVERIFY(!stores.jobs.findDuplicate(equal, "a.wav"));
    }

    /// As a service leaves its jobs that is killed while they run.
    void failsAJobThatTakesTheServiceDownTwice()
    {
        std::int32_t id = 0;
        for (const JobState state : {JobState::Queued, JobState::Queued, JobState::Failed}) {
            Stores stores(*m_dir);
            if (id == 0)
                id = stores.addJob(stores.addAccount("a@b"), "a.wav");
            (void)stores.run({}, 0);
            QVERIFY(stores.stateOf(id) == state);
            if (state != JobState::Queued)
                break;
            // A separator that fails meanwhile is no end of the service.
            QVERIFY(stores.startNext());
            QVERIFY(stores.jobs.move(id, JobState::Running, JobState::Queued));
            QVERIFY(stores.startNext());
        }
        Stores stores(*m_dir);
        QVERIFY(stores.jobs.find(id)->reason.find("ended unexpectedly") != std::string::npos);
    }

    void triesAFailedSeparatorOnceMore_data()
    {
        const Rows<int, JobState> add;
        add("it fails once", 1, JobState::Ready);
        add("it fails again", 2, JobState::Failed);
    }

    void triesAFailedSeparatorOnceMore()
    {
        const auto [failures, end] = fetchRow<int, JobState>();
        Stores stores(*m_dir);
        const std::int32_t id = stores.addJob(stores.addAccount("a@b"), "a.wav");
        std::atomic<int> calls = 0;
        const auto runner =
            stores.run([&calls, most = failures](const SeparationTask &task, JobControl &control) {
                if (++calls <= most)
                    throw SeparatorFailed("It failed.");
                return copyTwice(task, control);
            });
        QTRY_VERIFY(stores.stateOf(id) == end);
        QCOMPARE(calls.load(), 2);
        QCOMPARE(stores.jobs.find(id)->reason, std::string(failures > 1 ? "It failed." : ""));
    }

    void limitsTheJobsOfAnAccount()
    {
        Stores stores(*m_dir);
        const auto runner = stores.run({}, 0);
        Authorizer authorizer(stores.accounts, stores.jobs);
        ArrivingFiles arriving;
        Processing processing(stores.database, stores.accounts, stores.uploads, stores.jobs,
                              *runner, authorizer, arriving, {}, "..");
        const RequestContext me{"", stores.accounts.localSession()};
        const std::int64_t account = processing.uploadAccount({}, me);
        const std::int32_t oldest = stores.addJob(account, "a.wav");
        const Fields form = Fields::fromForm("instrument=bass&version=full&fileName=a&extension=mp3"
                                             "&uploadedFileName=a.wav");
        const auto repeat = [&] { return std::stoi(processing.repeat(form, me)); };
        std::int32_t latest = 0;
        while (stores.jobs.countWaiting(account) < 200)
            latest = repeat();
        QVERIFY_EXCEPTION_THROWN((void)repeat(), Refusal);
        // Cancelled jobs make room, and are not remembered for ever.
        QVERIFY(runner->cancel(oldest));
        for (int i = 0; i < JobStore::maxUnsuccessful; ++i)
            QVERIFY(runner->cancel(repeat()));
        (void)repeat();
        QVERIFY(!stores.jobs.find(oldest));
        QVERIFY(stores.stateOf(latest) == JobState::Queued);
    }

    void discardsWhatADeadClientLeft()
    {
        Stores stores(*m_dir);
        const std::int64_t account = stores.addAccount("a@b");
        const Job demo = *stores.jobs.find(stores.addJob(account, "demo.wav", true));
        QVERIFY(stores.jobs.start(demo.id)
                && stores.jobs.move(demo.id, JobState::Running, JobState::Ready));
        const Job done = *stores.jobs.find(stores.addJob(account, "done.wav"));
        QVERIFY(stores.jobs.start(done.id)
                && stores.jobs.move(done.id, JobState::Running, JobState::Ready));
        const Job running = *stores.jobs.find(stores.addJob(account, "running.wav"));
        QVERIFY(stores.jobs.start(running.id));
        const Job waiting = *stores.jobs.find(stores.addJob(account, "waiting.wav"));
        const auto runner = stores.run(copyTwice, 1, true);
        for (const Job &job : {done, running, waiting})
            QVERIFY(!stores.hasFile(job.upload));
        QVERIFY(stores.hasFile(demo.upload));
        for (const Job &job : {running, waiting})
            QVERIFY(stores.stateOf(job.id) == JobState::Failed);
    }

    void setsADamagedDatabaseAside_data()
    {
        const Rows<qint64, int, QList<const char *>> add;
        add("no database at all", 0, 100, {});
        add("overwritten in the middle", 20000, 8000, {});
        add("emptied", 0, -1, {});
        add("no number for this computer's account", 0, 0,
            {"UPDATE settings SET value = 'x' WHERE name = 'local_account'"});
        add("a job's account gone", 0, 0, {"DELETE FROM users WHERE email = '0@b'"});
        add("another column", 0, 0, {"ALTER TABLE users RENAME email TO mail"});
        add("another table", 0, 0, {"DROP TABLE uploads", "CREATE TABLE uploads(x)"});
        add("whole", 0, 0, {});
    }

    void setsADamagedDatabaseAside()
    {
        const auto [offset, bytes, changes] = fetchRow<qint64, int, QList<const char *>>();
        std::filesystem::path upload;
        {
            Stores stores(*m_dir);
            (void)stores.accounts.localSession();
            const std::int32_t job = stores.addJob(stores.addAccount("0@b"), "a.wav");
            upload = stores.uploads.find(stores.jobs.find(job)->upload)->file;
            for (int i = 1; i < 100; ++i)
                stores.addAccount(std::to_string(i) + "@b");
            for (const char *change : QList{"PRAGMA foreign_keys = OFF"} + changes)
                stores.database.access().session << change, Poco::Data::Keywords::now;
        }
        QFile file(m_dir->filePath("data/service.db"));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.size() > offset + bytes);
        QVERIFY(bytes >= 0 || file.resize(0));
        QVERIFY(file.seek(offset) && file.write(QByteArray(std::max(bytes, 0), '?')) >= 0);
        file.close();
        const bool isDamaged = QTest::currentDataTag() != QByteArray("whole");
        Stores stores(*m_dir);
        (void)stores.run({}, 0);
        const std::string aside = stores.database.damagedFile().string();
        QCOMPARE(!aside.empty(), isDamaged);
        QCOMPARE(stores.accounts.openRecovery("9@b").has_value(), !isDamaged);
        QVERIFY(stores.accounts.accountOf(stores.accounts.localSession()));
        // The uploads stay with the rows that name them.
        const std::string date = isDamaged ? aside.substr(aside.find(".damaged")) : "";
        const std::filesystem::path home = stores.folder.database().parent_path();
        QVERIFY(std::filesystem::exists(home / ("uploads" + date) / upload));
        QCOMPARE(std::filesystem::is_empty(home / "uploads"), isDamaged);
    }

    void worksOnAFullDisk()
    {
        const SmallDisk disk(m_dir->path());
        if (!disk.isMounted()
            || QProcess::execute("mount", {"-o", "remount,size=8m", m_dir->path()}) != 0)
            QSKIP("Only an administrator can make a small disk.");
        Stores stores(*m_dir);
        const std::int64_t account = stores.addAccount("a@b");
        const std::string session = stores.accounts.openSession(account);
        const std::string second = stores.accounts.openSession(account);
        const Job job = *stores.jobs.find(stores.addJob(account, "a.wav"));
        const auto runner = stores.run(waitForCancel);
        QTRY_VERIFY(stores.stateOf(job.id) == JobState::Running);
        fillDisk();
        QVERIFY_EXCEPTION_THROWN(stores.addAccount(std::string(100000, 'x')), Poco::Exception);
        stores.accounts.closeSession(session);
        QVERIFY(!stores.accounts.accountOf(session));
        // An upload that does not fit gives its room back before its client has sent the rest.
        ArrivingFiles arriving;
        ReceivedFile file(stores.folder.upload(""), 1 << 30, arriving);
        file.begin(account, "b.wav", 1 << 30);
        QVERIFY_EXCEPTION_THROWN(file.write(std::string(1 << 24, 'x')), Refusal);
        QVERIFY(!std::filesystem::exists(file.path()));
        QCOMPARE(ServiceStatus(stores.database, stores.folder, 1).problem(),
                 std::string("The disk is full."));
        // Others take what the reserve has left.
        std::filesystem::remove(stores.folder.database().replace_filename("reserve"));
        fillDisk();
        stores.accounts.closeSession(second);
        QVERIFY(!stores.accounts.accountOf(second));
        QVERIFY(runner->cancel(job.id));
        stores.uploads.remove(account, "a.wav");
        QTRY_VERIFY(!stores.hasFile(job.upload));
    }

    void startsOnAFullDisk_data() { addNames({"with the reserve used up", "with no database"}); }

    void startsOnAFullDisk()
    {
        QFETCH(QString, name);
        const SmallDisk disk(m_dir->path());
        if (!disk.isMounted()
            || QProcess::execute("mount", {"-o", "remount,size=8m", m_dir->path()}) != 0)
            QSKIP("Only an administrator can make a small disk.");
        const std::string data = m_dir->filePath("data").toStdString();
        std::filesystem::path result;
        {
            Stores stores(*m_dir);
            const Job job = *stores.jobs.find(stores.addJob(stores.addAccount("a@b"), "a.wav"));
            const auto runner = stores.run(copyTwice);
            QTRY_VERIFY(stores.stateOf(job.id) == JobState::Ready);
            stores.database.access().session << "UPDATE jobs SET added = 0",
                Poco::Data::Keywords::now;
            result = stores.folder.mainResult(job.token);
        }
        std::filesystem::remove(data + (name == "with no database" ? "/service.db" : "/reserve"));
        fillDisk();
        Stores stores(*m_dir);
        (void)stores.run({}, 0);
        QVERIFY(!std::filesystem::exists(result));
        QCOMPARE(stores.database.damagedFile().empty(), name != "with no database");
    }

    void forgetsCancelledAndFailedWork_data()
    {
        addNames({"cancelled", "cancelled as it ends", "failed"});
    }

    void forgetsCancelledAndFailedWork()
    {
        QFETCH(QString, name);
        const bool fails = name == "failed";
        const bool ends = name == "cancelled as it ends";
        Stores stores(*m_dir);
        const SeparateFunction separate = [fails, ends](const SeparationTask &task,
                                                        JobControl &control) {
            std::ofstream(task.main) << "half a result";
            if (fails)
                throw Refusal("No luck today.");
            return waitForCancel(task, control) || ends;
        };
        const std::int64_t account = stores.addAccount("a@b");
        const std::int32_t id = stores.addJob(account, "a.wav");
        stores.uploads.remove(account, "a.wav");
        const auto runner = stores.run(separate);
        const std::filesystem::path home = stores.folder.database().parent_path();
        if (!fails) {
            QTRY_VERIFY(!std::filesystem::is_empty(home / "work"));
            QVERIFY(runner->cancel(id));
        }
        const JobState end = fails ? JobState::Failed : JobState::Cancelled;
        QTRY_VERIFY(stores.stateOf(id) == end);
        QCOMPARE(stores.jobs.find(id)->reason, std::string(fails ? "No luck today." : ""));
        QVERIFY(!runner->cancel(id));
        // Neither half a result nor the removed upload is left.
        for (const char *sub : {"work", "results", "uploads"})
            QTRY_VERIFY(std::filesystem::is_empty(home / sub));
    }

    void keepsUploadsWhileTheyAreNeeded()
    {
        Stores stores(*m_dir);
        const std::int64_t account = stores.addAccount("a@b");
        const Job full = *stores.jobs.find(stores.addJob(account, "full.wav"));
        const Job demo = *stores.jobs.find(stores.addJob(account, "demo.wav", true));
        const auto runner = stores.run(copyTwice);
        for (const Job &job : {full, demo})
            QTRY_VERIFY(stores.stateOf(job.id) == JobState::Ready);
        QVERIFY(stores.hasFile(full.upload));
        stores.uploads.remove(account + 1, "full.wav");
        QVERIFY(stores.uploads.find(account, "full.wav"));
        for (const char *name : {"full.wav", "demo.wav"})
            stores.uploads.remove(account, name);
        runner->purgeUploads();
        QVERIFY(!stores.uploads.find(account, "demo.wav"));
        QVERIFY(!stores.hasFile(full.upload));
        QVERIFY(stores.hasFile(demo.upload)); // it may still be processed in full
        QCOMPARE(stores.jobs.takeOlderThan(secondsNow() + 10).size(), std::size_t(2));
        runner->purgeUploads();
        QVERIFY(!stores.hasFile(demo.upload));
    }

    void removesOnlyItsOwnLeftovers()
    {
        Stores stores(*m_dir);
        const Job job = *stores.jobs.find(stores.addJob(stores.addAccount("a@b"), "a.wav"));
        const std::filesystem::path lost = stores.folder.upload(randomHex(16) + ".wav");
        const std::filesystem::path foreign = stores.folder.upload("holiday.wav");
        std::ofstream(lost) << "cut off";
        std::ofstream(foreign) << "somebody's";
        (void)stores.folder.makeStagingDir(randomHex(32));
        stores.folder.removeLeftovers(stores.uploads.files());
        QVERIFY(!std::filesystem::exists(lost));
        QVERIFY(std::filesystem::exists(foreign));
        QVERIFY(stores.hasFile(job.upload));
        QVERIFY(std::filesystem::is_empty(stores.folder.database().parent_path() / "work"));
    }

    void refusesASecondService()
    {
        Stores stores(*m_dir);
        QVERIFY_EXCEPTION_THROWN(Stores second(*m_dir), DatabaseBusy);
    }

private:
    void fillDisk() const
    {
        QFile file(m_dir->filePath("filling"));
        QVERIFY(file.open(QIODevice::Append | QIODevice::Unbuffered));
        for (const int bytes : {65536, 4096, 1}) {
            while (file.write(QByteArray(bytes, 'x')) == bytes) { }
        }
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

TEKO_TEST(TestServiceJobs)

#include "tst_servicejobs.moc"
