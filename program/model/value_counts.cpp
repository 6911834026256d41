// SPDX-License-Identifier: MIT
#include "model/value_counts.h"

#include <algorithm>
#include <cmath>

namespace vextrel::program {

std::vector<std::pair<std::int64_t, std::uint64_t>> ValueCounts::Sorted() const {
  std::vector<std::pair<std::int64_t, std::uint64_t>> sorted(counts_.begin(), counts_.end());
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

std::int64_t Quantile(const std::vector<std::pair<std::int64_t, std::uint64_t>>& sorted,
                      double percent) {
  std::uint64_t all = 0;
  for (const auto& [value, count] : sorted) {
    all += count;
  }
  const auto rank = static_cast<std::uint64_t>(std::ceil(percent / 100 * static_cast<double>(all)));
  std::uint64_t passed = 0;
  for (const auto& [value, count] : sorted) {
    passed += count;
    if (passed >= rank) {
      return value;
    }
  }
  return sorted.back().first;
}

}  // namespace vextrel::program
