// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "servicetests.h"
#include "tests/support/testmain.h"

int main(int argc, char **argv)
{
    return runTest(argc, argv, makeAccountStoresTest) + runTest(argc, argv, makeServiceJobsTest);
}
