// SPDX-License-Identifier: MIT
// The functions that have lines in the log, by the lines themselves.
#ifndef VEXTREL_CALLLOG_FUNCTION_NAMES_H
#define VEXTREL_CALLLOG_FUNCTION_NAMES_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "calllog/log_text.h"

namespace vextrel {

// REQUIRES: it's one of kCallLines, "%s=FUNCTION(...".
[[nodiscard]] constexpr std::string_view FunctionOfLine(std::string_view line) noexcept {
  const std::size_t begin = line.find('=') + 1;
  return line.substr(begin, line.find('(') - begin);
}

// Each once, in the order of kCallLines. A function may have several lines, one behind the other.
inline constexpr auto kFunctionNames = [] {
  constexpr std::size_t count = [] {
    std::size_t functions = 1;
    for (std::size_t i = 1; i < kCallLines.size(); ++i) {
      functions += FunctionOfLine(kCallLines[i]) != FunctionOfLine(kCallLines[i - 1]) ? 1 : 0;
    }
    return functions;
  }();
  std::array<std::string_view, count> names{};
  std::size_t last = 0;
  for (const std::string_view line : kCallLines) {
    const bool isNext = !names[last].empty() && names[last] != FunctionOfLine(line);
    last += isNext ? 1 : 0;
    names[last] = FunctionOfLine(line);
  }
  return names;
}();

// Into kFunctionNames; its size if there's no such function.
[[nodiscard]] constexpr std::size_t FunctionIndex(std::string_view name) noexcept {
  return static_cast<std::size_t>(std::find(kFunctionNames.begin(), kFunctionNames.end(), name) -
                                  kFunctionNames.begin());
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_FUNCTION_NAMES_H
