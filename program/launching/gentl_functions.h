// SPDX-License-Identifier: MIT
// The functions that a producer exports, by the version of GenTL that added them.
#ifndef VEXTREL_PROGRAM_LAUNCHING_GENTL_FUNCTIONS_H
#define VEXTREL_PROGRAM_LAUNCHING_GENTL_FUNCTIONS_H

#include <string>
#include <string_view>
#include <vector>

namespace vextrel::program {

struct GentlVersion {
  std::string_view name;
  std::vector<std::string_view> functions;
};

// From the oldest on.
[[nodiscard]] const std::vector<GentlVersion>& GentlVersions();

// The functions of a version that these exports lack.
[[nodiscard]] std::vector<std::string_view> Lacking(const GentlVersion& version,
                                                    const std::vector<std::string>& exports);

// The oldest of these that only the extended module has; "" if there's none.
[[nodiscard]] std::string_view FirstNewerFunction(const std::vector<std::string>& exports);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_GENTL_FUNCTIONS_H
