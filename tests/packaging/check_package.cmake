# SPDX-License-Identifier: MIT
# Packs BUILD twice, expects the same bytes, unpacks each package into a bare place, and traces with what
# is in it: the sample consumer grabs from the sample camera, and the report is shown. Bare are an
# environment without variables, a Wine prefix in which nothing has run, and a root that has what the .deb
# depends on and nothing else.
file(REMOVE_RECURSE "${SCRATCH}")
foreach(folder IN ITEMS one other)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=1700000000
      "${CPACK}" --config "${BUILD}/CPackConfig.cmake" -C "${CONFIG}" -B "${SCRATCH}/${folder}"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "cpack failed (${result}):\n${output}")
  endif()
endforeach()

function(expect_package name)
  file(SHA256 "${SCRATCH}/one/${name}" one)
  file(SHA256 "${SCRATCH}/other/${name}" other)
  if(NOT one STREQUAL other)
    message(FATAL_ERROR "${name} isn't the same the second time.")
  endif()
endfunction()

function(expect_files root)
  foreach(file IN ITEMS share/doc/vextrel/README.md share/doc/vextrel/LICENSE share/doc/vextrel/NOTICE
      share/doc/vextrel/COPYING.log4cpp share/vextrel/file.properties
      lib/vextrel/vextrel.cti lib/vextrel-extended/vextrel_extended.cti)
    if(NOT EXISTS "${root}/${file}")
      message(FATAL_ERROR "${root} has no ${file}.")
    endif()
  endforeach()
endfunction()

# run(OUTPUT_VARIABLE COMMAND...): in a folder that has nothing to do with the package.
function(run variable)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${SCRATCH}/elsewhere"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "This failed (${result}): ${ARGN}\n${output}")
  endif()
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# expect_trace(ROOT LOG RUNNER...): RUNNER starts a program where ROOT has bin, lib and share, and where LOG can
# be written.
function(expect_trace root log)
  set(program ${ARGN} "${root}/bin/vextrel${EXECUTABLE_SUFFIX}")
  set(samples "${root}/lib/vextrel-samples")
  run(said ${program} trace --log "${log}" --target "${samples}/simulated_camera_extended.cti" --
    "${samples}/grab${EXECUTABLE_SUFFIX}" --genTL 1.5 --frames 1)
  if(NOT said MATCHES "\n  1 frame on 1 stream")
    message(FATAL_ERROR "The trace has no frame:\n${said}")
  endif()
  run(report ${program} report "${log}")
  if(NOT report MATCHES "frames: 1, waits that timed out: 0" OR
      NOT report MATCHES "Everything that was opened was closed")
    message(FATAL_ERROR "The report isn't that of the frame:\n${report}")
  endif()
endfunction()

# make_bare_root(ROOT): what the libraries that the .deb depends on consist of, and dpkg's record of them.
function(make_bare_root root)
  set(libraries libc6:amd64 libgcc-s1:amd64 libstdc++6:amd64)
  execute_process(COMMAND dpkg-query -L ${libraries} OUTPUT_VARIABLE files COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]*/(lib|ld-)[^/\n]*\\.so[.0-9]*" files "${files}")
  list(FILTER files INCLUDE REGEX "^(/usr)?/lib(64|/x86_64-linux-gnu)/[^/]+$")
  foreach(file IN LISTS files)
    cmake_path(GET file PARENT_PATH folder)
    file(COPY "${file}" DESTINATION "${root}${folder}")
  endforeach()
  file(MAKE_DIRECTORY "${root}/tmp" "${root}/var/lib/dpkg/info" "${root}/var/lib/dpkg/updates")
  execute_process(COMMAND dpkg-query -s ${libraries} OUTPUT_FILE "${root}/var/lib/dpkg/status"
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(MAKE_DIRECTORY "${SCRATCH}/elsewhere")
set(name "vextrel-${VERSION}-${SYSTEM}-x64")
if(SYSTEM STREQUAL windows)
  expect_package("${name}.zip")
  file(ARCHIVE_EXTRACT INPUT "${SCRATCH}/one/${name}.zip" DESTINATION "${SCRATCH}/zip")
  expect_files("${SCRATCH}/zip/${name}")
  if(EMULATOR)
    set(ENV{WINEPREFIX} "${SCRATCH}/wine")
    set(ENV{WINEDLLOVERRIDES} "mscoree=;mshtml=")
    # What this starts would keep a pipe open.
    execute_process(COMMAND wineserver -p60 OUTPUT_QUIET ERROR_QUIET)
    execute_process(COMMAND "${EMULATOR}" wineboot -i OUTPUT_FILE "${SCRATCH}/wineboot.log"
      ERROR_FILE "${SCRATCH}/wineboot.log")
  endif()
  expect_trace("${SCRATCH}/zip/${name}" "${SCRATCH}/zip.log" ${EMULATOR})
  if(EMULATOR)
    execute_process(COMMAND wineserver -k)
    execute_process(COMMAND wineserver -w)
    file(REMOVE_RECURSE "${SCRATCH}/wine")
  endif()
else()
  expect_package("${name}.tar.gz")
  expect_package("vextrel_${VERSION}_amd64.deb")
  file(ARCHIVE_EXTRACT INPUT "${SCRATCH}/one/${name}.tar.gz" DESTINATION "${SCRATCH}/tar")
  expect_files("${SCRATCH}/tar/${name}")
  expect_trace("${SCRATCH}/tar/${name}" "${SCRATCH}/tar.log" env -i)

  # Only root can install packages, and change the root: others are root in a namespace of their own.
  execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(as_root "")
  if(NOT user EQUAL 0)
    set(as_root unshare --map-root-user)
  endif()
  set(ENV{PATH} "$ENV{PATH}:/usr/sbin:/sbin")
  set(root "${SCRATCH}/deb")
  make_bare_root("${root}")
  run(ignored ${as_root} dpkg "--root=${root}" --log=/dev/null
    -i "${SCRATCH}/one/vextrel_${VERSION}_amd64.deb")
  expect_files("${root}/usr")
  find_program(CHROOT chroot PATHS /usr/sbin /sbin REQUIRED)
  expect_trace(/usr /tmp/deb.log ${as_root} env -i "${CHROOT}" "${root}")
  if(NOT EXISTS "${root}/usr/share/man/man1/vextrel.1")
    message(FATAL_ERROR "The package has no manual page.")
  endif()
  file(STRINGS "${root}/usr/share/vextrel/file.properties" lines REGEX "TEMP")
  if(lines)
    message(FATAL_ERROR "A property file for Linux needs TEMP: ${lines}")
  endif()
endif()
