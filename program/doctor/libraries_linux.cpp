// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "doctor/libraries.h"
#include "images/file_bytes.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> Folders(std::string_view list) {
  std::vector<fs::path> folders;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(":;"), list.size());
    folders.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return folders;
}

std::string Replaced(std::string text, std::string_view name, const std::string& value) {
  for (const std::string& form : {"${" + std::string(name) + "}", "$" + std::string(name)}) {
    for (std::size_t at = text.find(form); at != std::string::npos;
         at = text.find(form, at + value.size())) {
      text.replace(at, form.size(), value);
    }
  }
  return text;
}

// The loader passes over files for other machines.
std::optional<fs::path> FindIn(const std::vector<fs::path>& folders, const std::string& name,
                               Machine machine) {
  std::error_code error;
  for (const fs::path& folder : folders) {
    const fs::path file = folder / name;
    constexpr std::size_t header = 64;
    if (fs::is_regular_file(file, error) &&
        ParseImage(ReadBytes(file, header).value_or(std::string())).machine == machine) {
      return file;
    }
  }
  return std::nullopt;
}

// The folders of /etc/ld.so.cache, each once: the text behind its table of entries has all paths.
std::vector<fs::path> CachedFolders() {
  std::vector<fs::path> folders;
  const std::string cache = ReadBytes("/etc/ld.so.cache").value_or(std::string());
  constexpr std::string_view format = "glibc-ld.so.cache1.1";
  const std::size_t begin = cache.find(format);
  if (begin == std::string::npos) {
    return folders;
  }
  constexpr std::size_t header = 48;
  constexpr std::size_t entry = 24;
  std::uint32_t count = 0;
  if (cache.size() < begin + header) {
    return folders;
  }
  std::memcpy(&count, cache.data() + begin + format.size(), sizeof count);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t path = 0;
    const std::size_t at = begin + header + i * entry + 8;
    if (at + sizeof path > cache.size()) {
      break;
    }
    std::memcpy(&path, cache.data() + at, sizeof path);
    const std::size_t from = begin + path;
    const std::size_t end = from < cache.size() ? cache.find('\0', from) : std::string::npos;
    if (end == std::string::npos) {
      break;
    }
    const fs::path folder = fs::path(cache.substr(from, end - from)).parent_path();
    if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
      folders.push_back(folder);
    }
  }
  return folders;
}

}  // namespace

LibrarySearch::LibrarySearch(const Variables& variables, const fs::path& /*application*/)
    : first_(Folders(variables.Find("LD_LIBRARY_PATH").value_or(std::string()))),
      last_(CachedFolders()) {
  for (const char* folder : {"/lib/x86_64-linux-gnu", "/usr/lib/x86_64-linux-gnu", "/lib64",
                             "/usr/lib64", "/lib", "/usr/lib"}) {
    last_.emplace_back(folder);
  }
}

std::optional<fs::path> LibrarySearch::Find(const std::string& name, const fs::path& needing,
                                            const Image& image) const {
  if (name.find('/') != std::string::npos) {
    std::error_code error;
    return fs::exists(name, error) ? std::optional<fs::path>(name) : std::nullopt;
  }
  std::error_code error;
  const std::string origin = fs::canonical(needing, error).parent_path().string();
  const std::vector<fs::path> own =
      Folders(Replaced(Replaced(image.runPath, "ORIGIN", origin), "LIB", "lib/x86_64-linux-gnu"));
  const std::vector<fs::path> nothing;
  for (const auto* folders : {image.isRunPathFirst ? &own : &nothing, &first_,
                              image.isRunPathFirst ? &nothing : &own, &last_}) {
    if (std::optional<fs::path> found = FindIn(*folders, name, image.machine)) {
      return found;
    }
  }
  return std::nullopt;
}

bool LibrarySearch::BelongsToTheSystem(const fs::path& /*file*/) const {
  // Its versions are what most often is too old.
  return false;
}

}  // namespace vextrel::program
