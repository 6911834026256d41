// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <thread>

#include "support/process.h"

namespace vextrel_test {
namespace {

pid_t Number(void* process) {
  return static_cast<pid_t>(reinterpret_cast<std::intptr_t>(process));
}

Ending Decode(int status) {
  return WIFEXITED(status) ? Ending{Ending::Kind::Exited, WEXITSTATUS(status)}
                           : Ending{Ending::Kind::Killed, WTERMSIG(status)};
}

// Sends the output of the process to be started to files.
class Redirection {
 public:
  Redirection(const std::filesystem::path& out, const std::filesystem::path& err) {
    ::posix_spawn_file_actions_init(&actions);
    Redirect(STDOUT_FILENO, out);
    Redirect(STDERR_FILENO, err);
  }
  ~Redirection() { ::posix_spawn_file_actions_destroy(&actions); }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

  posix_spawn_file_actions_t actions{};

 private:
  void Redirect(int descriptor, const std::filesystem::path& file) {
    constexpr mode_t mode = 0644;
    if (!file.empty()) {
      ::posix_spawn_file_actions_addopen(&actions, descriptor, file.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, mode);
    }
  }
};

}  // namespace

const Ending kKilledEnding = {Ending::Kind::Killed, SIGKILL};

void KillThisProcess() {
  ::kill(::getpid(), SIGKILL);
  for (;;) {
    ::pause();
  }
}

void ExitThisProcess(int code) {
  ::_exit(code);
}

Process::Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::filesystem::path& out, const std::filesystem::path& err) {
  std::vector<std::string> texts = {program.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  const Redirection redirection(out, err);
  pid_t number = 0;
  if (::posix_spawn(&number, program.c_str(), &redirection.actions, nullptr, pointers.data(),
                    environ) == 0) {
    process_ = reinterpret_cast<void*>(std::intptr_t{number});
  }
}

Process::~Process() {
  if (process_ != nullptr) {
    int status = 0;
    ::kill(Number(process_), SIGKILL);
    ::waitpid(Number(process_), &status, 0);
  }
}

Ending Process::WaitFor(std::chrono::seconds limit) {
  if (process_ == nullptr) {
    return {Ending::Kind::NotStarted, 0};
  }
  const auto end = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (::waitpid(Number(process_), &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      return {Ending::Kind::TooLate, 0};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  process_ = nullptr;
  return Decode(status);
}

}  // namespace vextrel_test
