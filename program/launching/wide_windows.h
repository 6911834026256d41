// SPDX-License-Identifier: MIT
// Text as Windows takes it.
#ifndef VEXTREL_PROGRAM_LAUNCHING_WIDE_WINDOWS_H
#define VEXTREL_PROGRAM_LAUNCHING_WIDE_WINDOWS_H

#include <string>
#include <string_view>

#include "images/file_bytes.h"

namespace vextrel::program {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

[[nodiscard]] inline std::wstring Wide(std::string_view text) {
  const std::u16string wide = ToUtf16(text);
  return {wide.begin(), wide.end()};
}

[[nodiscard]] inline std::string Narrow(std::wstring_view text) {
  return FromUtf16(std::u16string(text.begin(), text.end()));
}

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_WIDE_WINDOWS_H
