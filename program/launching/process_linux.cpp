// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/process.h"

namespace vextrel::program {
namespace {

// What the user or the system ends programs with.
constexpr std::array<int, 6> kSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2};
volatile std::sig_atomic_t childToTell = 0;
volatile std::sig_atomic_t wasInterrupted = 0;
std::array<struct sigaction, kSignals.size()> actionsBefore;
struct sigaction childActionBefore;

void OnSignal(int number, siginfo_t* info, void* /*context*/) {
  const int error = errno;
  wasInterrupted = 1;
  // What comes from the terminal has reached the child, too.
  if (childToTell > 0 && info->si_code <= 0) {
    ::kill(childToTell, number);
  }
  errno = error;
}

// Keeps our signals waiting: one that came before the child is known could not be passed on.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int number : kSignals) {
      ::sigaddset(&held, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
  }
  ~HeldSignals() { Release(); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  void Release() const { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

void BeSilent() {
  const int nothing = ::open("/dev/null", O_RDWR);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(nothing, STDOUT_FILENO);
  ::dup2(nothing, STDERR_FILENO);
}

int StatusOf(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void Sleep(std::chrono::milliseconds time) {
  const timespec request{0, static_cast<long>(time.count()) * 1'000'000};
  ::nanosleep(&request, nullptr);
}

}  // namespace

Process::Process(const StartRequest& request) {
  std::vector<std::string> arguments = request.arguments;
  std::vector<std::string> entries = request.variables.Entries();
  const std::vector<char*> argumentPointers = Pointers(arguments);
  const std::vector<char*> entryPointers = Pointers(entries);
  // Orphans of the application become our children, so that we know of them.
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
    throw LaunchFailure(kExitOwnFailure,
                        std::string("no pipe can be made (") + std::strerror(errno) + ")");
  }
  const HeldSignals held;
  const pid_t child = ::fork();
  if (child == 0) {
    if (request.isSilent) {
      BeSilent();
    }
    // Handlers end with exec, but what we set to the default would stay.
    if (childActionBefore.sa_handler == SIG_IGN) {
      static_cast<void>(::signal(SIGCHLD, SIG_IGN));
    }
    held.Release();
    ::execve(request.file.c_str(), argumentPointers.data(), entryPointers.data());
    const int error = errno;
    static_cast<void>(::write(pipe[1], &error, sizeof error));
    ::_exit(kExitNotExecutable);
  }
  const int forkError = errno;
  ::close(pipe[1]);
  int error = 0;
  const bool failed =
      child > 0 && ::read(pipe[0], &error, sizeof error) == static_cast<ssize_t>(sizeof error);
  ::close(pipe[0]);
  if (child < 0) {
    throw LaunchFailure(kExitOwnFailure, std::string("no process can be started (") +
                                             std::strerror(forkError) + ")");
  }
  if (failed) {
    ::waitpid(child, nullptr, 0);
    throw LaunchFailure(
        error == ENOENT ? kExitNotFound : kExitNotExecutable,
        "'" + TextOf(request.file) + "' can't be started (" + std::strerror(error) + ")");
  }
  process_ = child;
  if (!request.isSilent) {
    childToTell = child;
  }
}

Process::~Process() {
  childToTell = 0;
}

int Process::WaitForEnd() {
  int status = 0;
  while (::waitpid(static_cast<pid_t>(process_), &status, 0) < 0 && errno == EINTR) {
  }
  childToTell = 0;
  return StatusOf(status);
}

std::optional<int> Process::WaitFor(std::chrono::milliseconds limit) {
  constexpr std::chrono::milliseconds step(5);
  for (auto waited = std::chrono::milliseconds(0);; waited += step) {
    int status = 0;
    if (::waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == process_) {
      return StatusOf(status);
    }
    if (waited >= limit) {
      return std::nullopt;
    }
    Sleep(step);
  }
}

void Process::Kill() {
  ::kill(static_cast<pid_t>(process_), SIGKILL);
  ::waitpid(static_cast<pid_t>(process_), nullptr, 0);
}

bool Process::DescendantsGoOn() {
  pid_t ended = 0;
  while ((ended = ::waitpid(-1, nullptr, WNOHANG)) > 0) {
  }
  return ended == 0;
}

void Process::WaitForDescendants() {
  wasInterrupted = 0;
  while (wasInterrupted == 0 && (::waitpid(-1, nullptr, 0) > 0 || errno == EINTR)) {
  }
}

InterruptionGuard::InterruptionGuard() {
  wasInterrupted = 0;
  struct sigaction action {};
  action.sa_sigaction = OnSignal;
  action.sa_flags = SA_SIGINFO;
  ::sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], nullptr, &actionsBefore[i]);
    // What nohup and the like have switched off stays off, for the application, too.
    if (actionsBefore[i].sa_handler != SIG_IGN) {
      ::sigaction(kSignals[i], &action, nullptr);
    }
  }
  struct sigaction byDefault {};
  byDefault.sa_handler = SIG_DFL;
  ::sigaction(SIGCHLD, &byDefault, &childActionBefore);
}

InterruptionGuard::~InterruptionGuard() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], &actionsBefore[i], nullptr);
  }
  ::sigaction(SIGCHLD, &childActionBefore, nullptr);
}

bool InterruptionGuard::WasInterrupted() noexcept {
  return wasInterrupted != 0;
}

}  // namespace vextrel::program
