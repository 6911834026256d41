// SPDX-License-Identifier: MIT
// The producers that GENICAM_GENTL64_PATH shows.
#ifndef VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H
#define VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "launching/fault.h"
#include "launching/variables.h"

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

// Why there's no search path. Nothing if there is one.
[[nodiscard]] std::optional<Fault> FaultOfPathVariable(const Variables& variables);

// Why the entry leads nowhere. Nothing if it's there.
[[nodiscard]] std::optional<Fault> FaultOfEntry(const PathEntry& entry, char separator);

// The producers of all entries, each once, whatever the paths that lead there.
[[nodiscard]] std::vector<std::filesystem::path> ProducersOf(const std::vector<PathEntry>& entries);

// True iff both name the same file. False if one of them isn't there.
[[nodiscard]] bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_SEARCH_PATH_H
