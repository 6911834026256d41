// SPDX-License-Identifier: MIT
#include <windows.h>

#include "support/system.h"

namespace vextrel_test {

Module::Module(const std::filesystem::path& path)
    : handle_(::LoadLibraryA(path.string().c_str())) {}

Module::~Module() {
  if (handle_ != nullptr) {
    ::FreeLibrary(static_cast<HMODULE>(handle_));
  }
}

void* Module::FindAddress(const char* name) const {
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle_), name));
}

bool IsModuleLoaded(const std::filesystem::path& path) {
  return ::GetModuleHandleA(path.string().c_str()) != nullptr;
}

void SetVariable(const char* name, const char* value) {
  ::SetEnvironmentVariableA(name, value);
}

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

std::uint32_t LastError() {
  return ::GetLastError();
}
void SetLastErrorValue(std::uint32_t value) {
  ::SetLastError(value);
}

std::uint32_t ProcessId() {
  return ::GetCurrentProcessId();
}

}  // namespace vextrel_test
