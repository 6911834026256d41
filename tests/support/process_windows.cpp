// SPDX-License-Identifier: MIT
#include <windows.h>

#include "support/process.h"

namespace vextrel_test {
namespace {

constexpr UINT kKilledCode = 137;

// Creates a file that a child can inherit; none if the name is empty.
class OutputFile {
 public:
  explicit OutputFile(const std::filesystem::path& path) {
    if (!path.empty()) {
      SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
      file_ = ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
  }
  ~OutputFile() {
    if (file_ != INVALID_HANDLE_VALUE) {
      ::CloseHandle(file_);
    }
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  [[nodiscard]] HANDLE HandleOr(DWORD standard) const {
    return file_ != INVALID_HANDLE_VALUE ? file_ : ::GetStdHandle(standard);
  }

 private:
  HANDLE file_ = INVALID_HANDLE_VALUE;
};

}  // namespace

const Ending kKilledEnding = {Ending::Kind::Exited, kKilledCode};

void KillThisProcess() {
  for (;;) {
    ::TerminateProcess(::GetCurrentProcess(), kKilledCode);
  }
}

void ExitThisProcess(int code) {
  ::ExitProcess(static_cast<UINT>(code));
}

Process::Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::filesystem::path& out, const std::filesystem::path& err) {
  std::string command = '"' + std::filesystem::path(program).make_preferred().string() + '"';
  for (const std::string& argument : arguments) {
    command += " \"" + argument + '"';
  }
  const OutputFile outFile(out);
  const OutputFile errFile(err);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  // Inherits handles for its output only: a log file that the test has open must not stay open in
  // the child.
  const BOOL inherits = out.empty() && err.empty() ? FALSE : TRUE;
  if (inherits != FALSE) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = outFile.HandleOr(STD_OUTPUT_HANDLE);
    startup.hStdError = errFile.HandleOr(STD_ERROR_HANDLE);
  }
  PROCESS_INFORMATION information{};
  if (::CreateProcessA(nullptr, command.data(), nullptr, nullptr, inherits, 0, nullptr, nullptr,
                       &startup, &information) != 0) {
    ::CloseHandle(information.hThread);
    process_ = information.hProcess;
  }
}

Process::~Process() {
  if (process_ != nullptr) {
    ::TerminateProcess(process_, kKilledCode);
    ::WaitForSingleObject(process_, INFINITE);
    ::CloseHandle(process_);
  }
}

Ending Process::WaitFor(std::chrono::seconds limit) {
  if (process_ == nullptr) {
    return {Ending::Kind::NotStarted, 0};
  }
  const auto milliseconds = std::chrono::milliseconds(limit).count();
  if (::WaitForSingleObject(process_, static_cast<DWORD>(milliseconds)) != WAIT_OBJECT_0) {
    return {Ending::Kind::TooLate, 0};
  }
  DWORD code = 0;
  ::GetExitCodeProcess(process_, &code);
  ::CloseHandle(process_);
  process_ = nullptr;
  return {Ending::Kind::Exited, static_cast<int>(code)};
}

}  // namespace vextrel_test
