// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Whether SO_REUSEADDR lets a service take over the port of one that has ended, and of no other.
extern const bool canReusePorts;

} // namespace localservice
