# Language settings and the functions with which every folder declares its targets.
include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC OFF)

option(VOREL_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(VOREL_ASSERTIONS "Keep assertions in an optimised build" OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

if(VOREL_ASSERTIONS)
  string(REPLACE "-DNDEBUG" "" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
endif()

add_library(vorel_options INTERFACE)
target_include_directories(vorel_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(vorel_options INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DEPRECATED_WARNINGS
  VOREL_VERSION="${PROJECT_VERSION}")
target_compile_options(vorel_options INTERFACE -Wall -Wextra -Wpedantic)
if(VOREL_SANITIZE)
  target_compile_options(vorel_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(vorel_options INTERFACE -fsanitize=address,undefined)
endif()

# The Qt headers that nearly every file reads, compiled once and shared by all targets.
file(WRITE "${CMAKE_BINARY_DIR}/vorel_pch.cpp" "")
add_library(vorel_pch STATIC "${CMAKE_BINARY_DIR}/vorel_pch.cpp")
target_link_libraries(vorel_pch PUBLIC vorel_options Qt5::Core)
target_precompile_headers(vorel_pch PRIVATE <QtCore/QtCore>)
set_target_properties(vorel_pch PROPERTIES POSITION_INDEPENDENT_CODE ON)

function(_vorel_common name)
  set_target_properties(${name} PROPERTIES AUTOMOC ON POSITION_INDEPENDENT_CODE ON)
endfunction()

# vorel_library(NAME SOURCES... LINK libraries...)
# One static library for each folder under src/.
function(vorel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  _vorel_common(${name})
  target_link_libraries(${name} PUBLIC vorel_options Qt5::Core ${ARG_LINK})
  target_precompile_headers(${name} REUSE_FROM vorel_pch)
endfunction()

# vorel_program(NAME SOURCES... LINK libraries...)
function(vorel_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  _vorel_common(${name})
  target_link_libraries(${name} PRIVATE vorel_options Qt5::Core ${ARG_LINK})
  target_precompile_headers(${name} REUSE_FROM vorel_pch)
endfunction()

# vorel_test(NAME SOURCES... LINK libraries... [LABEL unit|program|gui] [TIMEOUT seconds])
# A Qt Test program, known to CTest under NAME.
function(vorel_test name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LINK" ${ARGN})
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  vorel_program(${name} SOURCES ${ARG_SOURCES} LINK ${ARG_LINK} Qt5::Test)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_compile_definitions(${name} PRIVATE VOREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
