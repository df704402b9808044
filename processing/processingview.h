// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

class ProgramData;
class QObject;

/// Typed access to the properties of the processing view's root object. GUI thread only.
class ProcessingView final
{
public:
    /// The root object must outlive this one.
    explicit ProcessingView(QObject &root);

    /// Presents a file that was just chosen, with the defaults from the settings, under the busy
    /// overlay.
    void presentFile(const QString &path, const ProgramData &store);
    void hideBusyOverlay();

    void setLayer(const char *layer);
    [[nodiscard]] bool isLayer(const char *layer) const;
    /// Whether the layer shows a run in progress.
    [[nodiscard]] bool isBusy() const;

    [[nodiscard]] QString instrument() const;
    [[nodiscard]] QString extension() const; ///< of the output format, in lower case
    /// Shows a choice that was not made in the view.
    void setChoice(const QString &instrument, const QString &extension);

    /// Sets all percentages and times to 0.
    void resetCounters();
    /// Shows the layer "uploading", at 100 % for a file that the service has already.
    void showUpload(bool isUploaded);
    void setUploadPercent(double percent);
    void setDownloadPercent(bool isSecond, double percent);
    /// Sets the remaining seconds and emits the change signal even for an unchanged value: the view
    /// polls again only after an answer.
    void setRemainingSeconds(int seconds);
    [[nodiscard]] int remainingSeconds() const;
    /// How far the transfer is that the layer shows; nothing while it shows none.
    [[nodiscard]] std::optional<double> percent() const;

    /// Shows the conversion layer with a caption.
    void showConverting(const QString &caption);
    void setConvertingText(const QString &caption);
    void setDemo(bool isDemo);

private:
    void set(const char *name, const QVariant &value);

    QObject &m_root;
};
