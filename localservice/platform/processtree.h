// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

// These may be called between fork and exec of a program with threads. They do nothing on systems
// without support.

/// The calling process gets another name for the system's tools, in at most 15 characters.
void renameProcess(const char *name);
/// The calling process is killed when its parent dies.
void dieWithParent();
/// Processes whose parents have died become children of the calling process, if they descend from
/// it.
void adoptOrphans();
/// Kills the calling process' children, including those of ended ones that it has adopted; returns
/// when all have ended.
void killChildren();

} // namespace localservice
