// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceconnection.h"

#include "app/base/messageboxcustom.h"
#include "service/serviceaddress.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QStandardPaths>

namespace {

#ifdef Q_OS_WIN
constexpr char serviceProgram[] = "teko-service.exe";
#else
constexpr char serviceProgram[] = "teko-service";
#endif

ConfiguredAddresses environmentAddresses()
{
    return ConfiguredAddresses::from(QProcessEnvironment::systemEnvironment());
}

} // namespace

ServiceConnection::ServiceConnection(ProgramData &store)
    : m_store(store)
{
    if (wantsEmbeddedService(environmentAddresses(), ConfiguredAddresses::from(store),
                             compiledInServiceAddress()))
        startEmbedded();
    m_store.setEndpointSource([this] { return endpoints(); });
}

ServiceConnection::~ServiceConnection()
{
    m_store.setEndpointSource({});
}

void ServiceConnection::startEmbedded()
{
    const QString program = QStringLiteral("%1/%2").arg(QCoreApplication::applicationDirPath(),
                                                        QLatin1String(serviceProgram));
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
        + QStringLiteral("/service");
    m_service = std::make_unique<EmbeddedService>(program, folder);
    connect(m_service.get(), &EmbeddedService::failed, this, [](const QString &message) {
        MessageBoxCustom::warning(tr("Processing Service"), message);
    });
    m_service->start();
}

ServiceEndpoints ServiceConnection::endpoints()
{
    QUrl embedded;
    if (const auto announcement = m_service ? m_service->announcement() : std::nullopt) {
        embedded = announcement->url;
        signInLocally(*announcement);
    }
    return resolveEndpoints(environmentAddresses(), ConfiguredAddresses::from(m_store),
                            compiledInServiceAddress(), embedded);
}

void ServiceConnection::signInLocally(const ServiceAnnouncement &announcement)
{
    if (!m_store.user().hash.isEmpty())
        return;
    UserRecord user;
    user.email = announcement.email;
    user.hash = announcement.hash;
    // The service on the user's own machine is his, whole and for good.
    user.subscription.id = 1;
    m_store.setUser(user);
}
