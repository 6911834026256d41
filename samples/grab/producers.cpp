#include "producers.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "error.h"
#include "module.h"

namespace grab {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPathVariable = "GENICAM_GENTL64_PATH";
constexpr const char* kHint = "; name a producer with --producer FILE.";

[[nodiscard]] bool IsProducerName(const fs::path& file) {
  std::string extension = PathText(file.extension());
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension == ".cti";
}

[[nodiscard]] std::vector<fs::path> Split(const fs::path::string_type& list) {
  std::vector<fs::path> entries;
  std::size_t begin = 0;
  while (begin <= list.size()) {
    const std::size_t end = std::min(list.find(kPathListSeparator, begin), list.size());
    if (end > begin) {
      entries.emplace_back(list.substr(begin, end - begin));
    }
    begin = end + 1;
  }
  return entries;
}

// Folders that are missing or closed to us are passed over: the search path is not this program's.
void AppendProducersOf(const fs::path& entry, std::vector<fs::path>& producers) {
  std::error_code ignored;
  if (!fs::is_directory(entry, ignored)) {
    if (IsProducerName(entry) && fs::exists(entry, ignored)) {
      producers.push_back(entry);
    }
    return;
  }
  std::vector<fs::path> found;
  for (fs::directory_iterator file(entry, ignored), end; file != end; file.increment(ignored)) {
    if (IsProducerName(file->path()) && !file->is_directory(ignored)) {
      found.push_back(file->path());
    }
  }
  std::ranges::sort(found);
  producers.insert(producers.end(), found.begin(), found.end());
}

}  // namespace

std::vector<fs::path> FindProducers(const Options& options) {
  if (options.producer) {
    std::error_code ignored;
    if (!fs::is_regular_file(*options.producer, ignored)) {
      throw Error("There is no producer file " + PathText(*options.producer) + ".");
    }
    return {*options.producer};
  }
  const auto list = EnvironmentVariable(kPathVariable);
  if (!list || list->empty()) {
    throw Error(std::string("The environment variable ") + kPathVariable + " is not set" + kHint);
  }
  std::vector<fs::path> producers;
  for (const fs::path& entry : Split(*list)) {
    AppendProducersOf(entry, producers);
  }
  if (producers.empty()) {
    throw Error("There is no .cti file in " + PathText(*list) + ", where " + kPathVariable +
                " points" + kHint);
  }
  return producers;
}

}  // namespace grab
