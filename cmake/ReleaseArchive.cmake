# SPDX-License-Identifier: MIT
# vextrel_find_release(NAME VARIABLE): the path of NAME's release archive, in VARIABLE.
#
# scripts/setup puts the archives into the cache folder. Those that are missing are downloaded from
# upstream, and kept there. REQUIRES: the caller checks the hash, VEXTREL_<NAME>_SHA256.
include("${CMAKE_CURRENT_LIST_DIR}/Releases.cmake")

if(DEFINED ENV{VEXTREL_CACHE})
  file(TO_CMAKE_PATH "$ENV{VEXTREL_CACHE}" vextrel_cache_default)
elseif(DEFINED ENV{HOME})
  set(vextrel_cache_default "$ENV{HOME}/.cache/vextrel")
else()
  set(vextrel_cache_default "${PROJECT_SOURCE_DIR}/build/.cache/vextrel")
endif()
set(VEXTREL_CACHE_DIR "${vextrel_cache_default}" CACHE PATH "Where downloaded archives are kept")

set(vextrel_cmake_folder "${CMAKE_CURRENT_LIST_DIR}")
function(vextrel_find_release NAME variable)
  string(TOLOWER "${NAME}" lower)
  set(FILE "${VEXTREL_CACHE_DIR}/${lower}-${VEXTREL_${NAME}_VERSION}.tar.gz")
  if(NOT EXISTS "${FILE}")
    message(STATUS "Downloading ${lower} ${VEXTREL_${NAME}_VERSION}")
    file(MAKE_DIRECTORY "${VEXTREL_CACHE_DIR}")
    include("${vextrel_cmake_folder}/DownloadRelease.cmake")
  endif()
  set(${variable} "${FILE}" PARENT_SCOPE)
endfunction()
