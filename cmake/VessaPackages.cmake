# What is delivered, and the packages that deliver it: a zip for Windows, .deb packages and a .tar.gz for Linux.
# scripts/package.sh makes them all. Everything in them comes from the commit: the same commit gives the same bytes.
option(VESSA_PACKAGING "Prepare what packages hold besides the programs: manual, bill of materials, licences" OFF)
if(NOT VESSA_PACKAGING)
  return()
endif()

# Line numbers for whoever looks into a crash; they change no code, and packages hold them in a file of their own.
if(NOT MSVC)
  foreach(target vessa_platform vessa_dicom vessa_host vessa_stream vessa_decompose vessa_vdoc vessa_compose
      vessa_call_outs VessaDCM)
    # A compiler cache hands sources over by their way from the build folder; their names are to be the same without one.
    target_compile_options(${target} PRIVATE -g1 -ffile-prefix-map=../../=)
  endforeach()
endif()

find_program(VESSA_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
set(prepared ${CMAKE_BINARY_DIR}/package)
set(source_commit ${vessa_commit})

if(WIN32)
  set(folder_for_library .)
  set(folder_for_tool .)
  set(folder_for_documents docs)
  set(folder_for_notes .)
  set(system windows)
else()
  set(folder_for_library lib/x86_64-linux-gnu/vessadcm)
  set(folder_for_tool bin)
  set(folder_for_documents share/doc/vessadcm)
  set(folder_for_notes share/doc/vessadcm)
  set(system linux)
endif()

# What is in the files besides our own sources, with the versions of this machine.
add_custom_command(OUTPUT ${prepared}/vessadcm.spdx.json
  COMMAND ${VESSA_PYTHON} ${CMAKE_SOURCE_DIR}/scripts/make_sbom.py ${system} ${PROJECT_VERSION} ${source_commit}
    ${prepared}/vessadcm.spdx.json $<TARGET_FILE:VessaDCM> $<TARGET_FILE:vessa>
  DEPENDS VessaDCM vessa ${CMAKE_SOURCE_DIR}/scripts/make_sbom.py VERBATIM)
set(outputs ${prepared}/vessadcm.spdx.json)

install(TARGETS VessaDCM LIBRARY DESTINATION ${folder_for_library} COMPONENT library
  RUNTIME DESTINATION ${folder_for_library} COMPONENT library)
install(TARGETS vessa RUNTIME DESTINATION ${folder_for_tool} COMPONENT tool)
install(FILES ${prepared}/vessadcm.spdx.json DESTINATION ${folder_for_notes} COMPONENT library)
install(FILES ${CMAKE_SOURCE_DIR}/host/binary_interface.h DESTINATION ${folder_for_documents} COMPONENT library)
file(GLOB documents CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/*.md)
install(FILES ${documents} DESTINATION ${folder_for_documents} COMPONENT library)

if(WIN32)
  install(FILES ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/CHANGELOG.md DESTINATION . COMPONENT library)
else()
  # The manual and completions are made by running the tool.
  add_custom_command(OUTPUT ${prepared}/man1/vessa.1
    COMMAND ${VESSA_PYTHON} ${CMAKE_SOURCE_DIR}/scripts/make_manual.py $<TARGET_FILE:vessa> ${PROJECT_VERSION} ${prepared}
    COMMAND sh -c "gzip --best --no-name --keep --force ${prepared}/man1/*.1"
    DEPENDS vessa ${CMAKE_SOURCE_DIR}/scripts/make_manual.py VERBATIM)
  list(APPEND outputs ${prepared}/man1/vessa.1)
  install(DIRECTORY ${prepared}/man1/ DESTINATION share/man/man1 COMPONENT tool FILES_MATCHING PATTERN "*.gz")
  install(FILES ${prepared}/vessa.bash DESTINATION share/bash-completion/completions RENAME vessa COMPONENT tool)
  install(FILES ${prepared}/_vessa DESTINATION share/zsh/vendor-completions COMPONENT tool)
endif()
add_custom_target(vessa_package_files ALL DEPENDS ${outputs})

# --- What CPack is told ----------------------------------------------------------------------------------------------

set(CPACK_PACKAGE_NAME vessadcm)
set(CPACK_PACKAGE_VENDOR "VessaDCM developers")
set(CPACK_PACKAGE_CONTACT "VessaDCM developers <vessadcm@localhost.localdomain>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGE_FILE_NAME vessadcm-${PROJECT_VERSION}-${system}-x86_64)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 1)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/packaging/prepare.cmake)
set(CPACK_VESSA_SYMBOLS $<TARGET_FILE:VessaDCM>)
set(CPACK_VESSA_SOURCE ${CMAKE_SOURCE_DIR})
set(CPACK_VESSA_OBJCOPY ${CMAKE_OBJCOPY})
set(CPACK_VESSA_LIBRARY ${CMAKE_BINARY_DIR}/VessaDCM${CMAKE_SHARED_MODULE_SUFFIX})
set(CPACK_VESSA_SYSTEM ${system})
set(CPACK_GENERATOR TGZ DEB)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
endif()
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library tool)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME vessadcm)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME vessadcm-tools)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "vessadcm (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "DICOM call-out library for a host database engine
The engine loads the library and calls its functions by name, to decompose
DICOM data sets into events, to query single attributes and to compose
DICOM streams.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "stand-in host for the VessaDCM call-out library
The command vessa loads the library as a host database engine does and runs
it on files: it shows, queries, converts, traces and replays.")
include(CPack)
