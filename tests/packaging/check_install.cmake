# SPDX-License-Identifier: MIT
# Installs the components of BUILD, each into an empty folder of its own, and checks what arrives; then
# the installed consumer grabs through each of the installed modules.
function(expect_installed component)
  set(prefix "${SCRATCH}/${component}")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --config "${CONFIG}" --prefix "${prefix}"
      --component "${component}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE arrived LIST_DIRECTORIES false RELATIVE "${prefix}" "${prefix}/*")
  set(expected ${ARGN})
  list(SORT arrived)
  list(SORT expected)
  if(NOT arrived STREQUAL expected)
    message(FATAL_ERROR "${component}: ${arrived}\nexpected: ${expected}")
  endif()
endfunction()

# files_of FOLDER PATTERN DESTINATION VARIABLE
function(files_of folder pattern destination variable)
  file(GLOB names RELATIVE "${SOURCE}/${folder}" "${SOURCE}/${folder}/${pattern}")
  if(NOT names)
    message(FATAL_ERROR "There is no ${folder}/${pattern}.")
  endif()
  list(TRANSFORM names PREPEND "${destination}/")
  set(${variable} ${names} PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${SCRATCH}")
files_of(config *.properties "${DATADIR}/vextrel" configs)
files_of(docs *.md "${DOCDIR}/docs" documents)
files_of(docs/images *.png "${DOCDIR}/docs/images" pictures)
list(APPEND documents ${pictures})
foreach(name IN ITEMS CHANGELOG.md CONTRIBUTING.md COPYING.log4cpp LICENSE NOTICE README.md SECURITY.md)
  list(APPEND documents "${DOCDIR}/${name}")
endforeach()
set(programs "")
if(HAS_PROGRAM)
  set(programs "${BINDIR}/vextrel${EXECUTABLE_SUFFIX}")
  if(NOT EMULATOR)
    list(APPEND programs "${MANDIR}/man1/vextrel.1")
  endif()
  foreach(library IN ITEMS CLI11=libcli11-dev fmt=libfmt-dev json=nlohmann-json3-dev
      dygraphs=libjs-dygraphs)
    string(REGEX MATCH "^(.*)=(.*)$" ignored "${library}")
    if(EXISTS "/usr/share/doc/${CMAKE_MATCH_2}/copyright")
      list(APPEND documents "${DOCDIR}/COPYING.${CMAKE_MATCH_1}")
    endif()
  endforeach()
  expect_installed(program ${programs})
endif()
expect_installed(module "${LIBDIR}/vextrel/vextrel.cti")
expect_installed(extended "${LIBDIR}/vextrel-extended/vextrel_extended.cti")
expect_installed(samples
  "${LIBDIR}/vextrel-samples/simulated_camera.cti"
  "${LIBDIR}/vextrel-samples/simulated_camera_extended.cti"
  "${LIBDIR}/vextrel-samples/grab${EXECUTABLE_SUFFIX}")
expect_installed(config ${configs})
expect_installed(docs ${documents})

# Nothing belongs to no component.
execute_process(
  COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --config "${CONFIG}" --prefix "${SCRATCH}/all"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE all LIST_DIRECTORIES false RELATIVE "${SCRATCH}/all" "${SCRATCH}/all/*")
list(LENGTH all count)
list(LENGTH configs config_count)
list(LENGTH documents document_count)
list(LENGTH programs program_count)
math(EXPR expected_count "5 + ${config_count} + ${document_count} + ${program_count}")
if(NOT count EQUAL expected_count)
  message(FATAL_ERROR "${count} files instead of ${expected_count}: ${all}")
endif()

# Wine shows the build machine's file system as drive Z.
set(drive "")
if(EMULATOR)
  set(drive "Z:")
endif()

# trace(FOLDER CAMERA CONFIG ARGUMENTS...): the installed consumer grabs a frame. Sets `log`.
function(trace folder camera config)
  set(log "${SCRATCH}/${folder}.log")
  file(READ "${SCRATCH}/all/${DATADIR}/vextrel/${config}" properties)
  string(REGEX REPLACE "(appender\\.file\\.fileName=)[^\n]*" "\\1${drive}${log}" properties
    "${properties}")
  file(WRITE "${SCRATCH}/${config}" "${properties}")
  set(samples "${SCRATCH}/all/${LIBDIR}/vextrel-samples")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env
      "GENICAM_GENTL64_PATH=${drive}${SCRATCH}/all/${LIBDIR}/${folder}"
      "GENICAM_GENTL64_VEXTREL_PRODUCER=${drive}${samples}/${camera}"
      "GENICAM_GENTL64_VEXTREL_LOG_CONFIG=${drive}${SCRATCH}/${config}"
      ${EMULATOR} "${samples}/grab${EXECUTABLE_SUFFIX}" --frames 1 ${ARGN}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The installed consumer failed (${result}):\n${output}")
  endif()
  set(log "${log}" PARENT_SCOPE)
endfunction()

function(expect_logged)
  foreach(expression IN LISTS ARGN)
    file(STRINGS "${log}" lines REGEX "${expression}")
    if(NOT lines)
      message(FATAL_ERROR "${log} has no line with ${expression}")
    endif()
  endforeach()
endfunction()

set(calls "GC_ERR_SUCCESS=GCInitLib\\(" "GC_ERR_SUCCESS=DSQueueBuffer\\("
  "GC_ERR_SUCCESS=GCCloseLib\\(")
trace(vextrel simulated_camera.cti file.properties)
expect_logged(${calls})
trace(vextrel-extended simulated_camera_extended.cti timing.properties --genTL 1.5)
expect_logged(${calls} "GC_ERR_SUCCESS=DSGetNumBufferParts\\("
  "DEBUG Call 1 enters GCInitLib\\(\\)" "DEBUG Call 1 leaves GCInitLib after [0-9]+\\.[0-9][0-9][0-9] us")
