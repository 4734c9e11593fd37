# How every target of the tree is made: one language level, one set of warnings, one function a kind of target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})

find_program(VESSA_CCACHE ccache)
if(VESSA_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${VESSA_CCACHE})
endif()

option(VESSA_SANITIZE "Build with the address, leak and undefined-behaviour sanitizers" OFF)
option(VESSA_FUZZ "Build the fuzz targets (needs clang's libFuzzer)" OFF)
option(VESSA_COVERAGE "Count the branches that are taken" OFF)

# With each compilation of a source, clang-tidy looks at it too: when it or a header of it changes, and, by the digest
# that is part of the command, when the configuration does.
option(VESSA_TIDY "Run clang-tidy on each source that is compiled" OFF)
if(VESSA_TIDY)
  find_program(VESSA_CLANG_TIDY clang-tidy REQUIRED)
  set(configurations ${CMAKE_SOURCE_DIR}/.clang-tidy ${CMAKE_SOURCE_DIR}/tests/.clang-tidy)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${configurations})
  set(digest)
  foreach(configuration IN LISTS configurations)
    file(SHA256 ${configuration} part)
    string(APPEND digest ${part})
  endforeach()
  string(SHA256 digest "${digest}")
  set(CMAKE_CXX_CLANG_TIDY ${VESSA_CLANG_TIDY} --quiet --warnings-as-errors=*
    --extra-arg=-Wno-unknown-warning-option --extra-arg=-DVESSA_TIDY_${digest})
endif()

add_library(vessa_options INTERFACE)
target_include_directories(vessa_options INTERFACE ${CMAKE_SOURCE_DIR})
if(MSVC)
  target_compile_options(vessa_options INTERFACE /W4 /WX /permissive- /utf-8)
else()
  target_compile_options(vessa_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 finds overlaps of 8 exabytes inside std::string's own operator+ (its bug 105651, mended in 13).
    target_compile_options(vessa_options INTERFACE -Wno-restrict)
  endif()
  # The same bytes wherever the tree lies.
  target_compile_options(vessa_options INTERFACE -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
endif()
if(MINGW)
  # One file to install: no runtime library of the compiler may be needed beside the result. No time of linking in it.
  target_link_options(vessa_options INTERFACE -static -Wl,--no-insert-timestamp)
endif()
if(VESSA_SANITIZE)
  target_compile_definitions(vessa_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(vessa_options INTERFACE -fsanitize=address,undefined,float-cast-overflow
    -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g1)  # compiles in less than half the time of -O2 -g
  target_link_options(vessa_options INTERFACE -fsanitize=address,undefined,float-cast-overflow)
endif()
if(VESSA_COVERAGE)
  target_compile_options(vessa_options INTERFACE --coverage -O0)
  target_link_options(vessa_options INTERFACE --coverage)
endif()

# Drops, from the list of sources named `list`, those that stand for another system: name_linux.cpp, name_windows.cpp.
function(vessa_keep_own_system list)
  if(WIN32)
    list(FILTER ${list} EXCLUDE REGEX "_linux\\.cpp$")
  else()
    list(FILTER ${list} EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  set(${list} ${${list}} PARENT_SCOPE)
endfunction()

# vessa_folder(NAME [BELOW target...]): the static library of one folder; BELOW names the folders under it.
function(vessa_folder name)
  cmake_parse_arguments(ARG "" "" "BELOW" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp platform/*.cpp)
  vessa_keep_own_system(sources)
  if(sources)
    add_library(vessa_${name} STATIC ${sources})
    target_link_libraries(vessa_${name} PUBLIC vessa_options ${ARG_BELOW})
    if(VESSA_FUZZ AND NOT name STREQUAL "emulator")
      target_compile_options(vessa_${name} PRIVATE -fsanitize=fuzzer-no-link)  # libFuzzer sees which way the input takes
    endif()
  else()
    add_library(vessa_${name} INTERFACE)
    target_link_libraries(vessa_${name} INTERFACE vessa_options ${ARG_BELOW})
  endif()
endfunction()

# vessa_test(NAME [LINK target...]): one test program out of the folder's sources, run by ctest.
function(vessa_test name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  vessa_keep_own_system(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_test ${sources})
  target_link_libraries(${name}_test PRIVATE vessa_options ${ARG_LINK} vessa_test_support GTest::gmock GTest::gtest_main)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 finds writes out of bounds inside std::vector's own insert, where tests build bytes out of constants.
    target_compile_options(${name}_test PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
  add_dependencies(${name}_test VessaDCM)
  add_test(NAME ${name} COMMAND ${name}_test)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
