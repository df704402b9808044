// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/serviceendpoints.h"

/// The URL of a page for the views: an absolute URL is unchanged, a path under "/teko-server/" is
/// resolved against the service, any other path against the maker's web site.
[[nodiscard]] QUrl webPage(const QString &name, const ServiceEndpoints &endpoints);
