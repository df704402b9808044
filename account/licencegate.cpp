// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"

#include <QCoreApplication>

namespace {

struct LicenceGate
{
    Q_DECLARE_TR_FUNCTIONS(LicenceGate)
};

QString licenceText(Licence licence)
{
    switch (licence) {
    case Licence::Active:
        return LicenceGate::tr("Your subscription is active: your files are processed in full.");
    case Licence::Expired:
        return LicenceGate::tr("Your subscription has expired. Until you renew it, only the first "
                               "30 seconds of each file are processed.");
    case Licence::None:
        break;
    }
    return LicenceGate::tr("You are using a demo account: only the first 30 seconds of each file "
                           "are processed. A subscription unlocks full access.");
}

} // namespace

Licence licenceOf(const UserRecord &user)
{
    if (user.subscription.id == 0)
        return Licence::None;
    return user.subscription.expired == 0 ? Licence::Active : Licence::Expired;
}

QString runMode(const UserRecord &user)
{
    return licenceOf(user) == Licence::Active ? QStringLiteral("full") : QStringLiteral("demo");
}

bool isDailyLimitReached(int remainingFiles)
{
    return remainingFiles == 0;
}

QString welcomeText(const UserRecord &user)
{
    const QString greeting = user.name.isEmpty()
        ? LicenceGate::tr("Welcome to TEKO!")
        : LicenceGate::tr("Welcome to TEKO, %1!").arg(user.name);
    return greeting + QStringLiteral("\n\n") + licenceText(licenceOf(user));
}
