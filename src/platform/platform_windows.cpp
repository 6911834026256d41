// SPDX-License-Identifier: MIT
#include <windows.h>

#include <vector>

#include "platform/platform.h"

namespace vextrel::platform {

VariableRead ReadVariable(const char* name, char* buffer, std::uint32_t size) {
  // Reading an empty variable doesn't set the last error.
  ::SetLastError(ERROR_SUCCESS);
  const DWORD count = ::GetEnvironmentVariableA(name, buffer, size);
  if (count != 0) {
    return {count, 0};
  }
  // An empty variable isn't an error to Windows, but counts as not set here.
  const DWORD error = ::GetLastError();
  return {0, error == ERROR_SUCCESS ? kErrorVariableNotFound : error};
}

ModuleLoad LoadModule(const char* path) {
  HMODULE module = ::LoadLibraryA(path);
  return {module, module == nullptr ? ::GetLastError() : 0};
}

void UnloadModule(ModuleHandle module) {
  ::FreeLibrary(static_cast<HMODULE>(module));
}

bool IsOwnModule(ModuleHandle module) {
  HMODULE own = nullptr;
  ::GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&IsOwnModule), &own);
  return module == own;
}

void* FindExport(ModuleHandle module, const char* name) {
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module), name));
}

std::uint64_t ModuleFileVersion(ModuleHandle module) {
  char path[1024] = {};
  ::GetModuleFileNameA(static_cast<HMODULE>(module), path, sizeof path);
  DWORD ignored = 0;
  std::vector<char> block(::GetFileVersionInfoSizeA(path, &ignored));
  if (block.empty()) {
    return 0;
  }
  ::GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data());
  void* found = nullptr;
  UINT length = 0;
  if (::VerQueryValueA(block.data(), "\\", &found, &length) == 0) {
    return 0;
  }
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(found);
  return (std::uint64_t{info->dwFileVersionMS} << 32U) | info->dwFileVersionLS;
}

std::ifstream OpenTextFile(const std::string& path) {
  return std::ifstream(path);
}

LastErrorGuard::LastErrorGuard() noexcept : errno_(errno), lastError_(::GetLastError()) {}

LastErrorGuard::~LastErrorGuard() {
  errno = errno_;
  ::SetLastError(lastError_);
}

}  // namespace vextrel::platform
