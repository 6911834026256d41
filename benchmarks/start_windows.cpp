// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "start.h"

namespace vextrel_bench {

const char* FirstCallProgram() {
  return "first_call.exe";
}

bool RunProgram(const std::filesystem::path& program, const std::filesystem::path& argument) {
  std::wstring command = L"\"" + program.wstring() + L"\" \"" + argument.wstring() + L"\"";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &process) == FALSE) {
    return false;
  }
  DWORD exitCode = 1;
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return exitCode == 0;
}

}  // namespace vextrel_bench
