// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/workerthread.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

namespace {

std::atomic<int> alive = 0;
std::atomic<int> worked = 0;

class Worker final : public QObject
{
    Q_OBJECT

public:
    Worker() { ++alive; }
    ~Worker() override
    {
        --alive;
        diedAtHome = QThread::currentThread() == thread();
    }

    static inline std::atomic<bool> diedAtHome = false;

signals:
    void done();

public slots:
    void work()
    {
        if (QThread::currentThread() != qApp->thread())
            ++worked;
        emit done();
    }
};

} // namespace

class Owner final : public QObject
{
    Q_OBJECT

public:
    void start(int further)
    {
        m_further = further;
        thread.start(std::make_unique<Worker>(), &Worker::work, &Worker::done, this, &Owner::next);
    }

    WorkerThread thread;
    int doneCount = 0;

private:
    void next()
    {
        ++doneCount;
        if (QThread::currentThread() != qApp->thread())
            qWarning("The owner was called in another thread");
        if (m_further > 0)
            start(m_further - 1);
    }

    int m_further = 0;
};

class TestWorkerThread : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        worked = 0;
    }

    void cleanup() { QCOMPARE(alive.load(), 0); }

    void aDoneWorkerMayStartTheNext_data()
    {
        const Rows<int> add;
        add("none follows", 0);
        add("many follow", 20);
    }

    /// Each works in a thread of its own and is heard in the owner's.
    void aDoneWorkerMayStartTheNext()
    {
        const auto [further] = fetchRow<int>();
        Owner owner;
        owner.start(further);
        QTRY_COMPARE(owner.doneCount, further + 1);
        QCOMPARE(worked.load(), further + 1);
        QCOMPARE(alive.load(), 1);
        owner.thread.stop();
        QVERIFY(Worker::diedAtHome);
    }

    /// The signals of the first workers wait in the owner's queue when those workers are replaced.
    void aReplacedWorkerIsNotHeard()
    {
        Owner owner;
        for (int i = 0; i < 50; ++i)
            owner.start(0);
        QTRY_COMPARE(worked.load(), 50);
        QTRY_VERIFY(owner.doneCount > 0);
        QCoreApplication::processEvents();
        QCOMPARE(owner.doneCount, 1);
    }

    void aStoppedWorkerIsNotHeard()
    {
        Owner owner;
        owner.start(0);
        owner.thread.stop();
        QCOMPARE(worked.load(), 1);
        QCOMPARE(alive.load(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(owner.doneCount, 0);
        owner.thread.stop();
    }
};

TEKO_TEST_MAIN(TestWorkerThread)
#include "tst_workerthread.moc"
