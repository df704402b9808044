// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceaddress.h"

#include <QCoreApplication>
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
    // A password in an address would show in message boxes and logs.
    return isWeb && !url.host().isEmpty() && url.userInfo().isEmpty() ? url : QUrl();
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
    return {settings.stringValue(SettingsKeys::serviceUrl.name),
            settings.stringValue(SettingsKeys::connectivityUrl.name),
            settings.stringValue(SettingsKeys::websiteUrl.name)};
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

QString addressProblem(const ConfiguredAddresses &environment, const ConfiguredAddresses &settings,
                       const QString &compiledIn)
{
    const QString configured[] = {configuredService(environment, settings, compiledIn),
                                  firstOf({environment.connectivity, settings.connectivity}),
                                  firstOf({environment.website, settings.website})};
    if (std::ranges::all_of(configured, [](const QString &address) {
            return address.isEmpty() || !webUrl(address).isEmpty();
        }))
        return {};
    // Not repeated here: it may hold a password.
    return QCoreApplication::translate(
        "ServiceAddress",
        "The address of the processing service cannot be used. It must be a web address without a "
        "user name and a password.");
}

ServiceEndpoints resolveEndpoints(const ConfiguredAddresses &environment,
                                  const ConfiguredAddresses &settings, const QString &compiledIn,
                                  const QUrl &embedded)
{
    const QString service = configuredService(environment, settings, compiledIn);
    const QString connectivity = firstOf({environment.connectivity, settings.connectivity});
    const QString website = firstOf({environment.website, settings.website});
    const QUrl base = service.isEmpty() ? baseUrl(embedded.toString()) : baseUrl(service);
    return {base,
            connectivity.isEmpty() ? urlBelow(base, QStringLiteral("/generate_204"))
                                   : webUrl(connectivity),
            website.isEmpty() ? base : baseUrl(website)};
}
