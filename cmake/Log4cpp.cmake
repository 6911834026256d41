# SPDX-License-Identifier: MIT
# log4cpp 1.1.4, static, built from its release archive.
include(FetchContent)
include("${CMAKE_CURRENT_LIST_DIR}/ReleaseArchive.cmake")

vextrel_find_release(LOG4CPP vextrel_log4cpp_archive)
FetchContent_Declare(log4cpp
  URL "${vextrel_log4cpp_archive}"
  URL_HASH SHA256=${VEXTREL_LOG4CPP_SHA256}
  DOWNLOAD_EXTRACT_TIMESTAMP ON
  # No such folder, so that log4cpp's own CMakeLists.txt isn't used.
  SOURCE_SUBDIR vextrel-builds-it-itself)
FetchContent_MakeAvailable(log4cpp)

file(GLOB vextrel_log4cpp_sources CONFIGURE_DEPENDS "${log4cpp_SOURCE_DIR}/src/*.cpp")
list(FILTER vextrel_log4cpp_sources EXCLUDE REGEX
  "/(SmtpAppender|OmniThreads|BoostThreads|DllMain|IdsaAppender)\\.cpp$")
if(NOT WIN32)
  list(FILTER vextrel_log4cpp_sources EXCLUDE REGEX "/(NTEventLogAppender|Win32DebugAppender|MSThreads)\\.cpp$")
endif()

add_library(log4cpp STATIC ${vextrel_log4cpp_sources})
add_library(log4cpp::log4cpp ALIAS log4cpp)
target_compile_features(log4cpp PRIVATE cxx_std_20)
set_target_properties(log4cpp PROPERTIES
  CXX_EXTENSIONS OFF
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON
  POSITION_INDEPENDENT_CODE ON
  EXPORT_COMPILE_COMMANDS OFF
  UNITY_BUILD ON
  UNITY_BUILD_BATCH_SIZE 11)
# src/ holds the header of PropertyConfiguratorImpl.
target_include_directories(log4cpp SYSTEM PUBLIC
  "${log4cpp_SOURCE_DIR}/include" "${log4cpp_SOURCE_DIR}/src")
# src/backend refuses any version but the one that it was checked against.
target_compile_definitions(log4cpp PUBLIC "VEXTREL_LOG4CPP_VERSION=\"${VEXTREL_LOG4CPP_VERSION}\"")
if(MINGW)
  # Otherwise, every event calls ftime, which is much slower than gettimeofday.
  target_compile_definitions(log4cpp PUBLIC WIN32 LOG4CPP_HAVE_INT64_T LOG4CPP_HAVE_IN_ADDR_T
    in_addr_t=unsigned\ long LOG4CPP_HAVE_GETTIMEOFDAY)
  target_link_libraries(log4cpp PUBLIC ws2_32)
else()
  # Replaces the header that log4cpp's configure script would generate.
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/log4cpp-config/log4cpp/config.h" CONTENT
"#pragma once
#define LOG4CPP_PACKAGE \"log4cpp\"
#define LOG4CPP_VERSION \"1.1.4\"
#define LOG4CPP_HAVE_GETTIMEOFDAY 1
#define LOG4CPP_HAVE_INT64_T 1
#define LOG4CPP_HAVE_IN_ADDR_T 1
#define LOG4CPP_HAVE_LOCALTIME_R 1
#define LOG4CPP_HAVE_NAMESPACES 1
#define LOG4CPP_HAVE_SNPRINTF 1
#define LOG4CPP_HAVE_SSTREAM 1
#define LOG4CPP_HAVE_STDINT_H 1
#define LOG4CPP_HAVE_SYSLOG 1
#define LOG4CPP_HAVE_THREADING 1
#define LOG4CPP_HAVE_UNISTD_H 1
#define LOG4CPP_USE_PTHREADS 1
")
  target_include_directories(log4cpp SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}/log4cpp-config")
  find_package(Threads REQUIRED)
  target_link_libraries(log4cpp PUBLIC Threads::Threads)
endif()
# A target whose precompiled header begins with lets_exceptions_pass.h opts out: g++ ignores a precompiled
# header that follows another include.
set(VEXTREL_LOG4CPP_FRONT "${CMAKE_CURRENT_LIST_DIR}/../src/backend/lets_exceptions_pass.h")
set(vextrel_front_option "SHELL:-include ${VEXTREL_LOG4CPP_FRONT}")
target_compile_options(log4cpp PUBLIC
  "$<$<AND:$<COMPILE_LANGUAGE:CXX>,$<NOT:$<BOOL:$<TARGET_PROPERTY:VEXTREL_PRECOMPILES_LOG4CPP_FRONT>>>>:${vextrel_front_option}>")
target_compile_options(log4cpp PRIVATE -w)
