// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "program/console_program.h"

namespace vextrel_test {

const int kEndedStatus = 128 + SIGKILL;

ConsoleProgram::ConsoleProgram(const std::filesystem::path& program,
                               std::vector<std::string> arguments,
                               const std::filesystem::path& errors) {
  std::string name = program.string();
  std::vector<char*> pointers = {name.data()};
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  pointers.push_back(nullptr);
  const pid_t child = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
  if (child == 0) {
    constexpr mode_t mode = 0600;
    ::dup2(::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode), STDERR_FILENO);
    ::execv(name.c_str(), pointers.data());
    ::_exit(1);
  }
  process_ = child;
}

ConsoleProgram::~ConsoleProgram() {
  if (process_ > 0) {
    ::kill(static_cast<pid_t>(process_), SIGKILL);
    ::waitpid(static_cast<pid_t>(process_), nullptr, 0);
  }
  ::close(terminal_);
}

void ConsoleProgram::PressCtrlC() const {
  constexpr char ctrlC = 3;
  static_cast<void>(::write(terminal_, &ctrlC, 1));
}

int ConsoleProgram::WaitForEnd() {
  constexpr int tries = 6000;
  const timespec step{0, 10'000'000};
  for (int i = 0; process_ > 0 && i < tries; ++i) {
    int status = 0;
    if (::waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == process_) {
      process_ = 0;
      return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    ::nanosleep(&step, nullptr);
  }
  return -1;
}

void EndProcess(std::uint32_t id) {
  ::kill(static_cast<pid_t>(id), SIGKILL);
}

}  // namespace vextrel_test
