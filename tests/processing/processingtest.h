// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "processing/fileprocessing.h"
#include "tests/support/installation.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <memory>

using Answer = ScriptedAnswer;

/// The processing window with its real view, a scripted service and a fake ffmpeg.
class ProcessingTest : public TestCase
{
    Q_OBJECT

protected slots:
    void init()
    {
        TestCase::init();
        qunsetenv("FAKE_DO");
        m_home = std::make_unique<Installation>();
        m_home->set("default_instrument", "Vocals");
        m_home->set("default_audio_format", "WAV");
        m_home->signIn("h");
        m_window = std::make_unique<FileProcessing>(*m_home->store);
        // The view lets a layer be seen for a while before the next one.
        for (QObject *timer : m_window->rootObject()->findChildren<QObject *>()) {
            if (timer->property("layer").isValid())
                timer->setProperty("interval", 1);
        }
    }

    void cleanup()
    {
        m_window.reset();
        m_home.reset();
    }

protected:
    ScriptedServer &server() { return m_home->server; }
    /// The first request for a path.
    ScriptedRequest asked(const QByteArray &path) { return server().requests(path).value(0); }

    void start(const QString &name)
    {
        QVERIFY(m_window->openWindow(m_home->source(name)));
        m_window->startProcess();
    }

    void run(const QString &name)
    {
        start(name);
        QTRY_COMPARE(layer(), "success");
    }

    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }
    QString layer() const { return value("currentLayer").toString(); }

    QString state() const
    {
        QStringList values;
        for (const char *name : {"fileName", "currentLayer", "selectedInstrument",
                                 "selectedOutputFormat", "isVideo", "scf", "isChecking"})
            values << value(name).toString();
        return values.join(' ');
    }

    /// The job's requests in their order.
    QString jobRequests() const
    {
        QStringList list;
        for (const ScriptedRequest &request : m_home->server.requests()) {
            if (QList<QByteArray>({Installation::proceed, Installation::repeat,
                                   Installation::remains, Installation::download})
                    .contains(request.path()))
                list << QString::fromLatin1(request.path()).section('/', 2).chopped(4);
        }
        return list.join(' ');
    }

    /// The visible button of that text.
    const QQuickItem *button(const QString &text) const
    {
        const auto items = m_window->rootObject()->findChildren<QQuickItem *>();
        for (const QQuickItem *item : items) {
            if (item->isVisible() && item->inherits("QQuickAbstractButton")
                && item->property("text") == text)
                return item;
        }
        return nullptr;
    }

    static QPoint centreOf(const QQuickItem *item)
    {
        return item->mapToScene(item->boundingRect().center()).toPoint();
    }

    std::unique_ptr<Installation> m_home;
    std::unique_ptr<FileProcessing> m_window;
};
