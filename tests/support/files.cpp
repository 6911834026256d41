// SPDX-License-Identifier: MIT
#include "support/files.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include "support/system.h"

namespace vextrel_test {

void WriteFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

// Not opened as text: the bytes of a message may include one that ends a text file on Windows.
std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (kOnWindows) {
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
      text.erase(at, 1);
    }
  }
  return text;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::istringstream stream{std::string(text)};
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::string LogConfig::Text() const {
  std::string text = "rootCategory=" + rootCategory + "\nappender.file=" + appender +
                     "\nappender.file.fileName=" + file.string() + '\n';
  for (const std::string& property : properties) {
    text += "appender.file." + property + '\n';
  }
  return text +
         "appender.file.layout=PatternLayout\nappender.file.layout.ConversionPattern=" + pattern +
         '\n';
}

}  // namespace vextrel_test
