// SPDX-License-Identifier: MIT
#include "model/distribution.h"

namespace vextrel::program {

std::optional<Distribution> Summarize(const ValueCounts& values) {
  if (values.Count() == 0) {
    return std::nullopt;
  }
  constexpr double perMillisecond = 1'000;
  const auto sorted = values.Sorted();
  const auto quantile = [&sorted](double percent) {
    return static_cast<double>(Quantile(sorted, percent)) / perMillisecond;
  };
  return Distribution{values.Mean() / perMillisecond, quantile(50), quantile(95), quantile(99),
                      static_cast<double>(sorted.back().first) / perMillisecond};
}

}  // namespace vextrel::program
