// SPDX-License-Identifier: MIT
#include "reading/rolled_files.h"

#include <algorithm>

#include "reading/byte_file.h"

namespace vextrel::program {
namespace {

// log4cpp gives every number as many digits as the highest one may have.
constexpr std::size_t kMostDigits = 3;

std::string RolledName(const std::string& path, int number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return path + "." + std::string(digits > text.size() ? digits - text.size() : 0, '0') + text;
}

// From the youngest to the oldest.
std::vector<std::string> RolledFilesOf(const std::string& path) {
  for (std::size_t digits = 1; digits <= kMostDigits; ++digits) {
    std::vector<std::string> files;
    for (int number = 1; FileExists(RolledName(path, number, digits)); ++number) {
      files.push_back(RolledName(path, number, digits));
    }
    if (!files.empty()) {
      return files;
    }
  }
  return {};
}

}  // namespace

std::vector<std::string> WithRolledFiles(const std::vector<std::string>& paths) {
  std::vector<std::string> all;
  const auto add = [&all](const std::string& path) {
    if (std::find(all.begin(), all.end(), path) == all.end()) {
      all.push_back(path);
    }
  };
  for (const std::string& path : paths) {
    const std::vector<std::string> rolled =
        path == "-" ? std::vector<std::string>{} : RolledFilesOf(path);
    std::for_each(rolled.rbegin(), rolled.rend(), add);
    add(path);
  }
  return all;
}

}  // namespace vextrel::program
