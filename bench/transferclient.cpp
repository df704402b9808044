// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0

/// Moves one upload, or two downloads at once, through the program's client, for the benchmark:
///     transferclient SERVICE up FILE
///     transferclient SERVICE down TARGET TARGET
#include "base/programdata.h"
#include "service/tekoserver.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

void endOnError(TekoServer &server)
{
    QObject::connect(&server, &TekoServer::showError, &server, [](const QString &message) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
        QCoreApplication::exit(1);
    });
}

void upload(TekoServer &server, const QString &file)
{
    QObject::connect(&server, &TekoServer::savedWithId, &server, [] { QCoreApplication::exit(0); });
    server.uploadFile(QStringLiteral("vocals"), file, QStringLiteral("song"),
                      QStringLiteral("hash"), QStringLiteral("full"), file, QStringLiteral("wav"));
}

void download(TekoServer &server, const QString &first, const QString &second)
{
    const auto countWhole = [whole = std::make_shared<int>(0)](double percent) {
        if (percent == 100 && ++*whole == 2)
            QCoreApplication::exit(0);
    };
    QObject::connect(&server, &TekoServer::downloadingFirst, &server, countWhole);
    QObject::connect(&server, &TekoServer::downloadingSecond, &server, countWhole);
    server.downloadBoth(1, first, second, -1);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const QTemporaryDir folder;
    ProgramData store(folder.filePath(QStringLiteral("teko.ini")));
    store.setEndpointSource([&] { return ServiceEndpoints{QUrl(arguments.value(1)), {}, {}}; });
    TekoServer server(store);
    endOnError(server);
    if (arguments.value(2) == QLatin1String("up") && argc == 4)
        upload(server, arguments[3]);
    else if (arguments.value(2) == QLatin1String("down") && argc == 5)
        download(server, arguments[3], arguments[4]);
    else
        return 2;
    return app.exec();
}
