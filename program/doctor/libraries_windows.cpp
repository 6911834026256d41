// SPDX-License-Identifier: MIT
#include "doctor/libraries.h"

// The system's headers come first in what they need of each other.
// clang-format off
#include <windows.h>
// clang-format on

#include <algorithm>

#include "images/file_bytes.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

template <typename Get>
fs::path FolderOf(Get get) {
  std::wstring path(MAX_PATH + 1, L'\0');
  path.resize(get(path.data(), static_cast<UINT>(path.size())));
  return {path};
}

// A name that stands for whatever library has the functions.
bool IsApiSet(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return name.starts_with("api-ms-") || name.starts_with("ext-ms-");
}

}  // namespace

// The folder of the target isn't among them: the module loads it like any other library.
LibrarySearch::LibrarySearch(const Variables& variables, const fs::path& application)
    : system_(FolderOf(GetSystemDirectoryW)) {
  if (!application.empty()) {
    first_.push_back(application.parent_path());
  }
  first_.push_back(system_);
  first_.push_back(FolderOf(GetWindowsDirectoryW));
  first_.emplace_back(L".");
  const std::string path = variables.Find("PATH").value_or(std::string());
  std::string_view rest = path;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    if (end > 0) {
      first_.push_back(PathOf(rest.substr(0, end)));
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

std::optional<fs::path> LibrarySearch::Find(const std::string& name, const fs::path& /*needing*/,
                                            const Image& /*image*/) const {
  if (IsApiSet(name)) {
    return fs::path();
  }
  std::error_code error;
  for (const fs::path& folder : first_) {
    const fs::path file = folder / PathOf(name);
    if (fs::is_regular_file(file, error)) {
      return file;
    }
  }
  return std::nullopt;
}

bool LibrarySearch::BelongsToTheSystem(const fs::path& file) const {
  return file.parent_path() == system_;
}

}  // namespace vextrel::program
