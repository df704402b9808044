// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QThread>

#include <memory>

/// One worker on one thread of its own, replaced or stopped. Lives in its owner's thread, usually
/// the GUI's. A worker's signal reaches the owner only while that worker is the current one: what a
/// replaced worker had already sent is dropped.
///
/// Stopping waits for the worker's slot without a limit, so the owner sets the worker's cancel flag
/// first.
class WorkerThread final : public QObject
{
public:
    WorkerThread() = default;
    ~WorkerThread() override;

    /// Replaces the current worker. `entry` runs in the new thread as soon as it starts; `slot` of
    /// `receiver`, which must outlive this object, runs in this object's thread when the worker
    /// emits `done`, and may start the next worker or destroy this object.
    template <typename Worker, typename Receiver, typename... Values>
    void start(std::unique_ptr<Worker> worker, void (Worker::*entry)(),
               void (Worker::*done)(Values...), Receiver *receiver,
               void (Receiver::*slot)(Values...));

    /// Deletes the worker and ends its thread; does nothing when there is none.
    void stop();

private:
    void launch();

    std::unique_ptr<QThread> m_thread; ///< also the context of the worker's signals
    QObject *m_worker = nullptr; ///< deleted by its own thread
};

template <typename Worker, typename Receiver, typename... Values>
void WorkerThread::start(std::unique_ptr<Worker> worker, void (Worker::*entry)(),
                         void (Worker::*done)(Values...), Receiver *receiver,
                         void (Receiver::*slot)(Values...))
{
    stop();
    m_thread = std::make_unique<QThread>();
    connect(worker.get(), done, m_thread.get(),
            [receiver, slot](Values... values) { (receiver->*slot)(values...); });
    connect(m_thread.get(), &QThread::started, worker.get(), entry);
    m_worker = worker.release();
    launch();
}
