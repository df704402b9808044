// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/runintaskbar.h"

#include "processing/processingview.h"

RunInTaskbar::RunInTaskbar(const QWidget &window, const ProcessingView &view, const QObject &root)
    : m_view(view)
    , m_bar(window)
{
    for (const char *change :
         {SIGNAL(currentLayerChanged()), SIGNAL(uploadingPercentChanged()),
          SIGNAL(downloading1PercentChanged()), SIGNAL(downloading2PercentChanged())})
        connect(&root, change, this, SLOT(update()));
}

void RunInTaskbar::update()
{
    if (!m_view.isBusy())
        m_bar.hide();
    else if (const std::optional<double> percent = m_view.percent())
        m_bar.showPercent(*percent);
    else
        m_bar.showBusy();
}
