// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/parentdeath.h"

namespace localservice {

void dieWithParent() { }

} // namespace localservice
