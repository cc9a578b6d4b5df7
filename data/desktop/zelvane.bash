# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Completion of zelvane's arguments in bash: Csound's files, and the options where they count.

_zelvane()
{
    local current=${COMP_WORDS[COMP_CWORD]} word pattern options=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == -- ]] && current=${current/#-/./-} # behind the end of the options all are names
    done
    case $current in
        -*) options=(-h --help -v --version --) ;;
        /) [[ $COMP_CWORD -eq 1 ]] && options=(/i /p /r) ;;
    esac
    mapfile -t COMPREPLY < <(
        compgen -W "${options[*]}" -- "$current"
        if [[ $current != -* ]]; then
            compgen -d -- "$current"
            for pattern in '!*.[oO][rR][cC]' '!*.[sS][cC][oO]' '!*.[cC][sS][dD]'; do
                compgen -f -X "$pattern" -- "$current"
            done
        fi
    )
    compopt -o filenames 2>/dev/null
}
complete -o default -F _zelvane zelvane
