// SPDX-License-Identifier: MIT
// Random texts for a line.
#ifndef VEXTREL_FUZZ_LETTERS_H
#define VEXTREL_FUZZ_LETTERS_H

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

namespace vextrel_fuzz {

// Short texts, and some long enough for a line to take the path of long lines.
inline std::string Letters(FuzzedDataProvider& data) {
  const std::string piece = data.ConsumeRandomLengthString(24);
  std::string text;
  for (auto count = data.ConsumeIntegralInRange(0, 80); count > 0; --count) {
    text += piece;
  }
  return text;
}

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_LETTERS_H
