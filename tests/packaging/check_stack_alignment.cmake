# SPDX-License-Identifier: MIT
# Fails if MODULE, a Windows binary, keeps a 32-byte or 64-byte register on the stack by an instruction
# that needs the place to be aligned as much. g++ aligns the stack of a Windows function to 16 bytes
# only (GCC bug 54412), so such an instruction crashes every other time.
#   cmake -D OBJDUMP=... -D MODULE=... -D DISASSEMBLY=FILE -P check_stack_alignment.cmake
execute_process(COMMAND "${OBJDUMP}" -d --no-show-raw-insn "${MODULE}" OUTPUT_FILE "${DISASSEMBLY}"
  COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS "${DISASSEMBLY}" any LIMIT_COUNT 1 REGEX "[ \t]ret")
if(NOT any)
  message(FATAL_ERROR "${MODULE} could not be disassembled.")
endif()
file(STRINGS "${DISASSEMBLY}" found
  REGEX "[ \t]vmov(dqa|dqa32|dqa64|aps|apd|nt[a-z]+)[ \t].*\\(%r[sb]p[,)]")
list(FILTER found INCLUDE REGEX "%[yz]mm")
file(REMOVE "${DISASSEMBLY}")
if(found)
  list(LENGTH found count)
  cmake_path(GET MODULE FILENAME name)
  list(JOIN found "\n" lines)
  message(FATAL_ERROR
    "${name} has ${count} instructions that need the stack aligned beyond 16 bytes:\n${lines}")
endif()
