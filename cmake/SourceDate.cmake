# When the sources were written, in seconds since 1970: whatever is made of one commit bears this date,
# whenever it is made. Set by whoever builds, or the commit's, or in a tree without Git that of
# its changelog, which an archive of the commit keeps.

if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(TARVANE_SOURCE_DATE "$ENV{SOURCE_DATE_EPOCH}")
elseif(EXISTS "${CMAKE_SOURCE_DIR}/.git")
  execute_process(
    COMMAND git -c "safe.directory=${CMAKE_SOURCE_DIR}" log -1 --format=%ct
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
    OUTPUT_VARIABLE TARVANE_SOURCE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  # Another commit is another date: where Git notes that there is one.
  execute_process(
    COMMAND git -c "safe.directory=${CMAKE_SOURCE_DIR}" rev-parse --path-format=absolute --git-path logs/HEAD
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
    OUTPUT_VARIABLE commits OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(EXISTS "${commits}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${commits}")
  endif()
endif()
if(NOT TARVANE_SOURCE_DATE MATCHES "^[0-9]+$")
  file(TIMESTAMP "${CMAKE_SOURCE_DIR}/CHANGELOG.md" TARVANE_SOURCE_DATE "%s" UTC)
endif()
