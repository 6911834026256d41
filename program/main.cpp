// SPDX-License-Identifier: MIT
#include <cstdio>

#include "commands/command_line.h"
#include "launching/system.h"
#include "reading/byte_file.h"
#include "views/output.h"

int main(int count, char** values) {
  vextrel::program::PrepareConsole();
  vextrel::program::Output output(stdout);
  vextrel::program::Output errors(stderr);
  return vextrel::program::RunProgram(vextrel::program::ProgramArguments(count, values), output,
                                      errors);
}
