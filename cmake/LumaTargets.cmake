# SPDX-License-Identifier: GPL-3.0-or-later
# The flags of all targets.
add_library(luma_flags INTERFACE)
target_compile_options(luma_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -fno-omit-frame-pointer)
# GCC 12 warns at -O3 of overlaps (GCC bug 105651) and of unset members in std::string that don't exist.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(luma_flags INTERFACE -Wno-restrict $<$<CONFIG:Release>:-Wno-maybe-uninitialized>)
endif()
target_compile_definitions(luma_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING)
target_include_directories(luma_flags INTERFACE ${CMAKE_SOURCE_DIR})
# lumactl must not link the desktop's libraries because another file of the same static library needs them.
target_link_options(luma_flags INTERFACE -Wl,--as-needed)
# The tests' programs are large; mold links them in a fraction of the time.
find_program(LUMA_MOLD mold)
if(LUMA_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_link_options(luma_flags INTERFACE -fuse-ld=mold)
endif()
if(LUMA_SANITIZE)
  target_compile_options(luma_flags INTERFACE -fsanitize=${LUMA_SANITIZE} -fno-sanitize-recover=undefined)
  target_link_options(luma_flags INTERFACE -fsanitize=${LUMA_SANITIZE})
endif()
if(LUMA_FUZZ)
  target_compile_options(luma_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
  target_link_options(luma_flags INTERFACE -fsanitize=address,undefined)
endif()

# Reading Qt's core and the standard library took more than half of each compiler run; they are compiled once, and
# once more for tests, where text literals may be bare. A build that checks that each file includes what it uses sets
# CMAKE_DISABLE_PRECOMPILE_HEADERS, as the tidy preset does.
set(LUMA_BARE_LITERALS -UQT_NO_CAST_FROM_ASCII)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/generated/headers.cpp CONTENT "")
foreach(target luma_headers luma_test_headers)
  add_library(${target} OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/generated/headers.cpp)
  target_link_libraries(${target} PRIVATE luma_flags Qt6::Core)
  set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_precompile_headers(${target} PRIVATE
    <algorithm> <array> <atomic> <chrono> <filesystem> <fstream> <functional> <map> <memory> <mutex> <optional> <set>
    <span> <string> <string_view> <thread> <unordered_map> <unordered_set> <utility> <variant> <vector> <QtCore>)
endforeach()
target_compile_options(luma_test_headers PRIVATE ${LUMA_BARE_LITERALS})

# luma_library(NAME SOURCES a.cpp ... LINK Qt6::Core ...)
#   A static library. Headers are included as "room/header.h".
function(luma_library NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${NAME} STATIC ${ARG_SOURCES})
  target_link_libraries(${NAME} PUBLIC luma_flags ${ARG_LINK})
  target_precompile_headers(${NAME} REUSE_FROM luma_headers)
endfunction()

# luma_program(NAME [FOR_TESTS] SOURCES a.cpp ... LINK ...)
#   FOR_TESTS: with bare text literals.
function(luma_program NAME)
  cmake_parse_arguments(ARG "FOR_TESTS" "" "SOURCES;LINK" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE luma_flags ${ARG_LINK})
  if(ARG_FOR_TESTS)
    target_compile_options(${NAME} PRIVATE ${LUMA_BARE_LITERALS})
    target_precompile_headers(${NAME} REUSE_FROM luma_test_headers)
  elseif(ARG_LINK) # else it does without Qt
    target_precompile_headers(${NAME} REUSE_FROM luma_headers)
  endif()
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# luma_tests(NAME MAIN core|gui CLASSES tst_a tst_b ... [SOURCES helper.cpp ...] [LINK ...])
#   One executable for a folder of tests; each class is a ctest case, NAME.tst_a.
#   core: a QCoreApplication. gui: a QApplication in a private D-Bus session, offscreen unless
#   QT_QPA_PLATFORM says otherwise. Both have a temporary home folder. Text literals may be bare.
function(luma_tests NAME)
  cmake_parse_arguments(ARG "" "MAIN" "CLASSES;SOURCES;LINK" ${ARGN})
  set(files ${ARG_CLASSES})
  list(TRANSFORM files APPEND .cpp)
  add_executable(${NAME} ${files} ${ARG_SOURCES})
  target_compile_options(${NAME} PRIVATE ${LUMA_BARE_LITERALS})
  target_link_libraries(${NAME} PRIVATE luma_flags luma_test_main_${ARG_MAIN} ${ARG_LINK})
  target_precompile_headers(${NAME} REUSE_FROM luma_test_headers)
  # Tests may name their local helpers alike.
  set_target_properties(${NAME} PROPERTIES UNITY_BUILD OFF)
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin)
  if(ARG_MAIN STREQUAL "gui")
    set(session ${CMAKE_SOURCE_DIR}/scripts/private-session)
  endif()
  foreach(class ${ARG_CLASSES})
    add_test(NAME ${NAME}.${class} COMMAND ${session} $<TARGET_FILE:${NAME}> ${class})
    set_tests_properties(${NAME}.${class} PROPERTIES
      TIMEOUT 900
      ENVIRONMENT "LC_ALL=C.UTF-8;LANGUAGE=;LUMA_SOURCE_DIR=${CMAKE_SOURCE_DIR};LUMA_BUILD_DIR=${CMAKE_BINARY_DIR};ASAN_OPTIONS=detect_leaks=0:new_delete_type_mismatch=0;UBSAN_OPTIONS=print_stacktrace=1;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.supp:die_after_fork=0;QTWEBENGINE_DISABLE_SANDBOX=1")
  endforeach()
endfunction()
