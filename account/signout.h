// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class AccountClient;
class ProgramData;

/// Signs the user out on this computer and sends logout.php without waiting for the answer. If the
/// service cannot be reached, its session expires by itself.
void signOut(ProgramData &store, AccountClient &client);
