// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/connectivity.h"

#include "base/programdata.h"
#include "service/textreply.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {

struct Connectivity
{
    Q_DECLARE_TR_FUNCTIONS(Connectivity)
};

} // namespace

void checkConnectivity(QNetworkAccessManager &network, const QUrl &url, QObject *context,
                       std::function<void(bool isOnline)> done)
{
    QNetworkReply *reply = network.get(plainRequest(url));
    QObject::connect(reply, &QNetworkReply::finished, context, [reply, done = std::move(done)] {
        reply->deleteLater();
        done(reply->error() == QNetworkReply::NoError);
    });
    QObject::connect(context, &QObject::destroyed, reply, [reply] {
        reply->disconnect();
        reply->abort();
        reply->deleteLater();
    });
}

bool online(QNetworkAccessManager &network, const QUrl &url, const QObject *context)
{
    bool isOnline = false;
    QEventLoop loop;
    QObject::connect(&network, &QObject::destroyed, &loop, &QEventLoop::quit);
    QObject::connect(context, &QObject::destroyed, &loop, &QEventLoop::quit);
    checkConnectivity(network, url, &loop, [&](bool result) {
        isOnline = result;
        loop.quit();
    });
    loop.exec();
    return isOnline;
}

OfflineNotice offlineNotice(const ProgramData &store)
{
    const QString log = store.embeddedServiceLog();
    if (log.isEmpty())
        return {Connectivity::tr("No Internet Connection"),
                Connectivity::tr(
                    "An active internet connection is required to use current application\n"
                    "Please check your network settings and try again.")};
    return {Connectivity::tr("Processing Service"),
            Connectivity::tr("The processing service of this computer does not answer.\n"
                             "Its log may say why:\n\n%1")
                .arg(QDir::toNativeSeparators(log))};
}
