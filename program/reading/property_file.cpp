// SPDX-License-Identifier: MIT
#include "reading/property_file.h"

#include <map>
#include <stdexcept>

#include "reading/byte_file.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostOfAPropertyFile = std::size_t{1} << 20U;

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

// What log4cpp removes: blanks in front of the value and behind it.
std::map<std::string, std::string, std::less<>> ReadProperties(std::string_view text) {
  std::map<std::string, std::string, std::less<>> properties;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (line.empty() || line[0] == '#' || equals == std::string_view::npos) {
      continue;
    }
    properties.insert_or_assign(std::string(Trimmed(line.substr(0, equals))),
                                std::string(Trimmed(line.substr(equals + 1))));
  }
  return properties;
}

}  // namespace

Layout LayoutOfProperties(std::string_view text) {
  const auto properties = ReadProperties(text);
  constexpr std::string_view appender = "appender.";
  constexpr std::string_view layout = ".layout";
  for (const auto& [key, value] : properties) {
    std::string_view name = key;
    if (name.starts_with("log4cpp.") || name.starts_with("log4j.")) {
      name.remove_prefix(name.find('.') + 1);
    }
    if (!name.starts_with(appender) || !name.ends_with(layout)) {
      continue;
    }
    if (value == "PatternLayout") {
      const auto pattern = properties.find(key + ".ConversionPattern");
      return Layout::OfPattern(pattern != properties.end() ? pattern->second : "%m%n");
    }
    if (value == "BasicLayout") {
      return Layout::OfPattern("%R %p %c %x: %m%n");
    }
    if (value == "SimpleLayout") {
      return Layout::Simple();
    }
    if (value == "PassThroughLayout") {
      return Layout::PassThrough();
    }
    throw std::runtime_error("the layout '" + value +
                             "' of the property file isn't known: expected PatternLayout, "
                             "BasicLayout, SimpleLayout or PassThroughLayout");
  }
  throw std::runtime_error(
      "the property file names no layout: expected a line like "
      "'appender.file.layout=PatternLayout'");
}

Layout LayoutOfPropertyFile(const std::string& path) {
  ByteFile file(path);
  std::string text(kMostOfAPropertyFile, '\0');
  std::size_t size = 0;
  while (const std::size_t count = file.Read(text.data() + size, text.size() - size)) {
    size += count;
  }
  text.resize(size);
  return LayoutOfProperties(text);
}

bool LooksLikeProperties(std::string_view text) noexcept {
  return text.find("rootCategory=") != std::string_view::npos ||
         text.find("appender.") != std::string_view::npos;
}

}  // namespace vextrel::program
