# What the delivered files say of themselves: PROJECT_VERSION, which stands in the top CMakeLists.txt alone, and the
# commit they were made from.
set(VESSA_COMMIT "" CACHE STRING "Commit the sources are from; empty: ask git")
set(vessa_commit ${VESSA_COMMIT})
if(NOT vessa_commit)
  execute_process(COMMAND git rev-parse --short=12 HEAD WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    OUTPUT_VARIABLE vessa_commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  # With each commit the answer is another.
  execute_process(COMMAND git rev-parse --git-path logs/HEAD WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    OUTPUT_VARIABLE git_log OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  get_filename_component(git_log "${git_log}" ABSOLUTE BASE_DIR ${CMAKE_SOURCE_DIR})
  if(EXISTS ${git_log} AND NOT IS_DIRECTORY ${git_log})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${git_log})
  endif()
endif()
if(NOT vessa_commit)
  set(vessa_commit unknown)
endif()
