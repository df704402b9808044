// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/ports.h"

namespace localservice {

// With it two programs would share a port that one listens on; that of an ended one is free anyway.
const bool canReusePorts = false;

} // namespace localservice
