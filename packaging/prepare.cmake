# Run by CPack in each staged tree before it is packed: adds what is made of the staged files, and gives every file the
# time of the commit.
set(root ${CPACK_TEMPORARY_DIRECTORY})

function(copy_licences folder)
  foreach(package IN LISTS ARGN)
    file(GLOB texts /usr/share/doc/${package}/copyright)
    if(NOT texts)
      message(FATAL_ERROR "no licence text of ${package}")
    endif()
    file(COPY_FILE /usr/share/doc/${package}/copyright ${folder}/${package}.txt)
  endforeach()
endfunction()

# objcopy writes its time into files for Windows; time 0 is what the linker writes.
set(objcopy ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CPACK_VESSA_OBJCOPY})

# Debugging symbols of the library: in a file of their own that its debug link names.
function(split_symbols)
  execute_process(COMMAND ${objcopy} --only-keep-debug ${CPACK_VESSA_LIBRARY} ${ARGV1}
    COMMAND_ERROR_IS_FATAL ANY)
  get_filename_component(folder ${ARGV1} DIRECTORY)
  execute_process(COMMAND ${objcopy} --add-gnu-debuglink=${ARGV1} ${ARGV0} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(prepare_archive)
  set(top ${root})
  set(library ${top}/lib/x86_64-linux-gnu/vessadcm/VessaDCM.so)
  if(CPACK_VESSA_SYSTEM STREQUAL windows)
    set(library ${top}/VessaDCM.dll)
  endif()
  file(MAKE_DIRECTORY ${top}/symbols ${top}/licences)
  get_filename_component(name ${library} NAME)
  split_symbols(${library} ${top}/symbols/${name}.debug)
  file(COPY_FILE ${CPACK_VESSA_SOURCE}/packaging/licences.md ${top}/licences/README.md)
  if(CPACK_VESSA_SYSTEM STREQUAL windows)
    execute_process(COMMAND ${objcopy} ${top}/vessa.exe COMMAND_ERROR_IS_FATAL ANY)
    copy_licences(${top}/licences libz-mingw-w64-dev libcli11-dev libfmt-dev nlohmann-json3-dev
      gcc-mingw-w64-x86-64-win32 mingw-w64-x86-64-dev)
  else()
    copy_licences(${top}/licences libcli11-dev libfmt-dev nlohmann-json3-dev libstdc++-12-dev)
  endif()
  execute_process(COMMAND sh -c "find . -type f ! -name SHA256SUMS -printf '%P\\n' | LC_ALL=C sort | xargs -d '\\n' sha256sum >SHA256SUMS"
    WORKING_DIRECTORY ${top} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# What Debian's policy asks of each package's folder of documents.
function(prepare_deb component package)
  set(documents ${root}/${component}/usr/share/doc/${package})
  file(MAKE_DIRECTORY ${documents})
  file(COPY_FILE ${CPACK_VESSA_SOURCE}/packaging/copyright ${documents}/copyright)
  execute_process(COMMAND date --utc --date=@$ENV{SOURCE_DATE_EPOCH} "+%a, %d %b %Y %H:%M:%S +0000"
    OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  file(WRITE ${documents}/changelog
    "${package} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n  * See CHANGELOG.md of the sources.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  execute_process(COMMAND gzip --best --no-name --force ${documents}/changelog COMMAND_ERROR_IS_FATAL ANY)
  # The developers have no mail address yet.
  file(WRITE ${root}/${component}/usr/share/lintian/overrides/${package}
    "${package}: bogus-mail-host\n${package}: bogus-mail-host-in-debian-changelog\n")
endfunction()

if(CPACK_GENERATOR STREQUAL DEB)
  prepare_deb(library vessadcm)
  prepare_deb(tool vessadcm-tools)
else()
  prepare_archive()
endif()
execute_process(COMMAND sh -c "chmod -R u=rwX,go=rX . && find . -exec touch --no-dereference --date=@$SOURCE_DATE_EPOCH {} +"
  WORKING_DIRECTORY ${root} COMMAND_ERROR_IS_FATAL ANY)
