#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Builds all programs for 64-bit Windows into build/windows/bin, with the libraries in the folder that TEKO_WINDOWS_SYSROOT
# names (docs/windows.md). Usage: scripts/build-windows.sh [BUILD-FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/windows}

if [[ ! -d ${TEKO_WINDOWS_SYSROOT-}/include ]]; then
    cat >&2 <<'END'
Set TEKO_WINDOWS_SYSROOT to a folder with the libraries for Windows (Qt, Poco, libsndfile, KissFFT, libsodium):
    TEKO_WINDOWS_SYSROOT=~/teko-sysroot scripts/build-windows.sh
docs/windows.md tells how to make one.
END
    exit 1
fi
scripts/setup.sh build windows
# Files that are compiled in carry this time: the same commit makes the same bytes.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
export SOURCE_DATE_EPOCH
cmake --preset windows -B "$build"
cmake --build "$build"
