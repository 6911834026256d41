// SPDX-License-Identifier: MIT
#include "launching/search_path.h"

#include <algorithm>

#include "images/file_bytes.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

bool IsProducerName(const fs::path& file) {
  std::string ending = TextOf(file.extension());
  std::transform(ending.begin(), ending.end(), ending.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return ending == ".cti";
}

PathEntry ReadEntry(std::string_view text) {
  PathEntry entry;
  entry.text = text;
  const fs::path path = PathOf(text);
  std::error_code ignored;
  entry.exists = fs::exists(path, ignored);
  entry.isFolder = fs::is_directory(path, ignored);
  if (!entry.isFolder) {
    if (entry.exists && IsProducerName(path)) {
      entry.producers.push_back(path);
    }
    return entry;
  }
  for (fs::directory_iterator file(path, ignored), end; file != end; file.increment(ignored)) {
    if (IsProducerName(file->path()) && !file->is_directory(ignored)) {
      entry.producers.push_back(file->path());
    }
  }
  std::sort(entry.producers.begin(), entry.producers.end());
  return entry;
}

}  // namespace

std::vector<PathEntry> ReadSearchPath(std::string_view value, char separator) {
  std::vector<PathEntry> entries;
  while (!value.empty()) {
    const std::size_t end = std::min(value.find(separator), value.size());
    if (end > 0) {
      entries.push_back(ReadEntry(value.substr(0, end)));
    }
    value.remove_prefix(std::min(end + 1, value.size()));
  }
  return entries;
}

std::optional<Fault> FaultOfPathVariable(const Variables& variables) {
  if (variables.Find(kPathVariable)) {
    return std::nullopt;
  }
  const std::string name = kPathVariable;
  if (variables.Find(kPathVariable32)) {
    return Fault{std::string(kPathVariable32) + " is set, and " + name +
                     " isn't: 64-bit applications read only the latter",
                 "set " + name};
  }
  return Fault{name + " isn't set, so no producer is found", "name the producer with --target"};
}

std::optional<Fault> FaultOfEntry(const PathEntry& entry, char separator) {
  const std::string& text = entry.text;
  if (entry.exists) {
    return std::nullopt;
  }
  const std::string front = "'" + text + "' in " + kPathVariable + " ";
  if (text.find('"') != std::string::npos || text.front() == '\'') {
    return Fault{front + "has quotes, which consumers take for a part of the path",
                 "leave them out"};
  }
  const bool isColonWrong = separator == ';';
  // A colon follows the letter of a drive.
  if (text.find(isColonWrong ? ':' : ';', isColonWrong ? 2 : 0) != std::string::npos) {
    return Fault{front + "has '" + (isColonWrong ? ':' : ';') + "' between its parts",
                 std::string("separate folders with '") + separator + "'"};
  }
  if (text.front() == ' ' || text.back() == ' ' || text.back() == '\t') {
    return Fault{front + "has a blank at its beginning or end", "remove it"};
  }
  if (text.front() == '~' || text.find('%') != std::string::npos ||
      text.find('$') != std::string::npos) {
    return Fault{front + "has a reference that nobody replaces", "write the whole path"};
  }
  return Fault{front + "isn't there", "correct the path, or remove the entry"};
}

std::vector<fs::path> ProducersOf(const std::vector<PathEntry>& entries) {
  std::vector<fs::path> producers;
  for (const PathEntry& entry : entries) {
    for (const fs::path& file : entry.producers) {
      const bool isKnown =
          std::any_of(producers.begin(), producers.end(),
                      [&](const fs::path& each) { return IsSameFile(each, file); });
      if (!isKnown) {
        producers.push_back(file);
      }
    }
  }
  return producers;
}

bool IsSameFile(const fs::path& one, const fs::path& other) {
  std::error_code error;
  return fs::equivalent(one, other, error) && !error;
}

}  // namespace vextrel::program
