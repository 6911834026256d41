// SPDX-License-Identifier: MIT
// How often each value came, exactly: quantiles without keeping every value.
//
// Times of a log have a coarse resolution, so that few values differ.
#ifndef VEXTREL_PROGRAM_MODEL_VALUE_COUNTS_H
#define VEXTREL_PROGRAM_MODEL_VALUE_COUNTS_H

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vextrel::program {

class ValueCounts {
 public:
  void Add(std::int64_t value) {
    ++counts_[value];
    ++count_;
    sum_ += value;
  }

  [[nodiscard]] std::uint64_t Count() const noexcept { return count_; }
  // REQUIRES: Count() > 0.
  [[nodiscard]] double Mean() const noexcept {
    return static_cast<double>(sum_) / static_cast<double>(count_);
  }
  // The values and their counts, from the smallest on.
  [[nodiscard]] std::vector<std::pair<std::int64_t, std::uint64_t>> Sorted() const;

 private:
  std::unordered_map<std::int64_t, std::uint64_t> counts_;
  std::uint64_t count_ = 0;
  std::int64_t sum_ = 0;
};

// The smallest value that at least `percent` of all values don't exceed. REQUIRES: `sorted` holds a
// value.
[[nodiscard]] std::int64_t Quantile(
    const std::vector<std::pair<std::int64_t, std::uint64_t>>& sorted, double percent);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_VALUE_COUNTS_H
