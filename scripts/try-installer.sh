#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Tries under Wine the installer that scripts/package.sh windows has made, in a prefix of its own: installing, upgrading and
# uninstalling without a window. Fails when anything is not as it should be.
# Usage: scripts/try-installer.sh [INSTALLER]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh wine windows
root=$PWD/build/try-installer
shopt -s nullglob
installers=(${1+"$1"})
((${#installers[@]})) || installers=(build/packages/teko-*-windows-x64.exe)
((${#installers[@]} == 1)) || {
    echo "There is not one installer to try, but ${#installers[@]}: scripts/package.sh windows makes one." >&2
    exit 1
}
rm -rf "$root"
mkdir -p "$root/download"
cp "${installers[0]}" "$root/download/setup.exe"

# shellcheck source=scripts/wine-prefix.sh
source scripts/wine-prefix.sh
cp "$ffmpeg" "$root/download"
disk=$WINEPREFIX/drive_c
own=$home/AppData/Local/Programs/TEKO
all="$disk/Program Files/TEKO"
menu="AppData/Roaming/Microsoft/Windows/Start Menu/Programs/TEKO.lnk"
menu_of_all="$disk/ProgramData/Microsoft/Windows/Start Menu/Programs/TEKO.lnk"
list='Software\Microsoft\Windows\CurrentVersion\Uninstall\TEKO'

# installs OPTIONS…: the exit status is the installer's.
installs() { (cd "$root/download" && wine setup.exe /S "$@"); }
# An uninstaller goes on in a copy of itself and returns at once.
uninstalls() { wine "$1/Uninstall TEKO.exe" /S "${@:2}" && within 20 test ! -e "$1/Uninstall TEKO.exe" && within 10 test ! -e "$1/teko.exe"; }
runs_in() { (cd "$1" && wine teko-batch.exe --version && wine ffmpeg.exe -version >/dev/null); }
# value HIVE KEY NAME: of the registry; fails without one.
value() { wine reg query "$1\\$2" ${3:+/v "$3"}; }

fresh() {
    installs && runs_in "$own" && [[ -e $home/$menu ]] && value HKCU "$list" UninstallString &&
        value HKCU 'Software\Classes\.mp3\OpenWithProgids' TEKO.Media && not value HKLM "$list"
}
has_licences() {
    local name
    grep -q "GNU LESSER" "$own/licences/LGPL-3.txt" || return 1
    for name in $(grep -oE 'licences/[^ ,]+' "$own/LICENCES.txt"); do
        [[ -s $own/$name ]] || return 1
    done
    [[ -z $(find "$own/licences" -type l) ]]
}
replaces() {
    echo old >"$own/LICENCES.txt"
    cp "$own/libsndfile.dll" "$own/mine.dll"
    installs && runs_in "$own" && grep -q Qt "$own/LICENCES.txt" && [[ -e $own/mine.dll ]]
}
refuses_while_running() {
    local status=0
    mkfifo "$root/input"
    (cd "$own" && exec wine teko-service.exe --embedded --data ../data <"$root/input" >"$root/started") &
    exec 8>"$root/input"
    within 20 test -s "$root/started" || return 1
    echo old >"$own/LICENCES.txt"
    installs || status=$?
    exec 8>&-
    within 15 not is_running 'teko-service\.exe' && [[ $status == 2 ]] && grep -qx old "$own/LICENCES.txt"
}
refuses_folder() {
    local status=0
    installs '/D=Z:\proc\TEKO' || status=$?
    [[ $status == 2 ]] && runs_in "$own"
}
refuses_folder_of_others() {
    local status=0
    mkdir "$disk/Others"
    cp "$own/LICENCES.txt" "$disk/Others/Uninstall.exe"
    installs '/D=C:\Others' || status=$?
    [[ $status == 2 && $(ls "$disk/Others") == Uninstall.exe ]] && runs_in "$own"
}
moves() {
    installs '/D=C:\Moved' && runs_in "$disk/Moved" && [[ $(ls "$own") == mine.dll ]] && value HKCU "$list" InstallLocation | grep -F 'C:\Moved'
}
leaves_own_files() {
    mkdir -p "$home/Documents/TEKO/Save"
    touch "$home/Documents/TEKO/Save/song.mp3" "$disk/Moved/mine.txt"
    uninstalls "$disk/Moved" && [[ $(ls "$disk/Moved") == mine.txt && -e $home/Documents/TEKO/Save/song.mp3 && ! -e $home/$menu ]] &&
        not value HKCU "$list" && not value HKCU 'Software\Classes\TEKO.Media' && not value HKCU 'Software\Classes\.aac'
}
for_all() {
    installs /AllUsers && installs /AllUsers && runs_in "$all" && [[ -e $menu_of_all && ! -e $home/$menu ]] &&
        value HKLM "$list" UninstallString | grep -F /AllUsers && not value HKCU "$list"
}
# As Windows' own list does it, which starts programs without an administrator's rights. Wine lends none: the uninstaller that
# asked for them says so and waits, with the folder that it would empty in its command line.
asks_for_rights() {
    x86_64-w64-mingw32-g++ -municode -static -x c++ - -o "$root/limited.exe" -ladvapi32 <<'END' || return 1
#include <windows.h>
int wmain(int, wchar_t **words)
{
    BYTE sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    SID_AND_ATTRIBUTES administrators{sid, 0};
    HANDLE own, limited;
    STARTUPINFOW how{.cb = sizeof how};
    PROCESS_INFORMATION started;
    return !(OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own)
             && CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &size)
             && CreateRestrictedToken(own, 0, 1, &administrators, 0, nullptr, 0, nullptr, &limited)
             && CreateProcessAsUserW(limited, nullptr, words[1], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &how, &started));
}
END
    wine "$root/limited.exe" '"C:\Program Files\TEKO\Uninstall TEKO.exe" /AllUsers' &&
        within 20 is_running 'Un[^\]*\.exe"? +/Elevated /AllUsers _\?=C:\\Program Files\\TEKO\\?' && [[ -e $all/teko.exe ]] &&
        within 10 xdotool search --name "^TEKO" key Return && within 10 not is_running 'Un[^\]*\.exe.*'
}
leaves_nothing() { uninstalls "$all" /AllUsers && within 5 test ! -e "$all" && [[ ! -e $menu_of_all ]] && not value HKLM "$list"; }
keeps_ffmpeg() {
    mkdir "$disk/With"
    echo own >"$disk/With/ffmpeg.exe"
    installs '/D=C:\With' && uninstalls "$disk/With" && grep -qx own "$disk/With/ffmpeg.exe"
}
expect "installs for the user, with menu entry, \"Open with\" and the ffmpeg.exe beside it" fresh
expect "brings the licences that it names" has_licences
expect "replaces a version, not the user's file in its folder" replaces
expect "changes nothing while the program runs, and says so by code 2" refuses_while_running
expect "changes nothing when the folder cannot be written to" refuses_folder
expect "changes nothing in a folder with others' files" refuses_folder_of_others
expect "moves to another folder" moves
expect "uninstalls all but the user's files" leaves_own_files
expect "installs and upgrades for all users" for_all
expect "asks for an administrator's rights to uninstall what is for all users" asks_for_rights
expect "uninstalls for all users" leaves_nothing
expect "keeps the ffmpeg.exe that the user had put there" keeps_ffmpeg

echo "Details: $root/log."
exit $((faults > 0))
