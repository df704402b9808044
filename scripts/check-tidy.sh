#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Runs clang-tidy over the sources that the last commits and the working tree changed.
# Usage: scripts/check-tidy.sh BUILD [BASE]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh tidy
build=$1
base=${2-$(git rev-parse -q --verify HEAD~1 || git hash-object -t tree /dev/null)}
mapfile -t changed < <(git diff --name-only --diff-filter=d "$base" -- '*.cpp' ':!tests' ':!bench' ':!*_win.cpp')
((${#changed[@]} == 0)) && exit 0
printf '%s\0' "${changed[@]}" | xargs -0 -P2 -n1 clang-tidy-14 -p "$build" --quiet
