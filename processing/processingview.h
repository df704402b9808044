// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

class ProgramData;
class QObject;

/// What the processing window writes to its view, and reads there: the properties of the view's
/// root object by their meaning. GUI thread only.
class ProcessingView final
{
public:
    /// The root object must outlive this one.
    explicit ProcessingView(QObject &root);

    /// Presents a file that was just chosen, with the settings' choices for it, under a cover.
    void presentFile(const QString &path, const ProgramData &store);
    /// Takes the cover away.
    void uncover();

    void setLayer(const char *layer);
    [[nodiscard]] bool isLayer(const char *layer) const;
    /// Whether the layer shows a run going on.
    [[nodiscard]] bool isBusy() const;

    [[nodiscard]] QString instrument() const;
    [[nodiscard]] QString extension() const; ///< of the output format, in lower case
    /// Shows a choice that was not made in the view.
    void setChoice(const QString &instrument, const QString &extension);

    /// Sets all percentages and times to 0.
    void resetCounters();
    void setUploadPercent(double percent);
    void setDownloadPercent(bool isSecond, double percent);
    /// Announces a number of seconds, also one that stands there already: the view asks again only
    /// after an answer.
    void setRemainingSeconds(int seconds);
    [[nodiscard]] int remainingSeconds() const;
    /// How far the transfer is that the layer shows; nothing while it shows none.
    [[nodiscard]] std::optional<double> percent() const;

    /// Shows the conversion with what it is for.
    void showConverting(const QString &caption);
    void setConvertingText(const QString &caption);
    void setDemo(bool isDemo);

private:
    void set(const char *name, const QVariant &value);

    QObject &m_root;
};
