// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

// The test classes of programs that hold several.
QObject *makeAccountStoresTest();
QObject *makeServerLimitsTest();
QObject *makeServiceAccountsTest();
QObject *makeServiceJobsTest();
QObject *makeServiceRequestsTest();
