// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/serviceendpoints.h"

/// The address of a page that the views name: a whole URL stays as it is, a path under
/// "/teko-server/" is the service's, every other path the maker's web site's.
[[nodiscard]] QUrl webPage(const QString &name, const ServiceEndpoints &endpoints);
