# SPDX-License-Identifier: GPL-3.0-or-later
# fish completion for luma: folders, and pages to edit.

complete -c luma -s h -l help -d 'print the help'
complete -c luma -s v -l version -d 'print the version'
complete -c luma -k -a '(__fish_complete_suffix .html .htm .xhtml .xht .xml .lumasites)'
