# Runs the built grab program as a child process against the simulated camera.
include(GoogleTest)

# A module that loads but is no producer.
add_library(no_producer MODULE no_producer.cpp)
set_target_properties(no_producer PROPERTIES
  PREFIX "" SUFFIX ".cti"
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/no_producer")
vextrel_configure_target(no_producer)
vextrel_link_static_runtime(no_producer)

# A producer without anything optional.
add_library(sparse_producer MODULE sparse_producer.cpp)
vextrel_configure_producer(sparse_producer "${CMAKE_CURRENT_SOURCE_DIR}/sparse_producer.def")
target_include_directories(sparse_producer PRIVATE "${PROJECT_SOURCE_DIR}/src")
if(MSVC)
  target_compile_definitions(sparse_producer PRIVATE _CRT_SECURE_NO_WARNINGS)
endif()
set_target_properties(sparse_producer PROPERTIES
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/sparse_producer"
  RUNTIME_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/sparse_producer")

add_executable(grab_test grab_test.cpp child_process.cpp)
vextrel_configure_target(grab_test)
vextrel_link_static_runtime(grab_test)
target_link_libraries(grab_test PRIVATE gtest_main)
add_dependencies(grab_test grab simulated_camera no_producer sparse_producer)

# Wine shows the build machine's file system as drive Z.
if(CMAKE_CROSSCOMPILING AND WIN32)
  set(drive "Z:")
else()
  set(drive "")
endif()
target_compile_definitions(grab_test PRIVATE
  GRAB_PROGRAM="${drive}$<TARGET_FILE:grab>"
  SIMULATED_CAMERA="${drive}$<TARGET_FILE:simulated_camera>"
  NO_PRODUCER="${drive}$<TARGET_FILE:no_producer>"
  SPARSE_PRODUCER="${drive}$<TARGET_FILE:sparse_producer>"
  SCRATCH_FOLDER="${drive}${CMAKE_CURRENT_BINARY_DIR}/grab_test_files")
gtest_discover_tests(grab_test DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
  PROPERTIES TIMEOUT 60)
