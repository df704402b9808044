// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batchoptions.h"

#include "base/mediaformats.h"
#include "base/version.h"
#include "batch/console.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

QString helpText()
{
    return QStringLiteral(
               "Usage: teko-batch [--instrument I] [--format F] [--save DIR] FILE...\n"
               "\n"
               "Takes one instrument out of each audio or video file and saves two results:\n"
               "the instrument alone, and the mix without it.\n"
               "\n"
               "  -i, --instrument I  %1\n"
               "  -f, --format F      for any file:       %2\n"
               "                      for a video as well: %3\n"
               "  -s, --save DIR      the folder for the results\n"
               "  -h, --help          shows this text\n"
               "  -v, --version       shows the version\n"
               "\n"
               "What is left out comes from the program's settings.\n"
               "Progress and messages go to standard error. The paths of the results go to\n"
               "standard output, one a line: first the instrument, then the mix without it.\n"
               "\n"
               "Exit code: 0 when every file succeeded, 1 when one failed, 2 for a wrong call.\n"
               "\n"
               "Examples:\n"
               "  teko-batch song.mp3 --instrument vocals --format mp3\n"
               "  teko-batch -i drums -f flac -s ~/Practice *.wav\n"
               "  teko-batch -i guitar -f mp4 concert.mp4\n")
        .arg(instruments().join(QStringLiteral(", ")),
             audioFormats().join(QStringLiteral(", ")).toLower(),
             videoFormats().join(QStringLiteral(", ")).toLower());
}

BatchOptions refusal(const QString &why)
{
    BatchOptions options;
    options.action = BatchOptions::Action::Refuse;
    options.text = why + QStringLiteral("\nTry 'teko-batch --help'.");
    return options;
}

BatchOptions showText(const QString &text)
{
    BatchOptions options;
    options.action = BatchOptions::Action::ShowText;
    options.text = text;
    return options;
}

QString absolutePath(const QString &path)
{
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

BatchOptions checked(BatchOptions options)
{
    if (!options.instrument.isEmpty() && !instruments().contains(options.instrument)) {
        return refusal(QStringLiteral("Unknown instrument '%1'. Choose one of: %2.")
                           .arg(options.instrument, instruments().join(QStringLiteral(", "))));
    }
    const QStringList formats = audioFormats() + videoFormats();
    if (!options.format.isEmpty() && !formats.contains(options.format)) {
        return refusal(
            QStringLiteral("Unknown format '%1'. Choose one of: %2.")
                .arg(options.format.toLower(), formats.join(QStringLiteral(", ")).toLower()));
    }
    if (options.files.isEmpty())
        return refusal(QStringLiteral("No file was given."));
    return options;
}

} // namespace

BatchOptions parseBatchOptions(const QStringList &arguments)
{
    const auto option = [](const char *shortName, const char *longName, const char *value) {
        return QCommandLineOption({QString::fromLatin1(shortName), QString::fromLatin1(longName)},
                                  QString(), QString::fromLatin1(value));
    };
    const auto instrument = option("i", "instrument", "I");
    const auto format = option("f", "format", "F");
    const auto save = option("s", "save", "DIR");
    const auto help = option("h", "help", "");
    const auto version = option("v", "version", "");
    QCommandLineParser parser;
    parser.addOptions({instrument, format, save, help, version});
    const bool isRead = parser.parse(arguments);
    if (parser.isSet(help))
        return showText(helpText());
    if (!isRead)
        return refusal(parser.errorText());
    if (parser.isSet(version))
        return showText(QStringLiteral("teko-batch %1\n").arg(QLatin1String(appVersion)));
    BatchOptions options;
    options.instrument = parser.value(instrument).toLower();
    options.format = parser.value(format).toUpper();
    options.saveFolder = absolutePath(parser.value(save));
    for (const QString &argument : parser.positionalArguments())
        options.files << filesNamedBy(argument);
    return checked(options);
}
