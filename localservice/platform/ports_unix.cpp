// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/ports.h"

namespace localservice {

const bool canReusePorts = true;

} // namespace localservice
