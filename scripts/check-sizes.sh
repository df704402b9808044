#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Fails for a source file over 400 lines or a function over 45, and prints the medians. A function's lines are those between its
# braces, which stand at the beginning of a line.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' '*.qml' '*.js' '*.py' '*.sh')

status=0
while read -r lines file; do
    [[ $file == total ]] && continue
    echo "$file has $lines lines" >&2
    status=1
done < <(wc -l "${files[@]}" | awk '$1 > 400')

functions=$(printf '%s\n' "${files[@]}" | grep '\.cpp$' | grep -v '^tests/' | xargs -d '\n' awk '
    FNR == 1 { inside = 0 }
    /^\{$/ { inside = 1; start = FNR; next }
    inside && /^\}$/ { inside = 0; print FNR - start - 1, FILENAME ":" start - 1 }
    /^\};/ { inside = 0 }' | sort -n)
echo "$functions" | awk '{ lengths[NR] = $1 } END { printf "%d functions, median %d, 95 %% under %d, longest %d lines\n",
    NR, lengths[int((NR + 1) / 2)], lengths[int(NR * 0.95)] + 1, lengths[NR] }'
if long=$(echo "$functions" | awk '$1 > 45' | grep .); then
    printf 'A function is too long:\n%s\n' "$long" >&2
    status=1
fi
exit $status
