#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <thread>

#include "endings/child.h"

namespace vextrel_test {
namespace {

pid_t Number(void* process) {
  return static_cast<pid_t>(reinterpret_cast<std::intptr_t>(process));
}

Ending Decode(int status) {
  return WIFEXITED(status) ? Ending{Ending::Kind::kExited, WEXITSTATUS(status)}
                           : Ending{Ending::Kind::kKilled, WTERMSIG(status)};
}

}  // namespace

const Ending kKilledEnding = {Ending::Kind::kKilled, SIGKILL};

void KillThisProcess() {
  ::kill(::getpid(), SIGKILL);
  for (;;) {
    ::pause();
  }
}

void ExitThisProcess(int code) {
  ::_exit(code);
}

Child::Child(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {program.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  pid_t number = 0;
  if (::posix_spawn(&number, program.c_str(), nullptr, nullptr, pointers.data(), environ) == 0) {
    process_ = reinterpret_cast<void*>(std::intptr_t{number});
  }
}

Child::~Child() {
  if (process_ != nullptr) {
    int status = 0;
    ::kill(Number(process_), SIGKILL);
    ::waitpid(Number(process_), &status, 0);
  }
}

Ending Child::WaitFor(std::chrono::seconds limit) {
  if (process_ == nullptr) {
    return {Ending::Kind::kNotStarted, 0};
  }
  const auto end = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (::waitpid(Number(process_), &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      return {Ending::Kind::kTooLate, 0};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  process_ = nullptr;
  return Decode(status);
}

}  // namespace vextrel_test
