// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Called in a fresh child process: asks the system to kill it when its parent dies, where the
/// system can.
void dieWithParent();

} // namespace localservice
