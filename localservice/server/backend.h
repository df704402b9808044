// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/accounts.h"
#include "localservice/api/processing.h"

namespace localservice {

/// What the handlers of the requests work with.
struct Backend
{
    Processing &processing;
    Accounts &accounts;
    JobStore &jobs;
    ArrivingFiles &arriving;
    const DataFolder &folder;
    std::uint64_t maxUploadBytes;
    std::string
        fallbackHost; ///< "host:port", for clients that do not say how they address the service
};

} // namespace localservice
