# SPDX-License-Identifier: MIT
# Packs the archives again, with their files in the order of their names. CPack takes them in the order of
# the folder, which file systems choose.
foreach(archive IN LISTS CPACK_PACKAGE_FILES)
  cmake_path(GET CPACK_TEMPORARY_DIRECTORY PARENT_PATH folder)
  cmake_path(GET CPACK_TEMPORARY_DIRECTORY FILENAME root)
  set(epoch 0)
  if(DEFINED ENV{SOURCE_DATE_EPOCH})
    set(epoch "$ENV{SOURCE_DATE_EPOCH}")
  endif()
  if(archive MATCHES "\\.tar\\.gz$")
    execute_process(
      COMMAND tar --create --sort=name --owner=0 --group=0 --numeric-owner "--mtime=@${epoch}" "${root}"
      COMMAND gzip -9n
      WORKING_DIRECTORY "${folder}" OUTPUT_FILE "${archive}" COMMAND_ERROR_IS_FATAL ANY)
  elseif(archive MATCHES "\\.zip$")
    file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${folder}" "${folder}/${root}/*")
    list(SORT files)
    list(JOIN files "\n" lines)
    file(WRITE "${folder}/files" "${lines}\n")
    execute_process(
      COMMAND "${CMAKE_COMMAND}" -E tar cf "${archive}" --format=zip "--files-from=files"
      WORKING_DIRECTORY "${folder}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
