# SPDX-License-Identifier: GPL-3.0-or-later
# Writes lumactl's manual page: TEMPLATE with a section for each command, from the program's help.
#   cmake -D LUMACTL=program -D TEMPLATE=lumactl.1.in -D OUTPUT=lumactl.1 -P ManualPage.cmake

# help(TEXT ARGUMENT...): TEXT is what the program prints, as mdoc(7) needs it.
function(help TEXT)
  execute_process(COMMAND ${LUMACTL} help ${ARGN} OUTPUT_VARIABLE text RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "lumactl help ${ARGN}: ${failed}")
  endif()
  string(REPLACE "\\" "\\e" text "${text}")
  string(REPLACE "-" "\\-" text "${text}")
  string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" text "${text}")
  set(${TEXT} "${text}" PARENT_SCOPE)
endfunction()

execute_process(COMMAND ${LUMACTL} help OUTPUT_VARIABLE overview COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\n  [a-z][a-z-]* " names "${overview}")
set(commands "")
foreach(name IN LISTS names)
  string(STRIP "${name}" name)
  help(text ${name})
  string(REGEX MATCH "^Usage: ([^\n]*)\n\n" usage "${text}")
  set(usage "${CMAKE_MATCH_1}")
  string(REGEX REPLACE "^Usage: [^\n]*\n\n" "" text "${text}")
  string(REGEX REPLACE "\n+$" "" text "${text}")
  string(REGEX REPLACE " (\\[|SOURCE|SITE|PAGE)" "\n\\1" usage "${usage}")
  string(APPEND commands ".Ss ${name}\n${usage}\n.Bd -literal\n${text}\n.Ed\n")
endforeach()
string(REGEX REPLACE "\n$" "" COMMANDS "${commands}")
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
