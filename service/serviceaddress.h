// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/programdata.h"

class QProcessEnvironment;

/// Addresses from one configuration source, as written there; empty: not configured.
struct ConfiguredAddresses
{
    QString service;
    QString connectivity;
    QString website;

    /// TEKO_SERVICE_URL, TEKO_CONNECTIVITY_URL and TEKO_WEBSITE_URL.
    [[nodiscard]] static ConfiguredAddresses from(const QProcessEnvironment &environment);
    /// "service_url", "connectivity_url" and "website_url".
    [[nodiscard]] static ConfiguredAddresses from(const ProgramData &settings);
};

/// An address to which paths are appended: without query, fragment and trailing slashes. An
/// address without a scheme means http. Returns an empty URL for one that is no web address or
/// contains a user name or a password.
[[nodiscard]] QUrl baseUrl(const QString &address);

/// The service's address that was set when the program was built; usually empty.
[[nodiscard]] QString compiledInServiceAddress();

/// Whether no address of a service is configured, so that the embedded one is meant.
[[nodiscard]] bool wantsEmbeddedService(const ConfiguredAddresses &environment,
                                        const ConfiguredAddresses &settings,
                                        const QString &compiledIn);

/// Why the service's address that is configured cannot be used, for the user; empty when it can, or
/// none is configured.
[[nodiscard]] QString addressProblem(const ConfiguredAddresses &environment,
                                     const ConfiguredAddresses &settings,
                                     const QString &compiledIn);

/// The environment takes precedence over the settings, these over the compiled-in address, and that
/// over the embedded service's (empty while it does not run). A configured but unusable address
/// yields an empty URL, never a different service.
[[nodiscard]] ServiceEndpoints resolveEndpoints(const ConfiguredAddresses &environment,
                                                const ConfiguredAddresses &settings,
                                                const QString &compiledIn, const QUrl &embedded);
