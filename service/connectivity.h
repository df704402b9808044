// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QNetworkAccessManager;
class QUrl;

/// Whether the address can be reached: one GET, awaited in a local event loop without a time limit.
/// Any answer without a network error counts, whatever its status. False as well when there is no
/// address, the program quits or the manager dies meanwhile; the caller must expect that its own
/// object may be gone afterwards.
[[nodiscard]] bool online(QNetworkAccessManager &network, const QUrl &url);
