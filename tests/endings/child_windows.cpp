#include <windows.h>

#include "endings/child.h"

namespace vextrel_test {
namespace {

constexpr UINT kKilledCode = 137;

}  // namespace

const Ending kKilledEnding = {Ending::Kind::kExited, kKilledCode};

void KillThisProcess() {
  for (;;) {
    ::TerminateProcess(::GetCurrentProcess(), kKilledCode);
  }
}

void ExitThisProcess(int code) {
  ::ExitProcess(static_cast<UINT>(code));
}

Child::Child(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::string command = '"' + program.string() + '"';
  for (const std::string& argument : arguments) {
    command += " \"" + argument + '"';
  }
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION information{};
  // No inherited handles: a log file that the test has open must not stay so in the child.
  if (::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                       &startup, &information) != 0) {
    ::CloseHandle(information.hThread);
    process_ = information.hProcess;
  }
}

Child::~Child() {
  if (process_ != nullptr) {
    ::TerminateProcess(process_, kKilledCode);
    ::WaitForSingleObject(process_, INFINITE);
    ::CloseHandle(process_);
  }
}

Ending Child::WaitFor(std::chrono::seconds limit) {
  if (process_ == nullptr) {
    return {Ending::Kind::kNotStarted, 0};
  }
  const auto milliseconds = std::chrono::milliseconds(limit).count();
  if (::WaitForSingleObject(process_, static_cast<DWORD>(milliseconds)) != WAIT_OBJECT_0) {
    return {Ending::Kind::kTooLate, 0};
  }
  DWORD code = 0;
  ::GetExitCodeProcess(process_, &code);
  ::CloseHandle(process_);
  process_ = nullptr;
  return {Ending::Kind::kExited, static_cast<int>(code)};
}

}  // namespace vextrel_test
