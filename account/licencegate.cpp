// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"

QString runMode(const UserRecord &user)
{
    const bool isPaid = user.subscription.id != 0 && user.subscription.expired == 0;
    return isPaid ? QStringLiteral("full") : QStringLiteral("demo");
}

bool isDailyLimitReached(int remainingFiles)
{
    return remainingFiles == 0;
}
