// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/permissions.h"

#include <sys/stat.h>

namespace localservice {

void restrictNewFilesToOwner()
{
    umask(S_IRWXG | S_IRWXO);
}

} // namespace localservice
