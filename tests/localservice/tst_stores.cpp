// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/processing.h"
#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"
#include "localservice/jobs/runner.h"
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

// Everything that the service keeps, opened on one folder.
struct House
{
    explicit House(const QTemporaryDir &dir)
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
    control.share = 0.5;
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
            House house(*m_dir);
            hash = house.accounts.localSession();
            id = house.addJob(house.accounts.accountOf(hash)->id, "a.wav");
            Runner runner(house.jobs, house.uploads, house.folder, waitForCancel, 1, 30);
            QTRY_VERIFY(house.jobs.find(id)->state == JobState::Running);
        }
        House house(*m_dir);
        QCOMPARE(QFile::permissions(m_dir->filePath("data/service.db"))
                     & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(house.accounts.localSession(), hash);
        const Job kept = house.jobs.find(id).value();
        QCOMPARE(kept.instrument, std::string("drums"));
        QVERIFY(kept.state == JobState::Queued);
        QVERIFY(house.uploads.find(kept.account, "a.wav"));
        QVERIFY(house.jobs.takeNext()); // as a service that was killed leaves it
        Runner runner(house.jobs, house.uploads, house.folder, copyTwice, 1, 30);
        QTRY_VERIFY(house.jobs.find(id)->state == JobState::Ready);
        QVERIFY(std::filesystem::exists(house.folder.mixResult(house.jobs.find(id)->token)));
    }

    void makesOneJobOfEqualRequests()
    {
        House house(*m_dir);
        const std::int64_t one = house.accounts.add({"A", "a@b", ""}).id;
        const std::int64_t other = house.accounts.add({"B", "b@b", ""}).id;
        const std::int32_t first = house.addJob(one, "a.wav");
        QCOMPARE(house.addJob(one, "a.wav"), first);
        QVERIFY(house.addJob(one, "b.wav") != first);
        QVERIFY(house.addJob(one, "a.wav", true) != first);
        QVERIFY(house.addJob(other, "a.wav") != first);
        QVERIFY(house.jobs.takeNext()->id == first);
        QCOMPARE(house.addJob(one, "a.wav"), first);
        QVERIFY(house.jobs.move(first, JobState::Running, JobState::Ready));
        QVERIFY(house.addJob(one, "a.wav") != first);
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
        House house(*m_dir);
        const Separate separate = [fails](const SeparationTask &task, JobControl &control) {
            std::ofstream(task.main) << "half a result";
            if (fails)
                throw Refusal("No luck today.");
            return waitForCancel(task, control);
        };
        const std::int64_t account = house.accounts.add({"A", "a@b", ""}).id;
        const std::int32_t id = house.addJob(account, "a.wav");
        house.uploads.remove(account, "a.wav");
        Runner runner(house.jobs, house.uploads, house.folder, separate, 1, 30);
        const std::filesystem::path home = house.folder.database().parent_path();
        if (!fails) {
            QTRY_VERIFY(!std::filesystem::is_empty(home / "work"));
            QVERIFY(runner.cancel(id));
        }
        const JobState end = fails ? JobState::Failed : JobState::Cancelled;
        QTRY_VERIFY(house.jobs.find(id)->state == end);
        QCOMPARE(house.jobs.find(id)->reason, std::string(fails ? "No luck today." : ""));
        QVERIFY(!runner.cancel(id));
        // Neither half a result nor the removed upload is left.
        for (const char *sub : {"work", "results", "uploads"})
            QTRY_VERIFY(std::filesystem::is_empty(home / sub));
    }

    void keepsUploadsWhileTheyAreNeeded()
    {
        House house(*m_dir);
        const std::int64_t account = house.accounts.add({"A", "a@b", ""}).id;
        const Job full = *house.jobs.find(house.addJob(account, "full.wav"));
        const Job demo = *house.jobs.find(house.addJob(account, "demo.wav", true));
        Runner runner(house.jobs, house.uploads, house.folder, copyTwice, 1, 30);
        for (const Job &job : {full, demo})
            QTRY_VERIFY(house.jobs.find(job.id)->state == JobState::Ready);
        QVERIFY(house.hasFile(full.upload));
        house.uploads.remove(account + 1, "full.wav");
        QVERIFY(house.uploads.find(account, "full.wav"));
        for (const char *name : {"full.wav", "demo.wav"})
            house.uploads.remove(account, name);
        runner.sweepUploads();
        QVERIFY(!house.uploads.find(account, "demo.wav"));
        QVERIFY(!house.hasFile(full.upload));
        QVERIFY(house.hasFile(demo.upload)); // it may still be made whole
        QCOMPARE(house.jobs.takeOlderThan(secondsNow() + 10).size(), std::size_t(2));
        runner.sweepUploads();
        QVERIFY(!house.hasFile(demo.upload));
    }

    void tidiesOnlyWhatIsItsOwn()
    {
        House house(*m_dir);
        const Job job =
            *house.jobs.find(house.addJob(house.accounts.add({"A", "a@b", ""}).id, "a.wav"));
        const std::filesystem::path lost = house.folder.upload(randomHex(16) + ".wav");
        const std::filesystem::path foreign = house.folder.upload("holiday.wav");
        std::ofstream(lost) << "cut off";
        std::ofstream(foreign) << "somebody's";
        (void)house.folder.openWorkshop(randomHex(32));
        house.folder.tidy(house.uploads.files());
        QVERIFY(!std::filesystem::exists(lost));
        QVERIFY(std::filesystem::exists(foreign));
        QVERIFY(house.hasFile(job.upload));
        QVERIFY(std::filesystem::is_empty(house.folder.database().parent_path() / "work"));
    }

    void letsOneServiceInAtATime()
    {
        House house(*m_dir);
        QVERIFY_EXCEPTION_THROWN(House second(*m_dir), DatabaseBusy);
    }

    void signsInAndOut()
    {
        House house(*m_dir);
        const Account anna = house.accounts.add({"Anna", "Anna@Example.org", "correct horse"});
        QVERIFY_EXCEPTION_THROWN(house.accounts.add({"B", "anna@example.ORG", "12345678"}),
                                 Refusal);
        QCOMPARE(house.accounts.signIn("anna@example.org", "correct horse")->id, anna.id);
        QVERIFY(!house.accounts.signIn("anna@example.org", "correct horsE"));
        QVERIFY(!house.accounts.signIn("anna@example.org", ""));
        QVERIFY(!house.accounts.signIn("nobody@example.org", "nobody's"));
        // The account without a password cannot be entered by an empty one.
        (void)house.accounts.localSession();
        QVERIFY(!house.accounts.signIn(kLocalEmail, ""));

        const std::string here = house.accounts.openSession(anna.id);
        const std::string elsewhere = house.accounts.openSession(anna.id);
        QVERIFY(here != elsewhere && here.size() == 64);
        QVERIFY(house.accounts.tokenOf(here) != house.accounts.tokenOf(elsewhere));
        house.accounts.change(anna, {"Ann", "ann@example.org", "battery staple"}, here);
        QCOMPARE(house.accounts.accountOf(here)->name, std::string("Ann"));
        QVERIFY(!house.accounts.accountOf(elsewhere));
        QVERIFY(!house.accounts.accountOf(""));
        QVERIFY(house.accounts.signIn("ann@example.org", "battery staple"));
        house.accounts.change(anna, {"Ann", "ann@example.org", ""}, here);
        QVERIFY(house.accounts.signIn("ann@example.org", "battery staple"));
    }

    void recoversOnce()
    {
        House house(*m_dir);
        const Account anna = house.accounts.add({"Anna", "a@b", "forgotten"});
        const std::string session = house.accounts.openSession(anna.id);
        QVERIFY(!house.accounts.recover("a@b", "", "new password"));
        const std::string code = house.accounts.openRecovery("a@b").value();
        QVERIFY(!house.accounts.openRecovery("x@b"));
        QVERIFY(!house.accounts.recover("a@b", "0000000000", "new password"));
        QVERIFY(!house.accounts.recover("x@b", code, "new password"));
        // A password that cannot be kept does not use up the code.
        const auto run = [&house](const char *statement) {
            house.database.access().session << statement, Poco::Data::Keywords::now;
        };
        run("CREATE TRIGGER broken BEFORE DELETE ON sessions BEGIN SELECT RAISE(ABORT, ''); END");
        QVERIFY_EXCEPTION_THROWN((void)house.accounts.recover("a@b", code, "new password"),
                                 Poco::Exception);
        run("DROP TRIGGER broken");
        QVERIFY(house.accounts.recover("a@b", code, "new password"));
        QVERIFY(house.accounts.signIn("a@b", "new password"));
        QVERIFY(!house.accounts.accountOf(session));
        QVERIFY(!house.accounts.recover("a@b", code, "another one"));
    }

    void countsFilesByAccount()
    {
        House house(*m_dir);
        const std::int64_t one = house.accounts.add({"A", "a@b", ""}).id;
        const std::int64_t other = house.accounts.add({"B", "b@b", ""}).id;
        house.accounts.countProcessed(one);
        house.accounts.countProcessed(one);
        QCOMPARE(house.accounts.processedToday(one), 2);
        QCOMPARE(house.accounts.processedToday(other), 0);
        house.secondsLater = 2 * 86400;
        QCOMPARE(house.accounts.processedToday(one), 0);
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
        House house(*m_dir);
        const std::int64_t account = house.accounts.add({"A", "a@b", ""}).id;
        const std::string hash =
            isLocal ? house.accounts.localSession() : house.accounts.openSession(account);
        bool isKnown = false;
        for (const int day : daysOfUse) {
            house.secondsLater = day * 86400;
            isKnown = house.accounts.accountOf(hash).has_value();
        }
        QCOMPARE(isKnown, lasts);
        // A session that is over for good does not come back with the clock.
        (void)house.accounts.openSession(account);
        house.secondsLater = 0;
        QCOMPARE(house.accounts.accountOf(hash).has_value(), lasts);
        house.accounts.closeSession(hash);
        if (isLocal)
            house.accounts.change(house.accounts.accountOf(hash).value(), {"L", "l@b", "new"}, "");
        QCOMPARE(house.accounts.accountOf(hash).has_value(), isLocal);
    }

    void letsSessionsOfEarlierVersionsExpire()
    {
        std::string hash;
        {
            House house(*m_dir);
            hash = house.accounts.openSession(house.accounts.add({"A", "a@b", ""}).id);
            Database::Access access = house.database.access();
            access.session << "UPDATE sessions SET expires = expires - 30 * 86400",
                Poco::Data::Keywords::now;
            access.session << "ALTER TABLE sessions RENAME COLUMN expires TO added",
                Poco::Data::Keywords::now;
        }
        House house(*m_dir);
        QVERIFY(house.accounts.accountOf(hash));
        house.secondsLater = 31 * 86400;
        QVERIFY(!house.accounts.accountOf(hash));
    }

    /// Many uploads end in the same moment, on many days, since luck has a part in it.
    void givesTheDaysLastFileAwayOnce()
    {
        constexpr int kDays = 30;
        constexpr int kUploads = 8;
        constexpr int kLimit = 3;
        House house(*m_dir);
        Runner runner(house.jobs, house.uploads, house.folder, copyTwice, 1, 30);
        Gate gate(house.accounts, house.jobs);
        ArrivingFiles arriving;
        Processing processing(house.database, house.accounts, house.uploads, house.jobs, runner,
                              gate, arriving, {Subscription::Active, kLimit});
        const Caller caller{"", "", house.accounts.localSession()};
        const std::string song = m_dir->filePath("song.wav").toStdString();
        writeWav(song, {1, 8000, 16, 8000}, std::vector<std::int32_t>(8000));
        const Fields form =
            Fields::fromForm("instrument=bass&version=full&fileName=a&extension=mp3");
        for (int day = 0; day < kDays; ++day) {
            house.secondsLater = day * 2 * 86400;
            std::latch start(kUploads);
            std::atomic<int> accepted = 0;
            const auto upload = [&](int number) {
                ReceivedFile file(house.folder.upload(""), 1 << 20, arriving);
                file.begin(0, std::to_string(number) + ".wav");
                std::filesystem::copy_file(song, file.path(),
                                           std::filesystem::copy_options::overwrite_existing);
                start.arrive_and_wait();
                try {
                    (void)processing.proceed(form, caller, file);
                    ++accepted;
                } catch (const Refusal &) {
                    return;
                }
            };
            std::vector<std::thread> threads;
            for (int i = 0; i < kUploads; ++i)
                threads.emplace_back(upload, day * kUploads + i);
            for (std::thread &thread : threads)
                thread.join();
            QCOMPARE(accepted, kLimit);
        }
        QCOMPARE(house.uploads.files().size(), std::size_t(kDays * kLimit));
    }

    /// Nor is it taken for a whole one when nobody has told how long it is.
    void cutsFormsThatDoNotEnd()
    {
        House house(*m_dir);
        Runner runner(house.jobs, house.uploads, house.folder, copyTwice, 1, 30);
        Gate gate(house.accounts, house.jobs);
        ArrivingFiles arriving;
        const Licence licence;
        Processing processing(house.database, house.accounts, house.uploads, house.jobs, runner,
                              gate, arriving, licence);
        Accounts accounts(house.accounts, house.jobs, gate, licence, 30);
        std::optional<HttpServer> server(
            std::in_place, "127.0.0.1", 0,
            Backend{processing, accounts, house.jobs, arriving, house.folder, 0, ""}, 200ms);
        Poco::Net::StreamSocket socket(Poco::Net::SocketAddress(server->address()));
        socket.setReceiveTimeout(Poco::Timespan(5, 0));
        const std::string request =
            "POST /teko-server/auth/register.php HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"
            "2a\r\nname=Eva&email=eva@b.org&password=12345678\r\n";
        socket.sendBytes(request.data(), int(request.size()));
        char byte = 0;
        QCOMPARE(socket.receiveBytes(&byte, 1), 0);
        server.reset();
        QVERIFY(!house.accounts.openRecovery("eva@b.org"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

TEKO_TEST_MAIN(StoresTest)
#include "tst_stores.moc"
