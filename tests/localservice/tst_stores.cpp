// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/processing.h"
#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"
#include "localservice/jobs/jobrunner.h"
#include "localservice/server/httpserver.h"
#include "localservice/store/accountstore.h"
#include "sounds.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QtTest>

#include <Poco/Data/Session.h>

#include <fstream>
#include <latch>

using namespace localservice;
using namespace std::chrono_literals;

namespace {

// The stores of a service, opened on one folder.
struct Stores
{
    explicit Stores(const QTemporaryDir &dir)
        : folder(dir.filePath("data").toStdString())
        , database(folder.database())
        , accounts(database,
                   [this] {
                       std::this_thread::yield(); // whoever else is at work may come between
                       return secondsNow() + secondsLater;
                   })
        , uploads(database)
        , jobs(database)
    { }

    // An account's upload of some name with one job.
    std::int32_t addJob(std::int64_t account, const std::string &name, bool demo = false)
    {
        Job job;
        job.account = account;
        job.instrument = "drums";
        job.extension = "mp3";
        job.demo = demo;
        job.seconds = 60;
        const std::string file = randomHex(16) + ".wav";
        job.upload = uploads.add({0, account, name, file, 60});
        std::ofstream(folder.upload(file)) << "sound";
        return jobs.add(job, name);
    }

    [[nodiscard]] bool hasFile(std::int64_t upload)
    {
        const std::optional<Upload> found = uploads.find(upload);
        return found && std::filesystem::exists(folder.upload(found->file));
    }

    std::int64_t secondsLater = 0; // how much the accounts' clock is fast
    DataFolder folder;
    Database database;
    AccountStore accounts;
    UploadStore uploads;
    JobStore jobs;
};

// A separator that waits until it is cancelled.
bool waitForCancel(const SeparationTask &, JobControl &control)
{
    control.progress = 0.5;
    while (!control.cancelled)
        std::this_thread::yield();
    return false;
}

bool copyTwice(const SeparationTask &task, JobControl &)
{
    std::filesystem::copy_file(task.input, task.main);
    std::filesystem::copy_file(task.input, task.mix);
    return true;
}

} // namespace

class StoresTest final : public TestCase
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
            JobRunner runner(stores.jobs, stores.uploads, stores.folder, waitForCancel, 1, 30);
            QTRY_VERIFY(stores.jobs.find(id)->state == JobState::Running);
        }
        Stores stores(*m_dir);
        QCOMPARE(QFile::permissions(m_dir->filePath("data/service.db"))
                     & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(stores.accounts.localSession(), hash);
        const Job kept = stores.jobs.find(id).value();
        QCOMPARE(kept.instrument, std::string("drums"));
        QVERIFY(kept.state == JobState::Queued);
        QVERIFY(stores.uploads.find(kept.account, "a.wav"));
        QVERIFY(stores.jobs.takeNext()); // as a service that was killed leaves it
        JobRunner runner(stores.jobs, stores.uploads, stores.folder, copyTwice, 1, 30);
        QTRY_VERIFY(stores.jobs.find(id)->state == JobState::Ready);
        QVERIFY(std::filesystem::exists(stores.folder.mixResult(stores.jobs.find(id)->token)));
    }

    void makesOneJobOfEqualRequests()
    {
        Stores stores(*m_dir);
        const std::int64_t one = stores.accounts.add({"A", "a@b", ""}).id;
        const std::int64_t other = stores.accounts.add({"B", "b@b", ""}).id;
        const std::int32_t first = stores.addJob(one, "a.wav");
        QCOMPARE(stores.addJob(one, "a.wav"), first);
        QVERIFY(stores.addJob(one, "b.wav") != first);
        QVERIFY(stores.addJob(one, "a.wav", true) != first);
        QVERIFY(stores.addJob(other, "a.wav") != first);
        QVERIFY(stores.jobs.takeNext()->id == first);
        QCOMPARE(stores.addJob(one, "a.wav"), first);
        QVERIFY(stores.jobs.move(first, JobState::Running, JobState::Ready));
        QVERIFY(stores.addJob(one, "a.wav") != first);
    }

    void forgetsCancelledAndFailedWork_data()
    {
        const Rows<bool> add;
        add("cancelled", false);
        add("failed", true);
    }

    void forgetsCancelledAndFailedWork()
    {
        const auto [fails] = fetchRow<bool>();
        Stores stores(*m_dir);
        const SeparateFunction separate = [fails](const SeparationTask &task, JobControl &control) {
            std::ofstream(task.main) << "half a result";
            if (fails)
                throw Refusal("No luck today.");
            return waitForCancel(task, control);
        };
        const std::int64_t account = stores.accounts.add({"A", "a@b", ""}).id;
        const std::int32_t id = stores.addJob(account, "a.wav");
        stores.uploads.remove(account, "a.wav");
        JobRunner runner(stores.jobs, stores.uploads, stores.folder, separate, 1, 30);
        const std::filesystem::path home = stores.folder.database().parent_path();
        if (!fails) {
            QTRY_VERIFY(!std::filesystem::is_empty(home / "work"));
            QVERIFY(runner.cancel(id));
        }
        const JobState end = fails ? JobState::Failed : JobState::Cancelled;
        QTRY_VERIFY(stores.jobs.find(id)->state == end);
        QCOMPARE(stores.jobs.find(id)->reason, std::string(fails ? "No luck today." : ""));
        QVERIFY(!runner.cancel(id));
        // Neither half a result nor the removed upload is left.
        for (const char *sub : {"work", "results", "uploads"})
            QTRY_VERIFY(std::filesystem::is_empty(home / sub));
    }

    void keepsUploadsWhileTheyAreNeeded()
    {
        Stores stores(*m_dir);
        const std::int64_t account = stores.accounts.add({"A", "a@b", ""}).id;
        const Job full = *stores.jobs.find(stores.addJob(account, "full.wav"));
        const Job demo = *stores.jobs.find(stores.addJob(account, "demo.wav", true));
        JobRunner runner(stores.jobs, stores.uploads, stores.folder, copyTwice, 1, 30);
        for (const Job &job : {full, demo})
            QTRY_VERIFY(stores.jobs.find(job.id)->state == JobState::Ready);
        QVERIFY(stores.hasFile(full.upload));
        stores.uploads.remove(account + 1, "full.wav");
        QVERIFY(stores.uploads.find(account, "full.wav"));
        for (const char *name : {"full.wav", "demo.wav"})
            stores.uploads.remove(account, name);
        runner.purgeUploads();
        QVERIFY(!stores.uploads.find(account, "demo.wav"));
        QVERIFY(!stores.hasFile(full.upload));
        QVERIFY(stores.hasFile(demo.upload)); // it may still be made whole
        QCOMPARE(stores.jobs.takeOlderThan(secondsNow() + 10).size(), std::size_t(2));
        runner.purgeUploads();
        QVERIFY(!stores.hasFile(demo.upload));
    }

    void removesOnlyItsOwnLeftovers()
    {
        Stores stores(*m_dir);
        const Job job =
            *stores.jobs.find(stores.addJob(stores.accounts.add({"A", "a@b", ""}).id, "a.wav"));
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

    void signsInAndOut()
    {
        Stores stores(*m_dir);
        const Account anna = stores.accounts.add({"Anna", "Anna@Example.org", "correct horse"});
        QVERIFY_EXCEPTION_THROWN(stores.accounts.add({"B", "anna@example.ORG", "12345678"}),
                                 Refusal);
        QCOMPARE(stores.accounts.signIn("anna@example.org", "correct horse")->id, anna.id);
        QVERIFY(!stores.accounts.signIn("anna@example.org", "correct horsE"));
        QVERIFY(!stores.accounts.signIn("anna@example.org", ""));
        QVERIFY(!stores.accounts.signIn("nobody@example.org", "nobody's"));
        // The account without a password cannot be entered by an empty one.
        (void)stores.accounts.localSession();
        QVERIFY(!stores.accounts.signIn(localEmail, ""));

        const std::string here = stores.accounts.openSession(anna.id);
        const std::string elsewhere = stores.accounts.openSession(anna.id);
        QVERIFY(here != elsewhere && here.size() == 64);
        QVERIFY(stores.accounts.tokenOf(here) != stores.accounts.tokenOf(elsewhere));
        stores.accounts.change(anna, {"Ann", "ann@example.org", "battery staple"}, here);
        QCOMPARE(stores.accounts.accountOf(here)->name, std::string("Ann"));
        QVERIFY(!stores.accounts.accountOf(elsewhere));
        QVERIFY(!stores.accounts.accountOf(""));
        QVERIFY(stores.accounts.signIn("ann@example.org", "battery staple"));
        stores.accounts.change(anna, {"Ann", "ann@example.org", ""}, here);
        QVERIFY(stores.accounts.signIn("ann@example.org", "battery staple"));
    }

    void recoversOnce()
    {
        Stores stores(*m_dir);
        const Account anna = stores.accounts.add({"Anna", "a@b", "forgotten"});
        const std::string session = stores.accounts.openSession(anna.id);
        QVERIFY(!stores.accounts.recover("a@b", "", "new password"));
        const std::string code = stores.accounts.openRecovery("a@b").value();
        QVERIFY(!stores.accounts.openRecovery("x@b"));
        QVERIFY(!stores.accounts.recover("a@b", "0000000000", "new password"));
        QVERIFY(!stores.accounts.recover("x@b", code, "new password"));
        // A password that cannot be kept does not use up the code.
        const auto run = [&stores](const char *statement) {
            stores.database.access().session << statement, Poco::Data::Keywords::now;
        };
        run("CREATE TRIGGER broken BEFORE DELETE ON sessions BEGIN SELECT RAISE(ABORT, ''); END");
        QVERIFY_EXCEPTION_THROWN((void)stores.accounts.recover("a@b", code, "new password"),
                                 Poco::Exception);
        run("DROP TRIGGER broken");
        QVERIFY(stores.accounts.recover("a@b", code, "new password"));
        QVERIFY(stores.accounts.signIn("a@b", "new password"));
        QVERIFY(!stores.accounts.accountOf(session));
        QVERIFY(!stores.accounts.recover("a@b", code, "another one"));
    }

    void countsFilesByAccount()
    {
        Stores stores(*m_dir);
        const std::int64_t one = stores.accounts.add({"A", "a@b", ""}).id;
        const std::int64_t other = stores.accounts.add({"B", "b@b", ""}).id;
        stores.accounts.countProcessed(one);
        stores.accounts.countProcessed(one);
        QCOMPARE(stores.accounts.processedToday(one), 2);
        QCOMPARE(stores.accounts.processedToday(other), 0);
        stores.secondsLater = 2 * 86400;
        QCOMPARE(stores.accounts.processedToday(one), 0);
    }

    void endsUnusedSessions_data()
    {
        const Rows<bool, QList<int>, bool> add;
        add("within the time", false, {29}, true);
        add("too late", false, {31}, false);
        add("used now and then", false, {20, 40, 60, 89}, true);
        add("used, then forgotten", false, {20, 51}, false);
        add("this computer's own", true, {2000}, true);
    }

    void endsUnusedSessions()
    {
        const auto [isLocal, daysOfUse, lasts] = fetchRow<bool, QList<int>, bool>();
        Stores stores(*m_dir);
        const std::int64_t account = stores.accounts.add({"A", "a@b", ""}).id;
        const std::string hash =
            isLocal ? stores.accounts.localSession() : stores.accounts.openSession(account);
        bool isKnown = false;
        for (const int day : daysOfUse) {
            stores.secondsLater = day * 86400;
            isKnown = stores.accounts.accountOf(hash).has_value();
        }
        QCOMPARE(isKnown, lasts);
        // A session that is over for good does not come back with the clock.
        (void)stores.accounts.openSession(account);
        stores.secondsLater = 0;
        QCOMPARE(stores.accounts.accountOf(hash).has_value(), lasts);
        stores.accounts.closeSession(hash);
        if (isLocal)
            stores.accounts.change(stores.accounts.accountOf(hash).value(), {"L", "l@b", "new"},
                                   "");
        QCOMPARE(stores.accounts.accountOf(hash).has_value(), isLocal);
    }

    void letsSessionsOfEarlierVersionsExpire()
    {
        std::string hash;
        {
            Stores stores(*m_dir);
            hash = stores.accounts.openSession(stores.accounts.add({"A", "a@b", ""}).id);
            Database::Access access = stores.database.access();
            access.session << "UPDATE sessions SET expires = expires - 30 * 86400",
                Poco::Data::Keywords::now;
            access.session << "ALTER TABLE sessions RENAME COLUMN expires TO added",
                Poco::Data::Keywords::now;
        }
        Stores stores(*m_dir);
        QVERIFY(stores.accounts.accountOf(hash));
        stores.secondsLater = 31 * 86400;
        QVERIFY(!stores.accounts.accountOf(hash));
    }

    /// Many uploads end at the same moment, on many days, since it depends on timing.
    void acceptsNoMoreThanTheDailyLimit()
    {
        constexpr int days = 30;
        constexpr int uploadsPerDay = 8;
        constexpr int limit = 3;
        Stores stores(*m_dir);
        JobRunner runner(stores.jobs, stores.uploads, stores.folder, copyTwice, 1, 30);
        Authorizer authorizer(stores.accounts, stores.jobs);
        ArrivingFiles arriving;
        Processing processing(stores.database, stores.accounts, stores.uploads, stores.jobs, runner,
                              authorizer, arriving, {Subscription::Active, limit}, "..");
        const RequestContext context{"", stores.accounts.localSession()};
        const std::string song = m_dir->filePath("song.wav").toStdString();
        writeWav(song, {1, 8000, 16, 8000}, std::vector<std::int32_t>(8000));
        const Fields form =
            Fields::fromForm("instrument=bass&version=full&fileName=a&extension=mp3");
        for (int day = 0; day < days; ++day) {
            stores.secondsLater = day * 2 * 86400;
            std::latch start(uploadsPerDay);
            std::atomic<int> accepted = 0;
            const auto upload = [&](int number) {
                ReceivedFile file(stores.folder.upload(""), 1 << 20, arriving);
                file.begin(0, std::to_string(number) + ".wav");
                std::filesystem::copy_file(song, file.path(),
                                           std::filesystem::copy_options::overwrite_existing);
                start.arrive_and_wait();
                try {
                    (void)processing.proceed(form, context, file);
                    ++accepted;
                } catch (const Refusal &) {
                    return;
                }
            };
            std::vector<std::thread> threads;
            for (int i = 0; i < uploadsPerDay; ++i)
                threads.emplace_back(upload, day * uploadsPerDay + i);
            for (std::thread &thread : threads)
                thread.join();
            QCOMPARE(accepted, limit);
        }
        QCOMPARE(stores.uploads.files().size(), std::size_t(days * limit));
    }

    /// Nor is a form without a length taken for a complete one.
    void cutsFormsThatDoNotEnd()
    {
        Stores stores(*m_dir);
        JobRunner runner(stores.jobs, stores.uploads, stores.folder, copyTwice, 1, 30);
        Authorizer authorizer(stores.accounts, stores.jobs);
        ArrivingFiles arriving;
        const Licence licence;
        Processing processing(stores.database, stores.accounts, stores.uploads, stores.jobs, runner,
                              authorizer, arriving, licence, "..");
        Accounts accounts(stores.accounts, stores.jobs, authorizer, licence, 30);
        ServerSettings settings;
        settings.port = 0;
        settings.limits.requestTimeout = 200ms;
        std::optional<HttpServer> server(
            std::in_place, settings,
            Backend{processing, accounts, stores.jobs, arriving, stores.folder, 0});
        const std::string host = server->url().substr(7);
        Poco::Net::StreamSocket socket{Poco::Net::SocketAddress(host)};
        socket.setReceiveTimeout(Poco::Timespan(5, 0));
        const std::string request = "POST /teko-server/auth/register.php HTTP/1.1\r\nHost: " + host
            + "\r\nTransfer-Encoding: "
              "chunked\r\n\r\n2a\r\nname=Eva&email=eva@b.org&password=12345678\r\n";
        socket.sendBytes(request.data(), int(request.size()));
        char byte = 0;
        QCOMPARE(socket.receiveBytes(&byte, 1), 0);
        server.reset();
        QVERIFY(!stores.accounts.openRecovery("eva@b.org"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

TEKO_TEST_MAIN(StoresTest)
#include "tst_stores.moc"
