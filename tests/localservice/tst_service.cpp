// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "servicetests.h"
#include "tests/support/testmain.h"

int main(int argc, char **argv)
{
    int failed = 0;
    for (const auto make : {makeServerLimitsTest, makeServiceAccountsTest, makeServiceRequestsTest})
        failed += runTest(argc, argv, make);
    return failed;
}
