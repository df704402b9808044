// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/taskbar.h"

#include <QObject>

class ProcessingView;

/// Shows on the processing window's taskbar button how far a run is.
class RunInTaskbar final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object. The root is that of the view.
    RunInTaskbar(const QWidget &window, const ProcessingView &view, const QObject &root);

private slots:
    void update();

private:
    const ProcessingView &m_view;
    TaskbarProgress m_bar;
};
