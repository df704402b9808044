// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/accounts.h"
#include "localservice/api/processing.h"
#include "localservice/api/servicestatus.h"
#include "localservice/http/hostpolicy.h"

namespace localservice {

/// What the request handlers work with.
struct Backend
{
    Processing &processing;
    Accounts &accounts;
    ServiceStatus &status;
    JobStore &jobs;
    ArrivingFiles &arriving;
    const DataFolder &folder;
    std::uint64_t maxUploadBytes = 0;
};

} // namespace localservice
