# log4cpp 1.1.4, static, built from its release archive.
include(FetchContent)
include("${CMAKE_CURRENT_LIST_DIR}/ReleaseArchive.cmake")

vextrel_find_release(LOG4CPP vextrel_log4cpp_archive)
FetchContent_Declare(log4cpp
  URL "${vextrel_log4cpp_archive}"
  URL_HASH SHA256=${VEXTREL_LOG4CPP_SHA256}
  DOWNLOAD_EXTRACT_TIMESTAMP ON
  # No CMakeLists.txt there: its own is not what we build with.
  SOURCE_SUBDIR vextrel-builds-it-itself)
FetchContent_MakeAvailable(log4cpp)

file(GLOB vextrel_log4cpp_sources CONFIGURE_DEPENDS "${log4cpp_SOURCE_DIR}/src/*.cpp")
list(FILTER vextrel_log4cpp_sources EXCLUDE REGEX
  "/(SmtpAppender|OmniThreads|BoostThreads|DllMain|IdsaAppender)\\.cpp$")
if(NOT WIN32)
  list(FILTER vextrel_log4cpp_sources EXCLUDE REGEX "/(NTEventLogAppender|Win32DebugAppender|MSThreads)\\.cpp$")
endif()

add_library(log4cpp STATIC ${vextrel_log4cpp_sources})
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
if(MINGW)
  # gettimeofday is a good deal cheaper than ftime, which every event would call otherwise.
  target_compile_definitions(log4cpp PUBLIC WIN32 LOG4CPP_HAVE_INT64_T LOG4CPP_HAVE_IN_ADDR_T
    in_addr_t=unsigned\ long LOG4CPP_HAVE_GETTIMEOFDAY)
  target_link_libraries(log4cpp PUBLIC ws2_32)
elseif(MSVC)
  target_compile_definitions(log4cpp PUBLIC WIN32)
  target_link_libraries(log4cpp PUBLIC ws2_32 advapi32)
else()
  # Stands for the header that log4cpp's configure script would make.
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
# A target that has it at the front of its precompiled header says so: g++ takes no precompiled header
# behind another one.
set(VEXTREL_LOG4CPP_FRONT "${CMAKE_CURRENT_LIST_DIR}/log4cpp_lets_exceptions_pass.h")
set(vextrel_front_option "SHELL:$<IF:$<CXX_COMPILER_ID:MSVC>,/FI,-include> ${VEXTREL_LOG4CPP_FRONT}")
target_compile_options(log4cpp PUBLIC
  "$<$<AND:$<COMPILE_LANGUAGE:CXX>,$<NOT:$<BOOL:$<TARGET_PROPERTY:VEXTREL_PRECOMPILES_LOG4CPP_FRONT>>>>:${vextrel_front_option}>")
target_compile_options(log4cpp PRIVATE $<IF:$<CXX_COMPILER_ID:MSVC>,/w,-w>)
