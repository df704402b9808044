// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingrules.h"

#include "base/mediaformats.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryFile>

#include <algorithm>

namespace {

struct ProcessingRules
{
    Q_DECLARE_TR_FUNCTIONS(ProcessingRules)
};

bool isWritable(const QString &folder)
{
    // Permissions are not reliable on network drives and read-only mounts.
    return !folder.isEmpty() && QTemporaryFile(folder + QStringLiteral("/teko-XXXXXX")).open();
}

} // namespace

QString temporaryWavPath(const QString &folder, QRandomGenerator64 &random)
{
    static const QLatin1String letters(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789");
    QString name(16, Qt::Uninitialized);
    std::ranges::generate(
        name, [&] { return QChar(letters.at(random.bounded(qsizetype(letters.size())))); });
    return QStringLiteral("%1/%2.wav").arg(folder, name);
}

QString unusableFolder(const QString &saveFolder, const QString &tempFolder)
{
    if (!isWritable(saveFolder))
        return ProcessingRules::tr("The folder for saved files cannot be used.\nPlease "
                                   "choose another one in the settings.");
    if (!isWritable(tempFolder))
        return ProcessingRules::tr("The folder for temporary files cannot be used.");
    return {};
}

bool isFileOfThisMachine(const QString &path)
{
    const QFileInfo file(path);
    return file.isAbsolute() && file.isFile();
}

QString noPictureText(const QString &extension)
{
    return ProcessingRules::tr(
               "This file has no picture, so that it cannot be saved as %1.\nPlease "
               "choose one of the audio formats: %2.")
        .arg(extension.toUpper(), audioFormats().join(QStringLiteral(", ")));
}

QString unconvertedText(const QString &result, const QStringList &savedInstead)
{
    const QString text = ProcessingRules::tr("The result could not be converted:\n\n%1")
                             .arg(QDir::toNativeSeparators(result));
    if (savedInstead.isEmpty())
        return text;
    return text + QStringLiteral("\n\n")
        + ProcessingRules::tr("What the service delivered was saved unconverted:\n\n%1")
              .arg(QDir::toNativeSeparators(savedInstead.join(u'\n')));
}

QString unsavedText(const QString &result)
{
    return ProcessingRules::tr("The result could not be saved:\n\n%1")
        .arg(QDir::toNativeSeparators(result));
}

QString missingText(const QString &result)
{
    return ProcessingRules::tr("Downloaded files not exists:\n\n%1")
        .arg(QDir::toNativeSeparators(result));
}

QString offeredInstrument(const QString &stored)
{
    const QString instrument = stored.toLower();
    return instruments().contains(instrument) ? instrument : QStringLiteral("none");
}

QString offeredFormat(const QString &stored, bool isVideo)
{
    const bool isOffered =
        audioFormats().contains(stored) || (isVideo && videoFormats().contains(stored));
    return isOffered ? stored : QStringLiteral("none");
}
