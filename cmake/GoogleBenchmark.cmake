# SPDX-License-Identifier: MIT
# Google Benchmark, built from its release archive.
include(FetchContent)
include("${CMAKE_CURRENT_LIST_DIR}/ReleaseArchive.cmake")

vextrel_find_release(BENCHMARK vextrel_benchmark_archive)
FetchContent_Declare(benchmark
  URL "${vextrel_benchmark_archive}"
  URL_HASH SHA256=${VEXTREL_BENCHMARK_SHA256}
  DOWNLOAD_EXTRACT_TIMESTAMP ON)
set(BENCHMARK_ENABLE_TESTING OFF CACHE BOOL "")
set(BENCHMARK_ENABLE_INSTALL OFF CACHE BOOL "")
set(BENCHMARK_INSTALL_DOCS OFF CACHE BOOL "")
set(BENCHMARK_ENABLE_WERROR OFF CACHE BOOL "")
# EXCLUDE_FROM_ALL: built only if a target needs it.
FetchContent_GetProperties(benchmark)
if(NOT benchmark_POPULATED)
  FetchContent_Populate(benchmark)
  add_subdirectory("${benchmark_SOURCE_DIR}" "${benchmark_BINARY_DIR}" EXCLUDE_FROM_ALL SYSTEM)
endif()
