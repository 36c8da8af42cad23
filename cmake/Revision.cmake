# SPDX-License-Identifier: GPL-3.0-or-later
# Writes LUMA_VERSION_TEXT, the version with the commit it was built from, to the header OUTPUT; a build without a
# repository has the version alone. Run at each build:
#   cmake -D OUTPUT=file.h -D VERSION=1.0 -D SOURCE=folder -P Revision.cmake
execute_process(COMMAND git -C ${SOURCE} describe --always --exclude=* --abbrev=10 --dirty
  OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
set(text ${VERSION})
if(NOT failed AND EXISTS ${SOURCE}/.git)
  set(text "${VERSION} (${commit})")
endif()
set(header "// SPDX-License-Identifier: GPL-3.0-or-later\n#pragma once\n#define LUMA_VERSION_TEXT \"${text}\"\n")
if(EXISTS ${OUTPUT})
  file(READ ${OUTPUT} before)
endif()
# An unchanged header compiles nothing anew.
if(NOT "${header}" STREQUAL "${before}")
  file(WRITE ${OUTPUT} "${header}")
endif()
