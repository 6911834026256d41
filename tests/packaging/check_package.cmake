# SPDX-License-Identifier: MIT
# Packs BUILD twice, expects the same bytes, unpacks each package into an empty folder, and traces with what
# is in it: the sample consumer grabs from the sample camera.
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

# expect_trace(ROOT): ROOT has bin, lib and share.
function(expect_trace root)
  set(samples "${root}/lib/vextrel-samples")
  foreach(file IN ITEMS share/doc/vextrel/README.md share/doc/vextrel/LICENSE share/doc/vextrel/NOTICE
      share/doc/vextrel/COPYING.log4cpp share/vextrel/file.properties
      lib/vextrel/vextrel.cti lib/vextrel-extended/vextrel_extended.cti)
    if(NOT EXISTS "${root}/${file}")
      message(FATAL_ERROR "${root} has no ${file}.")
    endif()
  endforeach()
  set(log "${SCRATCH}/trace.log")
  file(REMOVE "${log}")
  execute_process(
    COMMAND ${EMULATOR} "${root}/bin/vextrel${EXECUTABLE_SUFFIX}" trace --log "${log}"
      --target "${samples}/simulated_camera_extended.cti" --
      "${samples}/grab${EXECUTABLE_SUFFIX}" --genTL 1.5 --frames 1
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR NOT errors MATCHES "  1 frame on 1 stream" OR NOT EXISTS "${log}")
    message(FATAL_ERROR "The trace failed (${result}):\n${output}${errors}")
  endif()
endfunction()

set(name "vextrel-${VERSION}-${SYSTEM}-x64")
if(SYSTEM STREQUAL windows)
  expect_package("${name}.zip")
  file(ARCHIVE_EXTRACT INPUT "${SCRATCH}/one/${name}.zip" DESTINATION "${SCRATCH}/zip")
  expect_trace("${SCRATCH}/zip/${name}")
else()
  expect_package("${name}.tar.gz")
  expect_package("vextrel_${VERSION}_amd64.deb")
  file(ARCHIVE_EXTRACT INPUT "${SCRATCH}/one/${name}.tar.gz" DESTINATION "${SCRATCH}/tar")
  expect_trace("${SCRATCH}/tar/${name}")
  execute_process(
    COMMAND dpkg-deb -x "${SCRATCH}/one/vextrel_${VERSION}_amd64.deb" "${SCRATCH}/deb"
    COMMAND_ERROR_IS_FATAL ANY)
  expect_trace("${SCRATCH}/deb/usr")
  if(NOT EXISTS "${SCRATCH}/deb/usr/share/man/man1/vextrel.1")
    message(FATAL_ERROR "The package has no manual page.")
  endif()
  file(STRINGS "${SCRATCH}/deb/usr/share/vextrel/file.properties" lines REGEX "TEMP")
  if(lines)
    message(FATAL_ERROR "A property file for Linux needs TEMP: ${lines}")
  endif()
endif()
