// SPDX-License-Identifier: MIT
// Text of a log on its way to a terminal or a file: the log may hold any bytes.
#ifndef VEXTREL_PROGRAM_VIEWS_SAFE_TEXT_H
#define VEXTREL_PROGRAM_VIEWS_SAFE_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace vextrel::program {

// For a terminal: control characters and bytes that are no UTF-8 as \x1b, line breaks as \n. No
// more than `limit` bytes of the text, with "..." behind them if there are more.
void AppendSafe(std::string& out, std::string_view text, std::size_t limit = SIZE_MAX);

// The same, with control characters as they are: for a format that escapes them itself.
[[nodiscard]] std::string Utf8(std::string_view text);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_SAFE_TEXT_H
