// SPDX-License-Identifier: MIT
#include "launching/system.h"

// The system's headers come first in what they need of each other.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <array>

#include "launching/wide_windows.h"

namespace vextrel::program {

namespace fs = std::filesystem;

const bool kNamesIgnoreCase = true;
const char kListSeparator = ';';
const ImageKind kOwnImageKind = ImageKind::Pe;
const std::string_view kSystemName = "Windows";
namespace {
constexpr std::string_view kEndings[] = {"", ".exe", ".com", ".bat", ".cmd"};
}  // namespace
const std::span<const std::string_view> kProgramEndings = kEndings;
const bool kSearchesWorkingFolder = true;

namespace {

Variables ReadKey(HKEY root, const wchar_t* path) {
  Variables variables;
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return variables;
  }
  std::array<wchar_t, 256> name{};
  std::wstring value(32768, L'\0');
  for (DWORD index = 0;; ++index) {
    auto nameSize = static_cast<DWORD>(name.size());
    auto valueSize = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key, index, name.data(), &nameSize, nullptr, &type,
                                         reinterpret_cast<BYTE*>(value.data()), &valueSize);
    if (status == ERROR_NO_MORE_ITEMS) {
      break;
    }
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) {
      continue;
    }
    std::wstring text = value.substr(0, valueSize / sizeof(wchar_t));
    text = text.substr(0, text.find(L'\0'));
    if (type == REG_EXPAND_SZ) {
      std::wstring expanded(32768, L'\0');
      const DWORD size = ExpandEnvironmentStringsW(text.c_str(), expanded.data(),
                                                   static_cast<DWORD>(expanded.size()));
      if (size > 0 && size <= expanded.size()) {
        text = expanded.substr(0, size - 1);
      }
    }
    variables.Set(Narrow({name.data(), nameSize}), Narrow(text));
  }
  RegCloseKey(key);
  return variables;
}

// True iff every letter has a place in the system's code page.
bool IsNarrow(const std::wstring& text) {
  const UINT page = GetACP();
  const bool isUtf8 = page == CP_UTF8;
  BOOL isReplaced = FALSE;
  const int size = WideCharToMultiByte(page, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, text.c_str(), -1,
                                       nullptr, 0, nullptr, isUtf8 ? nullptr : &isReplaced);
  return size > 0 && isReplaced == FALSE;
}

}  // namespace

Variables ProcessVariables() {
  Variables variables;
  wchar_t* block = GetEnvironmentStringsW();
  for (const wchar_t* entry = block; entry != nullptr && *entry != L'\0';) {
    const std::wstring_view text = entry;
    // The names of the working folders of drives begin with an equals sign.
    const std::size_t equals = text.find(L'=', 1);
    if (equals != std::wstring_view::npos) {
      variables.Set(Narrow(text.substr(0, equals)), Narrow(text.substr(equals + 1)));
    }
    entry += text.size() + 1;
  }
  FreeEnvironmentStringsW(block);
  return variables;
}

std::optional<StoredVariables> ReadStoredVariables() {
  return StoredVariables{
      ReadKey(HKEY_CURRENT_USER, L"Environment"),
      ReadKey(HKEY_LOCAL_MACHINE,
              L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment")};
}

std::vector<std::string> ProgramArguments(int /*count*/, char** /*values*/) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(Narrow(wide[i]));
  }
  LocalFree(wide);
  return arguments;
}

fs::path OwnProgram() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return {path};
}

std::uint32_t OwnProcessId() {
  return GetCurrentProcessId();
}

bool IsElevated() {
  HANDLE token = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
    return false;
  }
  TOKEN_ELEVATION elevation{};
  DWORD size = 0;
  const bool known =
      GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size) != 0;
  CloseHandle(token);
  return known && elevation.TokenIsElevated != 0;
}

std::vector<fs::path> TemporaryFolders(const Variables& variables) {
  std::vector<fs::path> folders;
  for (const char* name : {"TMP", "TEMP"}) {
    if (const auto folder = variables.Find(name)) {
      folders.push_back(PathOf(*folder));
    }
  }
  if (const auto folder = variables.Find("LOCALAPPDATA")) {
    folders.push_back(PathOf(*folder) / "Temp");
  }
  return folders;
}

fs::path UserDataFolder(const Variables& variables) {
  const auto folder = variables.Find("LOCALAPPDATA");
  return folder ? PathOf(*folder) : fs::path();
}

fs::path MakePrivateFolder(const fs::path& parent) {
  // The folders for temporary files are the user's own.
  for (unsigned number = 0; number < 1000; ++number) {
    fs::path folder = parent / ("vextrel-" + std::to_string(GetCurrentProcessId()) + "-" +
                                std::to_string(GetTickCount() + number));
    if (CreateDirectoryW(folder.c_str(), nullptr) != 0) {
      return folder;
    }
    if (GetLastError() != ERROR_ALREADY_EXISTS) {
      break;
    }
  }
  return {};
}

bool IsExecutable(const fs::path& /*file*/) {
  return true;
}

bool CanLoadModulesFrom(const fs::path& /*folder*/) {
  return true;
}

bool IsOnNetwork(const fs::path& folder) {
  std::error_code error;
  const std::wstring root = fs::absolute(folder, error).root_path().native();
  return GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
}

std::optional<std::string> NarrowPath(const fs::path& path) {
  if (IsNarrow(path.native())) {
    return TextOf(path);
  }
  // A file that isn't there yet has no short form, but its folder has one.
  std::error_code error;
  const bool exists = fs::exists(path, error);
  const fs::path known = exists ? path : path.parent_path();
  std::wstring shortened(32768, L'\0');
  const DWORD size =
      GetShortPathNameW(known.c_str(), shortened.data(), static_cast<DWORD>(shortened.size()));
  shortened.resize(size < shortened.size() ? size : 0);
  const fs::path result = exists ? fs::path(shortened) : fs::path(shortened) / path.filename();
  if (shortened.empty() || !IsNarrow(result.native())) {
    return std::nullopt;
  }
  return TextOf(result);
}

}  // namespace vextrel::program
