# SPDX-License-Identifier: MIT
# The compile and link settings of all our targets.
function(vextrel_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${VEXTREL_WERROR}>:-Werror>)
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Unique symbols would keep an unloaded module in memory.
    target_compile_options(${target} PRIVATE -fno-gnu-unique)
  endif()
endfunction()

# Makes traced calls cheaper and the build faster. Coverage needs separate files.
option(VEXTREL_AS_ONE_UNIT "Compile the sources of the product, and of each sample, as one unit" ON)
function(vextrel_compile_as_one_unit target)
  if(VEXTREL_AS_ONE_UNIT AND NOT VEXTREL_COVERAGE)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
  endif()
endfunction()

# Counts the lines of a target that run; meant for the product, not for tests and libraries.
# Warnings aren't errors here: without optimisation they differ, and only the optimised builds must
# be clean.
function(vextrel_count_lines target)
  if(VEXTREL_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic -O0 -Wno-error)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()

# Links the C++ and compiler runtimes into a Windows binary, so that it needs system DLLs only.
function(vextrel_link_static_runtime target)
  if(MINGW)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()

# Turns a module definition file into a linker version script, so that both platforms export from
# one list.
function(vextrel_write_version_script def_file script_file)
  file(STRINGS "${def_file}" lines REGEX "^ +[A-Za-z]+")
  set(names "")
  foreach(line IN LISTS lines)
    string(STRIP "${line}" name)
    string(APPEND names "    ${name};\n")
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${def_file}")
  file(CONFIGURE OUTPUT "${script_file}" CONTENT "{\n  global:\n@names@  local:\n    *;\n};\n" @ONLY)
endfunction()

# A GenTL producer module NAME.cti that exports the names of DEF and nothing else.
function(vextrel_configure_producer target def_file)
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX ".cti" OUTPUT_NAME ${target}
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}"
    RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
  vextrel_configure_target(${target})
  vextrel_link_static_runtime(${target})
  if(WIN32)
    target_sources(${target} PRIVATE "${def_file}")
  else()
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
    vextrel_write_version_script("${def_file}" "${script}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
    if(NOT VEXTREL_SANITIZERS)
      target_link_options(${target} PRIVATE "LINKER:--no-undefined")
    endif()
  endif()
endfunction()
