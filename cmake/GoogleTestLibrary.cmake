# SPDX-License-Identifier: MIT
# GoogleTest and GoogleMock, built from the system's copy of the sources (Debian's package googletest) or
# from their release archive. A system's prebuilt libraries don't do, because the tests are also
# cross-built and built with sanitizers.
include(FetchContent)
include("${CMAKE_CURRENT_LIST_DIR}/ReleaseArchive.cmake")

find_path(VEXTREL_GOOGLETEST googlemock/CMakeLists.txt PATHS /usr/src/googletest
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH DOC "GoogleTest's sources; empty: its release is fetched")
if(VEXTREL_GOOGLETEST)
  FetchContent_Declare(googletest SOURCE_DIR "${VEXTREL_GOOGLETEST}")
else()
  vextrel_find_release(GOOGLETEST vextrel_googletest_archive)
  FetchContent_Declare(googletest
    URL "${vextrel_googletest_archive}"
    URL_HASH SHA256=${VEXTREL_GOOGLETEST_SHA256}
    DOWNLOAD_EXTRACT_TIMESTAMP ON)
endif()
if(VEXTREL_TEST_OBJECTS)
  # What is linked with compiled tests is what they were compiled with.
  FetchContent_Populate(googletest)
  foreach(name IN ITEMS gtest gtest_main gmock)
    add_library(${name} STATIC IMPORTED GLOBAL)
    set_target_properties(${name} PROPERTIES
      IMPORTED_LOCATION "${VEXTREL_TEST_OBJECTS}/lib/lib${name}.a"
      INTERFACE_INCLUDE_DIRECTORIES
        "${googletest_SOURCE_DIR}/googletest/include;${googletest_SOURCE_DIR}/googlemock/include")
  endforeach()
  return()
endif()
set(BUILD_GMOCK ON CACHE BOOL "")
set(INSTALL_GTEST OFF CACHE BOOL "")
FetchContent_GetProperties(googletest)
if(NOT googletest_POPULATED)
  FetchContent_Populate(googletest)
  add_subdirectory("${googletest_SOURCE_DIR}" "${googletest_BINARY_DIR}" EXCLUDE_FROM_ALL SYSTEM)
  target_compile_options(gtest PRIVATE -O1 -g0)
  target_compile_options(gmock PRIVATE -O1 -g0)
endif()
