#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Fails on any warning of qmllint. Usage: scripts/check-qml.sh BUILD
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(cmake --build "$1" --target all_qmllint 2>&1) || {
    echo "$out"
    exit 1
}
if grep -qiE '^(Warning|Info):' <<<"$out"; then
    echo "$out"
    exit 1
fi
