// SPDX-License-Identifier: MIT
#include "images/file_bytes.h"

#include <algorithm>
#include <fstream>
#include <type_traits>

namespace vextrel::program {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void AppendUtf8(std::string& text, char32_t point) {
  const auto byte = [&](char32_t value) { text += static_cast<char>(value); };
  if (point < 0x80) {
    byte(point);
  } else if (point < 0x800) {
    byte(0xC0U | (point >> 6U));
    byte(0x80U | (point & 0x3FU));
  } else if (point < 0x10000) {
    byte(0xE0U | (point >> 12U));
    byte(0x80U | ((point >> 6U) & 0x3FU));
    byte(0x80U | (point & 0x3FU));
  } else {
    byte(0xF0U | (point >> 18U));
    byte(0x80U | ((point >> 12U) & 0x3FU));
    byte(0x80U | ((point >> 6U) & 0x3FU));
    byte(0x80U | (point & 0x3FU));
  }
}

// Takes the next code point off the front.
char32_t TakePoint(std::string_view& text) {
  const auto at = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<std::uint8_t>(text[i]));
  };
  const char32_t first = at(0);
  const std::size_t size = first < 0x80   ? 1
                           : first < 0xC2 ? 0
                           : first < 0xE0 ? 2
                           : first < 0xF0 ? 3
                           : first < 0xF5 ? 4
                                          : 0;
  const bool isWhole =
      size != 0 && size <= text.size() &&
      std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(size),
                  [](char byte) { return (static_cast<std::uint8_t>(byte) & 0xC0U) == 0x80U; });
  if (!isWhole) {
    text.remove_prefix(1);
    return kReplacement;
  }
  char32_t point = size == 1 ? first : first & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    point = (point << 6U) | (at(i) & 0x3FU);
  }
  text.remove_prefix(size);
  return point;
}

}  // namespace

std::string FromUtf16(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    if (IsHighSurrogate(point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10U) + (text[++i] - U'\xDC00');
    }
    AppendUtf8(result, point);
  }
  return result;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    char32_t point = TakePoint(text);
    if (point > 0x10FFFF) {
      point = kReplacement;
    }
    if (point >= 0x10000) {
      point -= 0x10000;
      result += static_cast<char16_t>(0xD800 + (point >> 10U));
      result += static_cast<char16_t>(0xDC00 + (point & 0x3FFU));
    } else {
      result += static_cast<char16_t>(point);
    }
  }
  return result;
}

std::filesystem::path PathOf(std::string_view text) {
  using Native = std::filesystem::path::string_type;
  if constexpr (std::is_same_v<Native, std::string>) {
    return {Native(text.begin(), text.end())};
  } else {
    const std::u16string wide = ToUtf16(text);
    return {Native(wide.begin(), wide.end())};
  }
}

std::string TextOf(const std::filesystem::path& path) {
  using Native = std::filesystem::path::string_type;
  if constexpr (std::is_same_v<Native, std::string>) {
    return {path.native().begin(), path.native().end()};
  } else {
    return FromUtf16(std::u16string(path.native().begin(), path.native().end()));
  }
}

std::optional<std::string> ReadBytes(const std::filesystem::path& path, std::uint64_t most) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    return std::nullopt;
  }
  const std::uint64_t size = std::min(most, std::uint64_t{std::filesystem::file_size(path, error)});
  std::ifstream file(path, std::ios::binary);
  if (error || !file.is_open()) {
    return std::nullopt;
  }
  std::string bytes(size, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

}  // namespace vextrel::program
