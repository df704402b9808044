// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/processtree.h"

namespace localservice {

void renameProcess(const char *) { }

void dieWithParent() { }

void adoptOrphans() { }

void killChildren() { }

} // namespace localservice
