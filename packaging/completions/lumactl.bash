# SPDX-License-Identifier: GPL-3.0-or-later
# bash completion for lumactl. Commands and options come from its help, site names from the user's list.

_lumactl()
{
    local current=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} word name
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ] || { [ "$command" = help ] && [ "$COMP_CWORD" -eq 2 ]; }; then
        word=$(lumactl help 2>/dev/null | sed -n 's/^  \([a-z][a-z-]*\) .*/\1/p')
        [ "$COMP_CWORD" -gt 1 ] || word="$word help --version"
        mapfile -t COMPREPLY < <(compgen -W "$word" -- "$current")
        return
    fi
    if [ "${current:0:1}" = - ]; then
        word=$(lumactl help "$command" 2>/dev/null | grep -oE -- '(^|[[:space:][])--?[a-z0][a-z-]*' | tr -d ' []')
        mapfile -t COMPREPLY < <(compgen -W "$word --help" -- "$current")
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
    while IFS= read -r name; do
        [[ $name != "$current"* ]] || COMPREPLY+=("$name")
    done < <(lumactl sites 2>/dev/null)
}
complete -F _lumactl lumactl
