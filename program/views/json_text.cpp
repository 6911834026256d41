// SPDX-License-Identifier: MIT
#include "views/json_text.h"

#include <algorithm>
#include <cstdint>

#include "views/safe_text.h"

namespace vextrel::program {
namespace {

bool IsJsonAsItIs(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char each) {
    return each >= ' ' && each < 0x7F && each != '"' && each != '\\';
  });
}

void AppendEscaped(std::string& out, char each) {
  constexpr std::string_view hex = "0123456789abcdef";
  const auto byte = static_cast<std::uint8_t>(each);
  switch (each) {
    case '"':
      out += "\\\"";
      break;
    case '\\':
      out += "\\\\";
      break;
    case '\n':
      out += "\\n";
      break;
    default:
      if (byte < 0x20 || byte == 0x7F) {
        out += "\\u00";
        out += hex[byte >> 4U];
        out += hex[byte & 0xFU];
      } else {
        out += each;
      }
  }
}

}  // namespace

void AppendJsonText(std::string& out, std::string_view text) {
  out += '"';
  if (IsJsonAsItIs(text)) {
    out += text;
  } else {
    for (const char each : Utf8(text)) {
      AppendEscaped(out, each);
    }
  }
  out += '"';
}

}  // namespace vextrel::program
