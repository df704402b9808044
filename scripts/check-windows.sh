#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Fails where MinGW's compiler finds a fault in the program's sources as they are for Windows. Nothing is linked: the
# headers of Qt and the other libraries are those of this machine. Takes minutes. Usage: scripts/check-windows.sh [FILE…]
set -euo pipefail
cd "$(dirname "$0")/.."
compiler=x86_64-w64-mingw32-g++-posix
command -v $compiler >/dev/null || {
    echo "This check needs the package g++-mingw-w64-x86-64." >&2
    exit 1
}
sources=("$@")
if ((${#sources[@]} == 0)); then
    mapfile -t sources < <(git ls-files '*.cpp' ':!tests' ':!bench' ':!*_unix.cpp' ':!*_linux.cpp' ':!*_other.cpp')
fi

# Poco spells Windows' headers as on Windows, where the case of letters does not matter.
shims=$(mktemp -d)
trap 'rm -rf "$shims"' EXIT
for header in Winsock2 Ws2tcpip Iphlpapi Windows; do
    echo "#include <${header,,}.h>" >"$shims/$header.h"
done

qt=$(qmake6 -query QT_INSTALL_HEADERS)
options=(-fsyntax-only -std=c++20 -Wall -Wextra -Wpedantic -Wshadow -Werror -I. -isystem "$shims" -isystem "$qt")
for module in Core Gui Widgets Network Qml Quick QuickWidgets QuickControls2; do
    options+=(-isystem "$qt/Qt$module")
done
options+=(-idirafter /usr/include -idirafter /usr/include/kissfft -idirafter "/usr/include/$(gcc -print-multiarch)"
    -DNOMINMAX -DWIN32_LEAN_AND_MEAN -DUNICODE -D_UNICODE
    -DTEKO_SERVICE_URL='""' -DTEKO_SERVICE_PROGRAM='"teko-service.exe"' -DTEKO_VERSION='"0"')
printf '%s\0' "${sources[@]}" | xargs -0 -P2 -n1 $compiler "${options[@]}"
