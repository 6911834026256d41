// SPDX-License-Identifier: MIT
// How often durations of about some length came: quantiles of any number of nanoseconds in a few
// kilobytes.
#ifndef VEXTREL_PROGRAM_MODEL_DURATION_COUNTS_H
#define VEXTREL_PROGRAM_MODEL_DURATION_COUNTS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vextrel::program {

class DurationCounts {
 public:
  void Add(std::uint64_t nanoseconds);

  [[nodiscard]] std::uint64_t Count() const noexcept { return count_; }
  // REQUIRES: Count() > 0.
  [[nodiscard]] double Mean() const noexcept { return sum_ / static_cast<double>(count_); }
  [[nodiscard]] std::uint64_t Max() const noexcept { return max_; }
  // A value that at least `percent` of all don't exceed: the smallest one, or up to 1/32 more.
  // REQUIRES: Count() > 0.
  [[nodiscard]] std::uint64_t Quantile(double percent) const;

 private:
  std::vector<std::uint64_t> buckets_;
  std::uint64_t count_ = 0;
  double sum_ = 0;
  std::uint64_t max_ = 0;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_DURATION_COUNTS_H
