// SPDX-License-Identifier: MIT
#include "program/console_program.h"

// The system's headers come first in what they need of each other.
// clang-format off
#include <windows.h>
// clang-format on

#include "launching/quoting.h"
#include "launching/wide_windows.h"

namespace vextrel_test {
namespace {

constexpr UINT kEndedCode = 77;
constexpr DWORD kMinute = 60000;

HANDLE AsHandle(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

const int kEndedStatus = kEndedCode;

ConsoleProgram::ConsoleProgram(const std::filesystem::path& program,
                               std::vector<std::string> arguments,
                               const std::filesystem::path& errors) {
  arguments.insert(arguments.begin(), "program");
  std::wstring line = vextrel::program::Wide(vextrel::program::QuotedCommandLine(arguments));
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  HANDLE file = CreateFileW(errors.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = file;
  startup.hStdError = file;
  PROCESS_INFORMATION information{};
  // A console that isn't shown.
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                     nullptr, nullptr, &startup, &information) != 0) {
    CloseHandle(information.hThread);
    process_ = reinterpret_cast<std::intptr_t>(information.hProcess);
    id_ = information.dwProcessId;
  }
  CloseHandle(file);
}

ConsoleProgram::~ConsoleProgram() {
  TerminateProcess(AsHandle(process_), kEndedCode);
  CloseHandle(AsHandle(process_));
}

// Only a process of the console can send events to it.
void ConsoleProgram::PressCtrlC() const {
  SetConsoleCtrlHandler(nullptr, TRUE);
  FreeConsole();
  if (AttachConsole(id_) != 0) {
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    WaitForSingleObject(AsHandle(process_), kMinute);
    FreeConsole();
  }
  AttachConsole(ATTACH_PARENT_PROCESS);
  SetConsoleCtrlHandler(nullptr, FALSE);
}

int ConsoleProgram::WaitForEnd() {
  DWORD status = 0;
  if (WaitForSingleObject(AsHandle(process_), kMinute) != WAIT_OBJECT_0 ||
      GetExitCodeProcess(AsHandle(process_), &status) == 0) {
    return -1;
  }
  return static_cast<int>(status);
}

void EndProcess(std::uint32_t id) {
  HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
  TerminateProcess(process, kEndedCode);
  CloseHandle(process);
}

}  // namespace vextrel_test
