// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceaddress.h"

#include <QProcessEnvironment>

namespace {

QString firstOf(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (!candidate.trimmed().isEmpty())
            return candidate.trimmed();
    }
    return {};
}

QString configuredService(const ConfiguredAddresses &environment,
                          const ConfiguredAddresses &settings, const QString &compiledIn)
{
    return firstOf({environment.service, settings.service, compiledIn});
}

QUrl webUrl(const QString &address)
{
    const bool hasScheme = address.contains(QLatin1String("://"));
    const QUrl url(hasScheme ? address : QLatin1String("http://") + address, QUrl::StrictMode);
    const QString scheme = url.scheme();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return isWeb && !url.host().isEmpty() ? url : QUrl();
}

QUrl connectivityOf(const QUrl &base)
{
    QUrl url = base;
    if (!url.isEmpty())
        url.setPath(url.path() + QLatin1String("/generate_204"));
    return url;
}

} // namespace

QUrl baseUrl(const QString &address)
{
    QUrl url = webUrl(address).adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    QString path = url.path();
    while (path.endsWith(u'/'))
        path.chop(1);
    url.setPath(path);
    return url;
}

ConfiguredAddresses ConfiguredAddresses::from(const QProcessEnvironment &environment)
{
    return {environment.value(QStringLiteral("TEKO_SERVICE_URL")),
            environment.value(QStringLiteral("TEKO_CONNECTIVITY_URL")),
            environment.value(QStringLiteral("TEKO_WEBSITE_URL"))};
}

ConfiguredAddresses ConfiguredAddresses::from(const ProgramData &settings)
{
    return {settings.stringValue(QStringLiteral("service_url")),
            settings.stringValue(QStringLiteral("connectivity_url")),
            settings.stringValue(QStringLiteral("website_url"))};
}

QString compiledInServiceAddress()
{
    return QStringLiteral(TEKO_SERVICE_URL);
}

bool wantsEmbeddedService(const ConfiguredAddresses &environment,
                          const ConfiguredAddresses &settings, const QString &compiledIn)
{
    return configuredService(environment, settings, compiledIn).isEmpty();
}

ServiceEndpoints resolveEndpoints(const ConfiguredAddresses &environment,
                                  const ConfiguredAddresses &settings, const QString &compiledIn,
                                  const QUrl &embedded)
{
    const QString service = configuredService(environment, settings, compiledIn);
    const QString connectivity = firstOf({environment.connectivity, settings.connectivity});
    const QString website = firstOf({environment.website, settings.website});
    const QUrl base = service.isEmpty() ? baseUrl(embedded.toString()) : baseUrl(service);
    return {base, connectivity.isEmpty() ? connectivityOf(base) : webUrl(connectivity),
            website.isEmpty() ? base : baseUrl(website)};
}
