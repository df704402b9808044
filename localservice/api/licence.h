// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace localservice {

/// The subscription that every account of this service has.
enum class Subscription { Active, None, Expired };

/// What the accounts of this service may do.
struct Licence
{
    Subscription subscription = Subscription::Active;
    int filesPerDay = 0; ///< 0: no limit
    bool takesRegistrations = true; ///< new accounts
    std::int64_t accountBytes = 0; ///< that an account may keep on the disk; 0: no limit
};

} // namespace localservice
