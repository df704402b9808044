# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Bash completion of teko-service: options as its help names them, their values, files.
_teko_service() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $before in
    --subscription) mapfile -t COMPREPLY < <(compgen -W "active none expired" -- "$word") ;;
    --registration) mapfile -t COMPREPLY < <(compgen -W "open closed" -- "$word") ;;
    --data)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        ;;
    --tls-cert | --tls-key)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        ;;
    --listen | --public-url | --trusted-proxy | --separator | --workers | --daily-limit | --account-mb | --keep-days | --max-upload-mb) ;;
    *)
        local options
        options=$(teko-service --help 2>/dev/null | grep -oE '^  --[a-z-]+')
        mapfile -t COMPREPLY < <(compgen -W "status $options" -- "$word")
        ;;
    esac
}
complete -F _teko_service teko-service
