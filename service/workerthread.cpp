// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/workerthread.h"

WorkerThread::~WorkerThread()
{
    stop();
}

void WorkerThread::stop()
{
    if (m_worker)
        m_worker->deleteLater();
    m_worker = nullptr;
    if (!m_thread)
        return;
    m_thread->quit();
    m_thread->wait();
    m_thread.reset();
}

void WorkerThread::launch()
{
    m_worker->moveToThread(m_thread.get());
    connect(m_thread.get(), &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread->start(QThread::InheritPriority);
}
