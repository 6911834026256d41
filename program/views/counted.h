// SPDX-License-Identifier: MIT
#ifndef VEXTREL_PROGRAM_VIEWS_COUNTED_H
#define VEXTREL_PROGRAM_VIEWS_COUNTED_H

#include <cstdint>
#include <string>
#include <string_view>

namespace vextrel::program {

// "1 frame", "2 frames"
[[nodiscard]] inline std::string Counted(std::uint64_t count, std::string_view what) {
  return std::to_string(count).append(" ").append(what).append(count == 1 ? "" : "s");
}

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_COUNTED_H
