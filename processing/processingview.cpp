// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingview.h"

#include "base/mediaformats.h"
#include "base/programdata.h"
#include "processing/processingrules.h"

#include <QFileInfo>
#include <QMetaObject>
#include <QVariant>

ProcessingView::ProcessingView(QObject &root)
    : m_root(root)
{ }

void ProcessingView::presentFile(const QString &path, const ProgramData &store)
{
    const bool isVideo = isVideoSource(mediaSuffix(path));
    const QString format = isVideo ? store.defaultVideoFormat() : store.defaultAudioFormat();
    set("isChecking", true);
    set("fileName", QFileInfo(path).fileName());
    setLayer("select_instrument");
    set("selectedInstrument", offeredInstrument(store.defaultInstrument()));
    set("selectedOutputFormat", offeredFormat(format, isVideo));
    set("isVideo", isVideo);
    set("playerForVideo", store.defaultVideoPlayer());
    set("playerForAudio", store.defaultAudioPlayer());
}

void ProcessingView::hideBusyOverlay()
{
    set("isChecking", false);
}

void ProcessingView::setLayer(const char *layer)
{
    set("currentLayer", QString::fromLatin1(layer));
}

bool ProcessingView::isLayer(const char *layer) const
{
    return m_root.property("currentLayer").toString() == QLatin1String(layer);
}

bool ProcessingView::isBusy() const
{
    return m_root.property("busy").toBool();
}

QString ProcessingView::instrument() const
{
    return m_root.property("selectedInstrument").toString();
}

QString ProcessingView::extension() const
{
    return m_root.property("selectedOutputFormat").toString().toLower();
}

void ProcessingView::setChoice(const QString &instrument, const QString &extension)
{
    set("selectedInstrument", instrument);
    set("selectedOutputFormat", extension);
    set("isVideo", isVideoSource(extension));
}

void ProcessingView::resetCounters()
{
    for (const char *name : {"uploadingPercent", "downloading1Percent", "downloading2Percent",
                             "remainingProcessingTime"})
        set(name, 0);
}

void ProcessingView::showUpload(bool isUploaded)
{
    setLayer("uploading");
    if (isUploaded)
        setUploadPercent(100);
}

void ProcessingView::setUploadPercent(double percent)
{
    set("uploadingPercent", percent);
}

void ProcessingView::setDownloadPercent(bool isSecond, double percent)
{
    // Rounded up, a download that is not written yet would count as done.
    set(isSecond ? "downloading2Percent" : "downloading1Percent", int(percent));
}

void ProcessingView::setRemainingSeconds(int seconds)
{
    const bool isSame = remainingSeconds() == seconds;
    set("remainingProcessingTime", seconds);
    if (isSame)
        QMetaObject::invokeMethod(&m_root, "remainingProcessingTimeChanged", Qt::DirectConnection);
}

int ProcessingView::remainingSeconds() const
{
    return m_root.property("remainingProcessingTime").toInt();
}

std::optional<double> ProcessingView::percent() const
{
    const auto number = [this](const char *name) { return m_root.property(name).toDouble(); };
    if (isLayer("uploading"))
        return number("uploadingPercent");
    if (isLayer("downloading"))
        return (number("downloading1Percent") + number("downloading2Percent")) / 2;
    return {};
}

void ProcessingView::showConverting(const QString &caption)
{
    setLayer("converting");
    setConvertingText(caption);
}

void ProcessingView::setConvertingText(const QString &caption)
{
    set("convertingText", caption);
}

void ProcessingView::setDemo(bool isDemo)
{
    set("isDemo", isDemo);
}

void ProcessingView::set(const char *name, const QVariant &value)
{
    m_root.setProperty(name, value);
}
