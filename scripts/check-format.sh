#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Fails when clang-format or qmlformat would change a file, or the desktop entry is not valid; tells which.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
mapfile -t views < <(git ls-files --cached --others --exclude-standard '*.qml')
clang-format-14 --dry-run --Werror "${sources[@]}"
desktop-file-validate packaging/linux/teko.desktop

qmlformat=$(command -v qmlformat6 || echo /usr/lib/qt6/bin/qmlformat)
status=0
for view in "${views[@]}"; do
    if ! "$qmlformat" "$view" | cmp -s - "$view"; then
        echo "qmlformat would change $view" >&2
        status=1
    fi
done
exit $status
