// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class AccountClient;
class ProgramData;

/// Signs the user out on their own wish: on this computer at once, and at the service as soon as
/// that hears of it. Nobody waits for its answer, and without one the session there ends by itself
/// some day.
void signOut(ProgramData &store, AccountClient &client);
