# SPDX-License-Identifier: GPL-3.0-or-later
# bash completion for luma: folders, and pages to edit.

_luma()
{
    local current=${COMP_WORDS[COMP_CWORD]}
    if [ "${current:0:1}" = - ]; then
        mapfile -t COMPREPLY < <(compgen -W "--help --version" -- "$current")
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; shopt -s extglob; compgen -f -X '!*.@(htm|html|xht|xhtml|xml|lumasites)' -- "$current")
}
complete -F _luma luma
