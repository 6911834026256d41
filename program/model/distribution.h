// SPDX-License-Identifier: MIT
// A few numbers that stand for many durations.
#ifndef VEXTREL_PROGRAM_MODEL_DISTRIBUTION_H
#define VEXTREL_PROGRAM_MODEL_DISTRIBUTION_H

#include <cstdint>
#include <optional>

#include "model/value_counts.h"

namespace vextrel::program {

// In milliseconds. The quantiles are values that came; see Quantile.
struct Distribution {
  double mean = 0;
  double p50 = 0;
  double p95 = 0;
  double p99 = 0;
  double max = 0;
};

// Nothing if there are no values. The values are microseconds.
[[nodiscard]] std::optional<Distribution> Summarize(const ValueCounts& values);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_DISTRIBUTION_H
