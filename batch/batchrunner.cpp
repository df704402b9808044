// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batchrunner.h"

#include "base/mediaformats.h"
#include "base/programdata.h"
#include "batch/console.h"
#include "processing/processingrules.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQuickItem>

namespace {

constexpr int terminalColumns = 79;
constexpr int allSucceeded = 0;
constexpr int oneFailed = 1;

} // namespace

BatchRunner::BatchRunner(ProgramData &store)
    : m_store(store)
    , m_window(store)
    , m_results(stdout)
    , m_notes(stderr)
    , m_isTerminal(isErrorOutputTerminal())
{
    connect(&m_messages, &MessageWatcher::shown, this,
            [this](const QString &, const QString &text) { m_message = text; });
    connect(&m_window, &FileProcessing::showParent, this, [this] { m_isClosed = true; });
    watchView();
}

void BatchRunner::watchView()
{
    const QObject *view = m_window.rootObject();
    const QMetaMethod show =
        staticMetaObject.method(staticMetaObject.indexOfSlot("showProgress()"));
    const QMetaMethod change =
        staticMetaObject.method(staticMetaObject.indexOfSlot("layerChanged()"));
    const QMetaObject *meta = view->metaObject();
    const auto notify = [&](const char *property) {
        return meta->property(meta->indexOfProperty(property)).notifySignal();
    };
    for (const char *property : {"uploadingPercent", "downloading1Percent", "downloading2Percent",
                                 "remainingProcessingTime"})
        connect(view, notify(property), this, show);
    connect(view, notify("currentLayer"), this, change);
}

int BatchRunner::run(const QStringList &files)
{
    int exitCode = allSucceeded;
    for (const QString &file : files) {
        if (m_isInterrupted || !runFile(file))
            exitCode = oneFailed;
    }
    m_window.removeUploadedFile();
    return exitCode;
}

void BatchRunner::interrupt()
{
    m_isInterrupted = true;
    // Also ends nested event loops of the window.
    m_window.closeWindow();
}

QString BatchRunner::refusedBeforehand(const QString &file) const
{
    const QFileInfo info(file);
    if (!info.exists())
        return tr("There is no such file.");
    if (!info.isFile())
        return tr("This is not a file.");
    if (!QFile(file).open(QIODevice::ReadOnly))
        return tr("The file cannot be read.");
    if (offeredInstrument(m_store.defaultInstrument()) == QStringLiteral("none"))
        return tr("No instrument is chosen: give one with --instrument.");
    const bool isVideo = isVideoSource(mediaSuffix(file));
    const QString format = isVideo ? m_store.defaultVideoFormat() : m_store.defaultAudioFormat();
    if (offeredFormat(format, true) == QStringLiteral("none"))
        return tr("No format is chosen: give one with --format.");
    if (!isVideo && !audioFormats().contains(format))
        return tr("An audio file cannot be saved as %1: it has no picture.").arg(format);
    return {};
}

bool BatchRunner::runFile(const QString &file)
{
    if (const QString why = refusedBeforehand(file); !why.isEmpty())
        return fail(file, why);
    m_file = file;
    m_message.clear();
    m_lastStage.clear();
    m_isClosed = false;
    m_window.openWindow(QFileInfo(file).absoluteFilePath());
    if (m_isInterrupted)
        return fail(file, tr("Interrupted."));
    if (m_isClosed)
        return fail(file, m_message);
    m_window.startProcess();
    waitForEnd();
    clearProgress();
    if (m_isInterrupted)
        return fail(file, tr("Interrupted."));
    if (layer() != QStringLiteral("success"))
        return fail(file, m_message);
    for (const QString &result : {m_window.results().main, m_window.results().mix})
        m_results << QDir::toNativeSeparators(result) << Qt::endl;
    return true;
}

bool BatchRunner::fail(const QString &file, const QString &why)
{
    m_notes << printable(QFileInfo(file).fileName()) << ": " << printable(why) << Qt::endl;
    return false;
}

void BatchRunner::waitForEnd()
{
    QEventLoop loop;
    m_loop = &loop;
    if (layer() != QStringLiteral("success") && layer() != QStringLiteral("select_instrument"))
        loop.exec();
    m_loop = nullptr;
}

QString BatchRunner::layer() const
{
    return m_window.rootObject()->property("currentLayer").toString();
}

void BatchRunner::layerChanged()
{
    showProgress();
    const bool isOver =
        layer() == QStringLiteral("success") || layer() == QStringLiteral("select_instrument");
    if (m_loop && isOver)
        m_loop->quit();
}

void BatchRunner::showProgress()
{
    const QObject *view = m_window.rootObject();
    const auto number = [&](const char *name) { return view->property(name).toDouble(); };
    const BatchProgress progress{layer(), number("uploadingPercent"),
                                 (number("downloading1Percent") + number("downloading2Percent"))
                                     / 2,
                                 int(number("remainingProcessingTime"))};
    const QString name = printable(QFileInfo(m_file).fileName());
    if (m_isTerminal) {
        m_notes << "\r\033[K" << progressBar(progress, name, terminalColumns) << Qt::flush;
        return;
    }
    // In a log file one line per stage is enough.
    if (progress.layer == m_lastStage || stageText(progress).isEmpty())
        return;
    m_lastStage = progress.layer;
    m_notes << name << ": " << stageText(progress) << Qt::endl;
}

void BatchRunner::clearProgress()
{
    if (m_isTerminal)
        m_notes << "\r\033[K" << Qt::flush;
}
