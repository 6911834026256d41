// SPDX-License-Identifier: MIT
// Files that tests write and read.
#ifndef VEXTREL_TESTS_SUPPORT_FILES_H
#define VEXTREL_TESTS_SUPPORT_FILES_H

#include <filesystem>
#include <ios>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test {

void WriteFile(const std::filesystem::path& path, std::string_view content);

// Returns all bytes of the file, with "\n" line ends on both platforms.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& path);
// What the file has behind `at`, which becomes its end.
[[nodiscard]] std::string ReadFileFrom(const std::filesystem::path& path, std::streamoff& at);

[[nodiscard]] std::vector<std::string> SplitLines(std::string_view text);

// A log configuration with one appender, which writes to a file.
struct LogConfig {
  std::filesystem::path file;
  std::string rootCategory = "DEBUG, file";  // the appender is called "file"
  std::string appender = "FileAppender";
  std::string pattern = "%p %m%n";
  // More of the appender's properties, for example "maxFileSize=1000".
  std::vector<std::string> properties = {};

  [[nodiscard]] std::string Text() const;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_FILES_H
