// SPDX-License-Identifier: MIT
// Comparisons that end the fuzzer when they fail; the sanitizer's report shows where.
#ifndef VEXTREL_FUZZ_CHECK_H
#define VEXTREL_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace vextrel_fuzz {

inline void Check(bool holds, std::string_view what) {
  if (!holds) {
    std::fprintf(stderr, "FAILED: %.*s\n", static_cast<int>(what.size()), what.data());
    std::abort();
  }
}

inline void CheckText(std::string_view actual, std::string_view expected) {
  if (actual != expected) {
    std::fprintf(stderr, "is       '%s'\nought to be '%s'\n", std::string(actual).c_str(),
                 std::string(expected).c_str());
    Check(false, "the text is another");
  }
}

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_CHECK_H
