// SPDX-License-Identifier: MIT
// The producers that GENICAM_GENTL64_PATH shows.
#ifndef VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H
#define VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel::program {

struct PathEntry {
  std::string text;  // as it stands in the variable
  bool exists = false;
  bool isFolder = false;
  // The .cti file that it names, or those in the folder, by name.
  std::vector<std::filesystem::path> producers;
};

// Empty entries are left out, as consumers do.
[[nodiscard]] std::vector<PathEntry> ReadSearchPath(std::string_view value, char separator);

// The producers of all entries, each once, whatever the paths that lead there.
[[nodiscard]] std::vector<std::filesystem::path> ProducersOf(const std::vector<PathEntry>& entries);

// True iff both name the same file. False if one of them isn't there.
[[nodiscard]] bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H
