// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QUrl>

/// The address of a path such as "/generate_204" under a base URL; empty when there is no base.
[[nodiscard]] QUrl urlBelow(const QUrl &base, const QString &path);

/// URLs of the service, connectivity check and web site. An empty URL means: not available.
struct ServiceEndpoints
{
    QUrl base; ///< the processing service, without a trailing slash
    QUrl connectivity; ///< answers HTTP 204 while the service can be reached
    QUrl website; ///< the maker's web site, without a trailing slash

    /// The address of an operation such as "auth/login.php".
    [[nodiscard]] QUrl operation(const QString &path) const;

    bool operator==(const ServiceEndpoints &) const = default;
};

/// The account that the embedded service keeps for whoever uses this machine.
struct LocalAccount
{
    QString email;
    QString hash;

    bool operator==(const LocalAccount &) const = default;
};
