// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

class ProgramData;
class QNetworkAccessManager;
class QObject;
class QUrl;

/// Checks with one GET whether an address can be reached, without a time limit, and calls back
/// once, later, from the event loop. Any answer without a network error counts, whatever its
/// status; an empty address counts as unreachable. When the context is destroyed first, the request
/// is aborted.
void checkConnectivity(QNetworkAccessManager &network, const QUrl &url, QObject *context,
                       std::function<void(bool isOnline)> done);

/// checkConnectivity() for a caller that waits in a local event loop. Also returns false when the
/// program quits, or the manager or the context is destroyed meanwhile; the caller must expect that
/// its own object may be gone afterwards.
[[nodiscard]] bool online(QNetworkAccessManager &network, const QUrl &url, const QObject *context);

/// The message for a service that cannot be reached. For the embedded service it names the log.
struct OfflineNotice
{
    QString title;
    QString text;
};
[[nodiscard]] OfflineNotice offlineNotice(const ProgramData &store);
