// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// The parsed command line.
struct BatchOptions
{
    enum class Action { Process, ShowText, Refuse };

    Action action = Action::Process;
    QString text; ///< the text to show, or why the call is refused
    QString instrument; ///< as the program stores it; empty: as the settings say
    QString format; ///< upper case; empty: as the settings say
    QString saveFolder; ///< absolute; empty: as the settings say
    QStringList files; ///< absolute
};

/// Reads the arguments, the program's name first.
[[nodiscard]] BatchOptions parseBatchOptions(const QStringList &arguments);
