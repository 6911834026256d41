# SPDX-License-Identifier: MIT
# Downloads the release archive of NAME (LOG4CPP, GOOGLETEST, BENCHMARK) from upstream to FILE, and checks it.
#   cmake -D NAME=... -D FILE=... -P DownloadRelease.cmake, or included with both set
include("${CMAKE_CURRENT_LIST_DIR}/Releases.cmake")

file(DOWNLOAD "${VEXTREL_${NAME}_URL}" "${FILE}.part" STATUS status)
list(GET status 0 code)
if(NOT code EQUAL 0)
  file(REMOVE "${FILE}.part")
  message(FATAL_ERROR "${NAME} ${VEXTREL_${NAME}_VERSION} could not be downloaded (${status}). "
    "Put its release archive at ${FILE}, or run scripts/setup.")
endif()
file(SHA256 "${FILE}.part" hash)
if(NOT hash STREQUAL VEXTREL_${NAME}_SHA256)
  file(REMOVE "${FILE}.part")
  message(FATAL_ERROR
    "The downloaded archive is not the release of ${NAME} that is wanted (SHA-256 ${hash}).")
endif()
file(RENAME "${FILE}.part" "${FILE}")
