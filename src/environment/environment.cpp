// SPDX-License-Identifier: MIT
#include "environment/environment.h"

#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "platform/platform.h"

namespace vextrel {
namespace {

// Reads a value that didn't fit the first buffer. `size` is the size that it needed.
std::string ReadWhole(const char* name, std::uint32_t size) {
  std::string value(size, '\0');
  const platform::VariableRead read = platform::ReadVariable(name, value.data(), size);
  // If the variable has changed meanwhile and no longer fits, the value is empty.
  value.resize(read.count < size ? read.count : 0);
  return value;
}

void ReplaceBlanks(std::string& text) {
  for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at)) {
    text.replace(at, 1, "%20");
  }
}

}  // namespace

std::string ExpandEnvReference(const std::string& input, bool escapeSpaces) {
  std::string text = input;
  const std::size_t begin = text.find("$(");
  const std::size_t end = begin == std::string::npos ? begin : text.find(')', begin);
  if (end == std::string::npos) {
    if (escapeSpaces) {
      ReplaceBlanks(text);
    }
    return text;
  }
  const std::string name = text.substr(begin + 2, end - begin - 2);
  std::array<char, 256> buffer{};
  const platform::VariableRead read =
      platform::ReadVariable(name.c_str(), buffer.data(), buffer.size());
  if (read.count == 0) {
    if (read.error != platform::kErrorVariableNotFound) {
      throw std::runtime_error(FormatString(
          "Unknown error %u while reading environment variable '%s'", read.error, name.c_str()));
    }
    throw std::runtime_error(FormatString("Environment variable '%s' not found", name.c_str()));
  }
  if (read.count == buffer.size()) {
    throw std::runtime_error("Environment variable's content too large (must be <256 chars)");
  }
  const std::string value =
      read.count < buffer.size() ? buffer.data() : ReadWhole(name.c_str(), read.count);
  // Kept: 7. Only the first reference is expanded, and blanks stay.
  return text.replace(begin, end - begin + 1, value);
}

std::string FormatString(const char* format, ...) {
  std::array<char, 256> buffer{};
  std::va_list arguments;
  va_start(arguments, format);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): a false positive.
  static_cast<void>(std::vsnprintf(buffer.data(), buffer.size(), format, arguments));
  va_end(arguments);
  return buffer.data();
}

std::string ReadEnvironmentVariable(const char* name) {
  std::array<char, 1024> buffer{};
  const platform::VariableRead read = platform::ReadVariable(name, buffer.data(), buffer.size());
  return read.count < buffer.size() ? buffer.data() : ReadWhole(name, read.count);
}

}  // namespace vextrel
