// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceconnection.h"

#include "base/messageboxcustom.h"
#include "service/serviceaddress.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QStandardPaths>

namespace {

ConfiguredAddresses environmentAddresses()
{
    return ConfiguredAddresses::from(QProcessEnvironment::systemEnvironment());
}

} // namespace

ServiceConnection::ServiceConnection(ProgramData &store)
    : m_store(store)
{
    const auto settings = ConfiguredAddresses::from(store);
    if (wantsEmbeddedService(environmentAddresses(), settings, compiledInServiceAddress()))
        startEmbedded();
    const QString problem =
        addressProblem(environmentAddresses(), settings, compiledInServiceAddress());
    if (!problem.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, problem] { showProblem(problem); }, Qt::QueuedConnection);
    m_store.setEndpointSource([this] { return endpoints(); });
    m_store.setStartWaiter([this](QObject *context, std::function<void()> started) {
        whenStarted(context, std::move(started));
    });
}

ServiceConnection::~ServiceConnection()
{
    m_store.setEndpointSource({});
    m_store.setStartWaiter({});
    m_store.setLocalAccount({});
    m_store.setEmbeddedServiceLog({});
}

void ServiceConnection::startEmbedded()
{
    const QString program = QStringLiteral("%1/%2").arg(QCoreApplication::applicationDirPath(),
                                                        QStringLiteral(TEKO_SERVICE_PROGRAM));
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
        + QStringLiteral("/service");
    m_service = std::make_unique<EmbeddedService>(program, folder);
    m_store.setEmbeddedServiceLog(m_service->logFile());
    connect(m_service.get(), &EmbeddedService::failed, this, &ServiceConnection::showProblem);
    connect(m_service.get(), &EmbeddedService::ready, this, [this] {
        const auto &announcement = m_service->announcement();
        m_store.setLocalAccount(LocalAccount{announcement->email, announcement->hash});
        m_store.setEmbeddedServiceLog(m_service->logFile());
    });
    m_service->start();
}

void ServiceConnection::showProblem(const QString &text)
{
    MessageBoxCustom::warning(tr("Processing Service"), text);
}

void ServiceConnection::whenStarted(QObject *context, std::function<void()> started)
{
    if (!m_service || !m_service->isStarting()) {
        QMetaObject::invokeMethod(context, std::move(started), Qt::QueuedConnection);
        return;
    }
    connect(m_service.get(), &EmbeddedService::settled, context, std::move(started),
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

ServiceEndpoints ServiceConnection::endpoints()
{
    const auto announcement = m_service ? m_service->announcement() : std::nullopt;
    return resolveEndpoints(environmentAddresses(), ConfiguredAddresses::from(m_store),
                            compiledInServiceAddress(), announcement ? announcement->url : QUrl());
}
