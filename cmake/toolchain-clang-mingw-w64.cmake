# SPDX-License-Identifier: MIT
# Cross build for 64-bit Windows with clang, with the headers and libraries of MinGW-w64's g++ (POSIX
# threads): a second compiler's opinion of the Windows module.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_OBJDUMP x86_64-w64-mingw32-objdump)

# By default, clang looks in the folders of another MinGW toolchain.
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=include/c++
  OUTPUT_VARIABLE headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libgcc.a
  OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET libgcc PARENT_PATH libraries)
set(CMAKE_CXX_FLAGS_INIT
  "-stdlib++-isystem ${headers} -stdlib++-isystem ${headers}/x86_64-w64-mingw32")
foreach(kind IN ITEMS EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-L${libraries} -B${libraries} -pthread")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

find_program(VEXTREL_WINE wine)
if(VEXTREL_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${VEXTREL_WINE}")
endif()
