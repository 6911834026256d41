#include <windows.h>

#include <string_view>
#include <system_error>

#include "error.h"
#include "module.h"

namespace grab {
namespace {

[[nodiscard]] std::wstring Widen(std::string_view text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), length);
  return wide;
}

[[nodiscard]] std::string Narrow(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  const int length =
      WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

[[nodiscard]] std::string SystemReason(DWORD code) {
  std::string text = std::system_category().message(static_cast<int>(code));
  while (!text.empty() && (text.back() == '.' || text.back() <= ' ')) {
    text.pop_back();
  }
  return text + " (system error " + std::to_string(code) + ")";
}

}  // namespace

const std::filesystem::path::value_type kPathListSeparator = L';';

Module::Module(const std::filesystem::path& file) {
  // No message box for a damaged file; and a producer's own libraries lie beside it.
  SetErrorMode(SEM_FAILCRITICALERRORS);
  const std::filesystem::path absolute = std::filesystem::absolute(file).make_preferred();
  handle = LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle == nullptr) {
    throw Error("Cannot load " + PathText(file) + ": " + SystemReason(GetLastError()) + ".");
  }
}

Module::~Module() {
  FreeLibrary(static_cast<HMODULE>(handle));
}

void* Module::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

std::optional<std::filesystem::path::string_type> EnvironmentVariable(const char* name) {
  const std::wstring wideName = Widen(name);
  const DWORD size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
  if (size == 0) {
    return std::nullopt;
  }
  std::wstring value(size, L'\0');
  value.resize(GetEnvironmentVariableW(wideName.c_str(), value.data(), size));
  return value;
}

std::filesystem::path PathFromArgument(const char* argument) {
  return Widen(argument);
}

std::string PathText(const std::filesystem::path& path) {
  return Narrow(path.native());
}

}  // namespace grab
