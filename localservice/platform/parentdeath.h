// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// To be called in a new child process: it is killed when its parent dies, where the system can.
void dieWithParent();

} // namespace localservice
