#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing of Debian's packages. Usage: scripts/setup.sh [build] [run] [check] [tidy] [windows] [wine] [package]
set -euo pipefail

build=(g++ cmake ninja-build pkg-config ca-certificates git
    qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
    libpoco-dev libsndfile1-dev libkissfft-dev libsodium-dev)
run=(ffmpeg libqt6svg6 qt6-qpa-plugins qt6-wayland libgl1-mesa-dri fonts-liberation fonts-dejavu-core
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
    qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-templates qml6-module-qtquick-window)
check=(clang-format-14 qml6-module-qttest xvfb xauth curl python3 iproute2 desktop-file-utils)
tidy=(clang-tidy-14)
windows=(g++-mingw-w64-x86-64-posix)
wine=(wine wine64 xvfb xdotool imagemagick ffmpeg curl python3 procps)
package=(nsis zip lintian appstream dpkg-dev fakeroot)

wanted=()
for group in "$@"; do
    declare -n packages=$group
    wanted+=("${packages[@]}")
done
if ! command -v apt-get >/dev/null; then
    echo "This is no Debian system, so nothing is installed. The program needs what Debian calls ${wanted[*]}" >&2
    exit 0
fi
missing=()
for package in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
((${#missing[@]} == 0)) && exit 0

as_root=()
if ((EUID != 0)); then
    command -v sudo >/dev/null || {
        echo "Please install these packages as root: ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}" >&2
# Everything that apt prints goes to standard error: standard output belongs to the program's results.
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "$@" >&2; }
# A fresh machine knows no packages yet. Without a network the lists that are there may still do.
apt update || echo "The package lists could not be renewed, going on with those that are there." >&2
apt install -y --no-install-recommends "${missing[@]}"
