#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Makes the files of a release from the last commit, with their checksums, in build/packages. The same commit makes the same
# bytes, wherever it was checked out; those for Windows with TEKO_WINDOWS_SYSROOT in the same folder.
#   scripts/package.sh windows   the installer and the ZIP; needs TEKO_WINDOWS_SYSROOT (docs/windows.md)
#   scripts/package.sh deb       the Debian package, checked by lintian
set -euo pipefail
cd "$(dirname "$0")/.."
kind=${1-}
[[ $kind == windows || $kind == deb ]] || {
    echo "Usage: scripts/package.sh windows|deb" >&2
    exit 2
}
# Qt's compiler of views writes in the order of its hashes and of its objects' addresses: neither shall be random.
if [[ -z ${QT_HASH_SEED-} ]]; then
    export QT_HASH_SEED=0
    exec setarch -R scripts/package.sh "$kind"
fi
packages=$PWD/build/packages
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
[[ -z $(git status --porcelain --untracked-files=no) ]] || echo "There are changes that are not in the commit; they are left out." >&2

# Those addresses follow the lengths of the folders' names, too: it is always the same folder.
place=/tmp/teko-package
mkdir "$place" || {
    echo "Another one is at work in $place, or was interrupted there: remove the folder then." >&2
    exit 1
}
trap 'rm -rf "$place"' EXIT
git archive HEAD | tar -x -C "$place"
cd "$place"
build=build/package-$kind
if [[ $kind == windows ]]; then
    scripts/build-windows.sh "$build"
else
    scripts/setup.sh build run
    cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr
    cmake --build "$build"
fi
scripts/setup.sh package
(cd "$build" && cpack)

shopt -s nullglob
if [[ $kind == deb ]]; then
    files=("$build"/*.deb)
    older=("$packages"/*.deb)
    appstreamcli validate --no-net packaging/linux/teko.metainfo.xml
    lintian --fail-on error "${files[@]}"
else
    files=("$build"/*.exe "$build"/*.zip)
    older=("$packages"/*.exe "$packages"/*.zip)
fi
mkdir -p "$packages"
rm -f "${older[@]}"
mv "${files[@]}" "$packages"
(cd "$packages" && find . -maxdepth 1 -type f ! -name SHA256SUMS -printf '%P\n' | sort | xargs sha256sum >SHA256SUMS && cat SHA256SUMS)
