// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

// The test classes of tst_service.
QObject *makeServerLimitsTest();
QObject *makeServiceAccountsTest();
QObject *makeServiceRequestsTest();
