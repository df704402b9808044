// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Files and folders that the program and its children create from now on can be used by their
/// owner alone, where the system works that way. Call once, before any thread.
void restrictNewFilesToOwner();

} // namespace localservice
