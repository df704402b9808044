// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/permissions.h"

namespace localservice {

// A user's folders can be read by this user alone. For others the operator sees to it.
void restrictNewFilesToOwner() { }

} // namespace localservice
