# SPDX-License-Identifier: MIT
# Links the test programs for Windows with lld, where it and clang are installed. What MinGW's own linker
# needs grows with the square of the sections in an object, of which an unoptimized test has thousands:
# up to twelve seconds a program. The products are linked as ever.
find_program(VEXTREL_LLD ld.lld)
find_program(VEXTREL_LLD_DRIVER clang++-14)
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND VEXTREL_LLD AND VEXTREL_LLD_DRIVER)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=libgcc.a
    OUTPUT_VARIABLE libraries OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  cmake_path(GET libraries PARENT_PATH libraries)
  set(vextrel_usual_link_rule "${CMAKE_CXX_LINK_EXECUTABLE}")
  string(REPLACE "<CMAKE_CXX_COMPILER>"
    "\"${VEXTREL_LLD_DRIVER}\" --target=x86_64-w64-mingw32 -fuse-ld=lld -pthread \"-L${libraries}\" \"-B${libraries}\""
    CMAKE_CXX_LINK_EXECUTABLE "${CMAKE_CXX_LINK_EXECUTABLE}")
endif()

# In this folder and below, programs are linked by the compiler's own linker.
macro(vextrel_link_as_usual)
  if(DEFINED vextrel_usual_link_rule)
    set(CMAKE_CXX_LINK_EXECUTABLE "${vextrel_usual_link_rule}")
  endif()
endmacro()
