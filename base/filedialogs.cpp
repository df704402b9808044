// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/filedialogs.h"

#include <QFileDialog>

namespace {

QString askForFolder(const QString &caption, const QString &startFolder)
{
    return QFileDialog::getExistingDirectory(nullptr, caption, startFolder,
                                             QFileDialog::ShowDirsOnly);
}

QString askForFile(const QString &caption, const QString &startFolder, const QString &filter)
{
    QFileDialog dialog(nullptr, caption, startFolder, filter);
    const bool isAccepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    return isAccepted ? dialog.selectedFiles().constFirst() : QString();
}

} // namespace

FileDialogs FileDialogs::system()
{
    return {askForFolder, askForFile};
}
