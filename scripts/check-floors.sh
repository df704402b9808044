#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Fails when a room includes one that does not stand below it (docs/architecture.md), or when the client and the local
# service include each other. Linking does not catch it: a static library may call into one that is linked later.
set -euo pipefail
cd "$(dirname "$0")/.."

# Bottom first; rooms on one line share a floor.
client="base
qml
results
service
account
processing settings archive
app batch"
service="base
platform
engine
store
jobs
http
api
server"

# check ROOT FLOORS: prints each include of a file under ROOT that does not lead down.
check() {
    local root=$1 floors=$2
    git ls-files --cached --others --exclude-standard "$root*.cpp" "$root*.h" |
        xargs -r -d '\n' grep -HoE '^#include "[^"]+"' |
        awk -v root="$root" -v floors="$floors" '
            function room(path) { sub("^" root, "", path); return path ~ "/" ? substr(path, 1, index(path, "/") - 1) : "" }
            BEGIN {
                height = split(floors, rows, "\n")
                for (i = 1; i <= height; ++i) {
                    count = split(rows[i], names, " ")
                    for (j = 1; j <= count; ++j)
                        floor[names[j]] = i
                }
            }
            {
                file = substr($0, 1, index($0, ":") - 1)
                split($0, parts, "\"")
                from = room(file)
                if (from ~ /^(|tests|bench|training|localservice)$/)
                    next
                if (!(from in floor)) {
                    print file " stands in no room"
                    next
                }
                other = index(parts[2], "localservice/") == 1
                to = room(parts[2])
                if (other != (root != "") || !(to in floor) || (to != from && floor[to] >= floor[from]))
                    print file " may not include " parts[2]
            }'
}

found=$(
    check "" "$client"
    check "localservice/" "$service"
    git ls-files --cached --others --exclude-standard 'localservice/*.cpp' 'localservice/*.h' |
        xargs -r -d '\n' grep -HE '^#include (<Q[A-Z]|"(base|results|service|account|processing|settings|archive|app|batch)/)' || true
)
[[ -z $found ]] || {
    echo "$found" >&2
    exit 1
}
