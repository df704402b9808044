# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# For the scripts that try something under Wine: sourced with $root, the folder that they may write to. Makes a Wine prefix
# and a display there, which end with the script, names an $ffmpeg, and counts in $faults what did not go as expected.
#   TEKO_WINDOWS_FFMPEG   an ffmpeg.exe; without it npm fetches one, for trying only
# shellcheck shell=bash
ffmpeg=${TEKO_WINDOWS_FFMPEG-}
if [[ -z $ffmpeg ]]; then
    ffmpeg=build/tools/ffmpeg/ffmpeg.exe
    [[ -e $ffmpeg ]] || {
        command -v npm >/dev/null || {
            echo "Set TEKO_WINDOWS_FFMPEG to an ffmpeg.exe, or install npm." >&2
            exit 1
        }
        mkdir -p build/tools/ffmpeg
        (cd build/tools/ffmpeg && npm pack --silent @ffmpeg-installer/win32-x64 && tar -xzf ./*.tgz --strip-components=1)
    }
fi

# Wine makes links into the home folder: nobody's real one.
mkdir -p "$root/home"
export HOME=$root/home WINEPREFIX=$root/wine WINEDEBUG=-all QSG_RHI_BACKEND=opengl
exec 9> >(cat >"$root/display")
Xvfb -displayfd 9 -screen 0 1280x900x24 >/dev/null 2>&1 &
xvfb=$!
trap 'wineserver -k 2>/dev/null || true; kill $xvfb' EXIT
until [[ -s $root/display ]]; do sleep 0.1; done
DISPLAY=:$(<"$root/display")
export DISPLAY
wineboot -i >/dev/null 2>&1
# A program that crashes ends, with its stack in the log, and does not wait for somebody to close a window.
wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null
home=$WINEPREFIX/drive_c/users/$(wine cmd /c 'echo %USERNAME%' | tr -d '\r')

faults=0
# expect WHAT COMMAND…: notes whether the command succeeds.
expect() {
    if "${@:2}" >>"$root/log" 2>&1; then
        echo "ok     $1"
    else
        echo "FAULT  $1"
        faults=$((faults + 1))
    fi
}
# within SECONDS COMMAND…: whether it succeeds by then.
within() {
    local end=$((SECONDS + $1))
    until "${@:2}" >/dev/null 2>&1; do
        ((SECONDS < end)) || return 1
        sleep 0.3
    done
}
not() { ! "$@"; }
is_empty() { [[ -z $(ls -A "$1" 2>/dev/null) ]]; }
# Wine shows a process under its Windows name. Others may be at work in prefixes of their own.
is_running() {
    local process
    for process in $(pgrep -u "$EUID" -f "(^|[\\\\/])$1( |\$)"); do
        tr '\0' '\n' <"/proc/$process/environ" | grep -qx "WINEPREFIX=$WINEPREFIX" && return
    done
    return 1
}
