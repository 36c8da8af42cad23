# SPDX-License-Identifier: GPL-3.0-or-later
# fish completion for lumactl. Commands and options come from its help, site names from the user's list.

function __lumactl_commands
    lumactl help 2>/dev/null | sed -n '/^  [a-z]/{s/^  \([a-z][a-z-]*\) .*/\1/;N;s/\n */\t/;p;}'
end

function __lumactl_options
    set -l words (commandline -opc)
    test (count $words) -ge 2; or return
    lumactl help $words[2] 2>/dev/null | grep -oE -- '(^|[[:space:][])--?[a-z0][a-z-]*' | tr -d ' []' | sort -u
    echo --help
end

complete -c lumactl -n 'test (count (commandline -opc)) -eq 1' -f -a '(__lumactl_commands)'
complete -c lumactl -n 'test (count (commandline -opc)) -eq 1' -f -a 'help\t"describe a command" --version'
complete -c lumactl -n 'test (count (commandline -opc)) -eq 2; and __fish_seen_subcommand_from help' -f \
    -a '(__lumactl_commands)'
complete -c lumactl -n 'test (count (commandline -opc)) -ge 2; and string match -q -- "-*" (commandline -ct)' -f \
    -a '(__lumactl_options)'
complete -c lumactl -n 'test (count (commandline -opc)) -ge 2; and not __fish_seen_subcommand_from help' \
    -a '(lumactl sites 2>/dev/null)'
