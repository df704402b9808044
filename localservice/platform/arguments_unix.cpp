// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/arguments.h"

namespace localservice {

std::vector<std::string> commandLineWords(int argc, char **argv)
{
    return {argv + 1, argv + argc};
}

} // namespace localservice
