// SPDX-License-Identifier: MIT
#include "support/files.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "support/system.h"

namespace vextrel_test {

void WriteFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

// Not opened as text: the bytes of a message may include one that ends a text file on Windows.
std::string ReadFile(const std::filesystem::path& path) {
  std::streamoff begin = 0;
  return ReadFileFrom(path, begin);
}

std::string ReadFileFrom(const std::filesystem::path& path, std::streamoff& at) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  const std::streamoff end = error ? 0 : static_cast<std::streamoff>(size);
  std::string bytes(static_cast<std::size_t>(std::max<std::streamoff>(end - at, 0)), '\0');
  std::ifstream file(path, std::ios::binary);
  file.seekg(std::exchange(at, end));
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!kOnWindows) {
    return bytes;
  }
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t each = 0; each < bytes.size(); ++each) {
    if (bytes.compare(each, 2, "\r\n") != 0) {
      text += bytes[each];
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
