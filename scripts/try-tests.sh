#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Builds the test programs for Windows and runs them under Wine, in a prefix of its own: it lends them user folders, which
# Windows does not. Left out are the views' tests, which show nothing of Windows, and those that work with the real ffmpeg: they
# need ffprobe and names that Windows does not know, and scripts/try-windows.sh plays the same.
# Usage: scripts/try-tests.sh [PROGRAM…]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build windows wine
root=$PWD/build/try-tests
rm -rf "$root"
mkdir -p "$root"
# shellcheck source=scripts/wine-prefix.sh
source scripts/wine-prefix.sh
cmake --preset windows -DBUILD_TESTING=ON >/dev/null
cmake --build --preset windows >/dev/null
cp "$ffmpeg" build/windows/bin

sysroot=$(sed -n 's/^TEKO_WINDOWS_SYSROOT:PATH=//p' build/windows/CMakeCache.txt)
export WINEPATH="Z:${sysroot//\//\\}\\bin" QT_PLUGIN_PATH=Z:$sysroot/plugins QML2_IMPORT_PATH=Z:$sysroot/qml
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software TEKO_TESTS_MAY_USE_MY_FOLDERS=1
# A program writes what it found into files in the folder that it was started in.
runs() {
    local status=0
    (cd "$root/$name" && timeout 300 wine "$PWD/../../../$1" </dev/null) || status=$?
    cat "$root/$name"/Test*.txt >"$root/$name/all.txt" 2>/dev/null
    return $status
}
find build/windows/bin build/windows/fake -name 'tst_*.exe' | sort >"$root/programs"
while read -r program; do
    name=$(basename "$program" .exe)
    [[ " tst_batch tst_conversions tst_endtoend " == *" $name "* ]] && continue
    [[ $# == 0 || " $* " == *" $name "* ]] || continue
    mkdir "$root/$name"
    expect "$name" runs "$program"
    tr -d '\r' <"$root/$name/all.txt" | grep -aE '^(FAIL|SKIP|QFATAL|Totals)' | sed 's/^/       /' || true
done <"$root/programs"

echo "Details: $root."
exit $((faults > 0))
