// SPDX-License-Identifier: MIT
#include "views/safe_text.h"

#include <algorithm>
#include <cstdint>

namespace vextrel::program {
namespace {

constexpr std::string_view kHex = "0123456789abcdef";

void AppendByte(std::string& out, char each) {
  const auto byte = static_cast<std::uint8_t>(each);
  out += "\\x";
  out += kHex[byte >> 4U];
  out += kHex[byte & 0xFU];
}

// How many bytes the character at the front of `text` has; 0 if it's no UTF-8.
std::size_t CharacterSize(std::string_view text, std::uint32_t& code) noexcept {
  const auto first = static_cast<std::uint8_t>(text[0]);
  std::size_t size = 0;
  std::uint32_t least = 0;
  if (first < 0x80) {
    code = first;
    return 1;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    size = 2;
    least = 0x80;
    code = first & 0x1FU;
  } else if (first >= 0xE0 && first <= 0xEF) {
    size = 3;
    least = 0x800;
    code = first & 0xFU;
  } else if (first >= 0xF0 && first <= 0xF4) {
    size = 4;
    least = 0x10000;
    code = first & 0x7U;
  } else {
    return 0;
  }
  if (text.size() < size) {
    return 0;
  }
  for (std::size_t i = 1; i < size; ++i) {
    const auto next = static_cast<std::uint8_t>(text[i]);
    if ((next & 0xC0U) != 0x80) {
      return 0;
    }
    code = code << 6U | (next & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < least || code > 0x10FFFF || isSurrogate ? 0 : size;
}

// Control characters, those that turn the direction of writing among them.
bool IsControl(std::uint32_t code) noexcept {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x200E && code <= 0x200F) ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

void Append(std::string& out, std::string_view text, bool escapesControls) {
  while (!text.empty()) {
    std::uint32_t code = 0;
    const std::size_t size = CharacterSize(text, code);
    if (size == 0) {
      AppendByte(out, text[0]);
      text.remove_prefix(1);
      continue;
    }
    if (escapesControls && IsControl(code)) {
      if (code == '\n') {
        out += "\\n";
      } else {
        std::for_each(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size),
                      [&out](char each) { AppendByte(out, each); });
      }
    } else {
      out += text.substr(0, size);
    }
    text.remove_prefix(size);
  }
}

bool IsPlain(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(),
                     [](char each) { return each >= ' ' && each < 0x7F; });
}

}  // namespace

void AppendSafe(std::string& out, std::string_view text, std::size_t limit) {
  const std::string_view shown = text.substr(0, limit);
  if (IsPlain(shown)) {
    out += shown;
  } else {
    Append(out, shown, true);
  }
  if (shown.size() < text.size()) {
    out += "...";
  }
}

std::string Utf8(std::string_view text) {
  std::string out;
  Append(out, text, false);
  return out;
}

}  // namespace vextrel::program
