// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"

UserAuth::UserAuth(QObject *parent)
    : QObject(parent)
{ }

void UserAuth::initialCheck()
{
    QMetaObject::invokeMethod(this, &UserAuth::signedIn, Qt::QueuedConnection);
}
