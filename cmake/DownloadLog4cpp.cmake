# Downloads log4cpp's release archive from upstream to FILE, and checks it.
#   cmake -D FILE=... -P DownloadLog4cpp.cmake, or included with FILE set
include("${CMAKE_CURRENT_LIST_DIR}/Log4cppRelease.cmake")

file(DOWNLOAD "${VEXTREL_LOG4CPP_URL}" "${FILE}.part" STATUS status)
list(GET status 0 code)
if(NOT code EQUAL 0)
  file(REMOVE "${FILE}.part")
  message(FATAL_ERROR "log4cpp 1.1.4 could not be downloaded (${status}). "
    "Put its release archive at ${FILE}, or run scripts/setup.")
endif()
file(SHA256 "${FILE}.part" hash)
if(NOT hash STREQUAL VEXTREL_LOG4CPP_SHA256)
  file(REMOVE "${FILE}.part")
  message(FATAL_ERROR "The downloaded archive is not log4cpp's release 1.1.4 (SHA-256 ${hash}).")
endif()
file(RENAME "${FILE}.part" "${FILE}")
