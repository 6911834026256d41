// SPDX-License-Identifier: MIT
// The layout of a log that nobody named.
#ifndef VEXTREL_PROGRAM_READING_LAYOUT_SEARCH_H
#define VEXTREL_PROGRAM_READING_LAYOUT_SEARCH_H

#include <optional>
#include <string_view>

#include "reading/layout.h"

namespace vextrel::program {

// The layout under which the lines of `text` are calls and reports, or nothing if none is found.
// Known are those of config/, log4cpp's own, and a few that people write.
[[nodiscard]] std::optional<Layout> FindLayout(std::string_view text);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_LAYOUT_SEARCH_H
