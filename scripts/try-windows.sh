#!/usr/bin/env bash
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Tries under Wine what scripts/build-windows.sh has built, in a prefix and on a display of its own, and fails when anything
# is not as it should be. Pictures of the windows are kept in build/try-windows/pictures. docs/windows.md says what Wine
# cannot show.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh wine windows
root=$PWD/build/try-windows
programs=$root/TEKO
songs=$root/songs
pictures=$root/pictures
[[ -e build/windows/bin/teko.exe ]] || {
    echo "There is nothing to try: scripts/build-windows.sh builds it." >&2
    exit 1
}
rm -rf "$root"
mkdir -p "$songs" "$pictures"

# shellcheck source=scripts/wine-prefix.sh
source scripts/wine-prefix.sh
cmake --install build/windows --prefix "$programs" >/dev/null
cp "$ffmpeg" "$programs"
documents=$home/Documents/TEKO
service_data="$home/AppData/Local/Dravo Software/TEKO/service"

# winepath cuts long ones off.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
unix_path() {
    local path=${1//\\//}
    path=${path/#C:/$WINEPREFIX/drive_c}
    printf %s "${path/#Z:/}"
}
nothing_left() {
    within 15 not is_running 'teko[a-z-]*\.exe' && within 5 is_empty "$documents/Temp" && is_empty "$service_data/uploads" && is_empty "$service_data/work"
}
batch() { (cd "$programs" && timeout 180 wine teko-batch.exe "$@"); }
# takes NAME OPTIONS…: whether teko-batch makes two results of that song and names both.
takes() {
    local name=$1 result
    shift
    batch "$@" "$(windows_path "$songs/$name")" >"$root/results" || return 1
    [[ $(wc -l <"$root/results") == 2 ]] || return 1
    while IFS= read -r result; do
        [[ -s $(unix_path "${result%$'\r'}") ]] || return 1
    done <"$root/results"
}

# --- as Windows programs
has_resources() {
    local program resources wanted
    for program in teko teko-batch teko-service teko-separate; do
        resources=$(x86_64-w64-mingw32-windres -J coff -O rc "$programs/$program.exe") || return 1
        for wanted in 'RT_GROUP_ICON' "\"OriginalFilename\", \"$program.exe\"" "\"FileVersion\", \"$version\"" \
            '>UTF-8</activeCodePage>' '>true</longPathAware>' '>PerMonitorV2, ' 'level=""asInvoker""'; do
            grep -qF -- "$wanted" <<<"$resources" || return 1
        done
    done
}
version=$(sed -n 's/^project(TEKO VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
expect "icon, version $version and manifest" has_resources

# --- songs
sound() { ffmpeg -v error -y -f lavfi -i "aevalsrc=0.3*sin(880*PI*t)|0.3*sin(1320*PI*t):s=44100:d=$1" "$2"; }
sound 6 "$songs/plain.wav"
sound 6 "$songs/plain.mp3"
long_name=$(printf 'ü%.0s' {1..123}).wav
deep=$songs/$(printf 'd%.0s' {1..120})/$(printf 'e%.0s' {1..120})
mkdir -p "$deep"
for name in "Grüße vom 🎸 Ufer.wav" "with  blanks.wav" "$long_name" "${deep#"$songs"/}/deep.wav"; do
    cp "$songs/plain.wav" "$songs/$name"
done
sound 120 "$songs/Größe.wav"

# --- teko-batch.exe
expect "teko-batch: WAV" takes plain.wav -i vocals -f wav
expect "teko-batch: MP3" takes plain.mp3 -i drums -f mp3
expect "teko-batch: umlauts and emoji" takes "Grüße vom 🎸 Ufer.wav" -i bass -f flac
expect "teko-batch: blanks" takes "with  blanks.wav" -i piano -f m4a
takes_pattern() { batch -i vocals -f mp3 "$(windows_path "$songs/?lain.*")" >"$root/results" && [[ $(wc -l <"$root/results") == 4 ]]; }
expect "teko-batch: a pattern for two songs" takes_pattern
expect "teko-batch: a name of 250 bytes" takes "$long_name" -i vocals -f mp3
expect "teko-batch: a path of $(windows_path "$deep/deep.wav" | wc -m) characters" takes "${deep#"$songs"/}/deep.wav" -i vocals -f mp3
expect "teko-batch: a folder that cannot be written to is refused" not batch -i vocals -f wav -s 'Z:\proc' "$(windows_path "$songs/plain.wav")"
expect "teko-batch: nothing is left" nothing_left

# A console of its own, and Ctrl+C as it is typed there.
interrupted() {
    local before
    before=$(ls "$documents/Save")
    (cd "$programs" && python3 - "$(windows_path "$songs/Größe.wav")" <<'END'
import os, pty, re, sys
pid, console = pty.fork()
if pid == 0:
    os.execvp("wine", ["wine", "teko-batch.exe", "-i", "vocals", "-f", "wav", sys.argv[1]])
seen, typed = b"", False
while True:
    try:
        seen += os.read(console, 4096)
    except OSError:
        break
    text = re.sub(rb"\x1b\[[0-9;?]*[A-Za-z]", b"", seen)
    if b"processing" in text and not typed:
        os.write(console, b"\x03")
        typed = True
os.write(2, text[-500:])
sys.exit(0 if typed and os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]) == 1 and "Größe.wav: Interrupted.".encode() in text else 1)
END
    ) && [[ $(ls "$documents/Save") == "$before" ]]
}
expect "teko-batch: Ctrl+C cancels the job, and the console shows its umlauts" interrupted
expect "teko-batch: nothing is left after Ctrl+C" nothing_left

# Ended in the middle of its work: its service ends with it, and the next start removes what it left.
killed() {
    (cd "$programs" && exec wine teko-batch.exe -i vocals -f wav "$(windows_path "$songs/Größe.wav")" 2>"$root/killed") &
    within 120 grep -q processing "$root/killed" && is_running 'teko-service\.exe' || return 1
    wine taskkill /F /IM teko-batch.exe
    within 10 not is_running 'teko-(batch|service|separate)\.exe' && takes plain.wav -i vocals -f mp3
}
expect "teko-batch: killed, its service ends as well" killed
expect "teko-batch: nothing is left when it has run again" nothing_left

# --- teko-service.exe
served() {
    local url hash id left reply
    mkfifo "$root/input"
    (cd "$programs" && exec wine teko-service.exe --embedded --data "$(windows_path "$root/data")" <"$root/input" >"$root/started" 2>"$root/service.log") &
    exec 8>"$root/input"
    within 20 test -s "$root/started" || return 1
    read -r url hash < <(python3 -c 'import json, sys; line = json.load(sys.stdin); print(line["url"], line["hash"])' <"$root/started")
    id=$(curl -sf -F hash="$hash" -F instrument=vocals -F version=full -F fileName=plain -F extension=wav -F originalFilePath=x \
        -F "uploadedFile=@$songs/plain.wav" "$url/teko-server/proceed.php")
    for ((left = 100; left > 0; --left)); do
        [[ $(curl -sf -d "hash=$hash&songID=$id" "$url/teko-server/remains.php") == -1 ]] && break
        sleep 0.3
    done
    reply=$(curl -sf -d "hash=$hash&songID=$id" "$url/teko-server/download.php")
    curl -sf "$url/teko-server/${reply%%|*}" >"$root/vocals.wav"
    (cd "$programs" && wine teko-service.exe status --data "$(windows_path "$root/data")")
    exec 8>&-
    [[ -s $root/vocals.wav ]] && within 15 not is_running 'teko-service\.exe'
}
expect "teko-service: a job, its result, its status, and the end of its input" served
names_used_port() {
    local port other found=0
    coproc { exec python3 -u -m http.server -b 127.0.0.1 0; }
    other=$!
    read -r -u "${COPROC[0]}" _ _ _ _ _ port _ # Serving HTTP on 127.0.0.1 port 12345 …
    (cd "$programs" && timeout 60 wine teko-service.exe --listen "127.0.0.1:$port" --data ../data) 2>"$root/used" || found=$?
    kill "$other"
    [[ $found == 1 ]] && grep "Cannot listen on 127.0.0.1:$port" "$root/used"
}
expect "teko-service: a port in use is named" names_used_port

# --- teko.exe
picture() { import -window "$window" "$pictures/$1.png"; }
# shown TITLE: waits for a window, and for what it draws.
shown() {
    within 40 xdotool search --onlyvisible --name "$1" || return 1
    window=$(xdotool search --onlyvisible --name "$1" | tail -1)
    sleep 3
}
# The places of buttons are those at scale 1.
click() { xdotool mousemove --window "$window" "$1" "$2" click 1; }
close_window() {
    xdotool windowfocus --sync "$window"
    sleep 1
    xdotool key --clearmodifiers alt+F4
}
# shows_folder NAME: whether the folder is shown, which is closed then.
shows_folder() {
    shown "^$1\$" || return 1
    picture "folder-$1"
    close_window
    within 10 not xdotool search --onlyvisible --name "^$1\$"
}

visits_settings() {
    (cd "$programs" && exec wine teko.exe) &
    shown '^TEKO 1' || return 1
    picture main
    click 235 105
    shown '^TEKO: Settings' || shown 'Settings' || return 1
    picture settings
    close_window
    shown '^TEKO 1' && close_window
}
processes() {
    printf '[General]\ndefault_instrument=guitar\ndefault_audio_format=MP3\n' >"$documents/teko.ini"
    (cd "$programs" && exec wine teko.exe "$(windows_path "$songs/Grüße vom 🎸 Ufer.wav")") &
    shown 'Selecting Instrument' || return 1
    picture file
    click 235 288
    within 60 test -s "$documents/Save/Mix Without guitar - Grüße vom 🎸 Ufer.mp3" || return 1
    sleep 3
    picture success
    local program=$window
    click 380 165
    shows_folder Save || return 1
    window=$program
    close_window
    shown '^TEKO 1' && close_window
}
misses_ffmpeg() {
    mv "$programs/ffmpeg.exe" "$root"
    (cd "$programs" && exec wine teko.exe "$(windows_path "$songs/plain.mp3")") &
    shown 'Selecting Instrument' || return 1
    click 235 288
    shown 'Converting Error' || return 1
    picture missing-ffmpeg
    xdotool windowfocus "$window" key Return # Open Folder
    shows_folder TEKO || return 1
    mv "$root/ffmpeg.exe" "$programs"
    shown 'Selecting Instrument' || return 1
    click 235 288
    within 60 test -s "$documents/Save/Mix Without guitar - plain.mp3" || return 1
    sleep 3
    close_window
    shown '^TEKO 1' && close_window
}
expect "teko: start, settings, close" visits_settings
expect "teko: nothing is left" nothing_left
expect "teko: a file to \"Process is Successful!\", its folder, close" processes
expect "teko: nothing is left" nothing_left
expect "teko: says what to do without ffmpeg.exe, opens the folder, goes on when it is there" misses_ffmpeg
expect "teko: nothing is left" nothing_left

echo "Pictures: $pictures. Details: $root/log. Of Windows itself Wine shows no taskbar, no Explorer, no UAC; see docs/windows.md."
exit $((faults > 0))
