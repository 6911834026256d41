# SPDX-License-Identifier: MIT
# Makes a source of files: `cmake -D OUTPUT=parts.cpp -P EmbedFiles.cmake NAME=FILE...` defines
# vextrel::program::NAME, declared in page/parts.h, as a view of each file's text.
set(text "// Made by cmake/EmbedFiles.cmake.\n#include \"page/parts.h\"\n\nnamespace vextrel::program {\n\n")
set(after OFF)
foreach(i RANGE 1 ${CMAKE_ARGC})
  set(argument "${CMAKE_ARGV${i}}")
  if(after AND argument MATCHES "^([A-Za-z]+)=(.+)$")
    set(name "${CMAKE_MATCH_1}")
    # Without the reference to a source map, which a debugger would look for in vain.
    file(READ "${CMAKE_MATCH_2}" bytes HEX)
    string(REGEX REPLACE "(2f2f|2f2a)2320736f757263654d617070696e6755524c3d.*$" "" bytes "${bytes}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND text "namespace {\nconstexpr char ${name}Bytes[] = {${bytes}'\\0'};\n}\n"
      "const std::string_view ${name}{${name}Bytes, sizeof(${name}Bytes) - 1};\n\n")
  elseif(argument MATCHES "EmbedFiles\\.cmake$")
    set(after ON)
  endif()
endforeach()
string(APPEND text "}  // namespace vextrel::program\n")
file(WRITE "${OUTPUT}" "${text}")
