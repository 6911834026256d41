// SPDX-License-Identifier: MIT
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "start.h"

namespace vextrel_bench {

const char* FirstCallProgram() {
  return "first_call";
}

bool RunProgram(const std::filesystem::path& program, const std::filesystem::path& argument) {
  std::string words[] = {program.string(), argument.string()};
  char* arguments[] = {words[0].data(), words[1].data(), nullptr};
  pid_t process = 0;
  if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments, environ) != 0) {
    return false;
  }
  int status = 0;
  return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace vextrel_bench
