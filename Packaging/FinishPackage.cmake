# What CPack has made, put together anew by dpkg-deb, so that one commit makes the same bytes everywhere. CPack
# counts folders into the installed size as the file system keeps them, and lets the builder's umask into the
# rights of folders and of the archive's own parts. Run by CPack, in its scope.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree "${CPACK_TEMPORARY_DIRECTORY}-anew")
  set(control "${tree}/DEBIAN/control")
  file(REMOVE_RECURSE "${tree}")
  execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)

  # In KiB, as deb-substvars(5) has it: what files hold, each rounded up, and one for anything else.
  set(installed_size 0)
  file(GLOB_RECURSE paths LIST_DIRECTORIES true RELATIVE "${tree}" "${tree}/*")
  list(FILTER paths EXCLUDE REGEX "^DEBIAN(/|$)")
  foreach(path IN LISTS paths)
    set(bytes 1)
    if(NOT IS_DIRECTORY "${tree}/${path}")
      file(SIZE "${tree}/${path}" bytes)
    endif()
    math(EXPR installed_size "${installed_size} + (${bytes} + 1023) / 1024")
  endforeach()
  file(READ "${control}" fields)
  string(REGEX REPLACE "\nInstalled-Size: [0-9]+" "\nInstalled-Size: ${installed_size}" fields "${fields}")
  file(WRITE "${control}" "${fields}")

  # Everybody may look into the folders.
  file(CHMOD_RECURSE "${tree}" DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  # Only what is later than the sources' date, as what was written here, would get that date by itself.
  execute_process(COMMAND find "${tree}" -exec touch "--date=@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz -z6 --build "${tree}" "${package}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
