// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/messagewatcher.h"

#include <QStringList>

/// Answers all message boxes while it lives and keeps what they said, as "TITLE: TEXT".
class RecordedMessages
{
public:
    RecordedMessages()
    {
        QObject::connect(&m_watcher, &MessageWatcher::shown, &m_watcher,
                         [this](const QString &title, const QString &text) {
                             m_texts << title + QStringLiteral(": ") + text;
                         });
    }

    [[nodiscard]] const QStringList &texts() const { return m_texts; }
    /// What was said since the last call.
    [[nodiscard]] QStringList take() { return std::exchange(m_texts, {}); }

private:
    MessageWatcher m_watcher;
    QStringList m_texts;
};
