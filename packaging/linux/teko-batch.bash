# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Bash completion of teko-batch: options, their values, files.
_teko_batch() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $before in
    -i | --instrument) mapfile -t COMPREPLY < <(compgen -W "guitar vocals piano bass drums" -- "$word") ;;
    -f | --format) mapfile -t COMPREPLY < <(compgen -W "mp3 wav m4a aiff flac wma mp4 mkv mov wmv mpg webm" -- "$word") ;;
    -s | --save)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        ;;
    *)
        if [[ $word == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W "--instrument --format --save --help --version" -- "$word")
        else
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
        fi
        ;;
    esac
}
complete -F _teko_batch teko-batch
