// SPDX-License-Identifier: MIT
// What happened over time, in a bounded number of cells: each stands for one moment as long as
// there are few of them, and for longer and longer stretches as they get more.
#ifndef VEXTREL_PROGRAM_MODEL_TIME_BUCKETS_H
#define VEXTREL_PROGRAM_MODEL_TIME_BUCKETS_H

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace vextrel::program {

// A `Cell` is default-constructible and has Merge(const Cell& later).
template <typename Cell>
class TimeBuckets {
 public:
  // The cell that `time`, in microseconds and not negative, falls into. Valid until the next call.
  // A time that lies before the latest cell counts as being in that.
  [[nodiscard]] Cell& At(std::int64_t time) {
    const std::int64_t slot = time >> shift_;
    if (cells_.empty() || cells_.back().first < slot) {
      cells_.emplace_back(slot, Cell());
    }
    return cells_.back().second;
  }

  // Makes each stretch twice as long.
  void Halve() {
    ++shift_;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      const std::int64_t slot = cells_[i].first >> 1U;
      if (kept > 0 && cells_[kept - 1].first == slot) {
        cells_[kept - 1].second.Merge(cells_[i].second);
      } else {
        cells_[kept] = {slot, std::move(cells_[i].second)};
        ++kept;
      }
    }
    cells_.resize(kept);
  }
  // Halves until there's room for as many again. REQUIRES: `most` > 1.
  void Fit(std::size_t most) {
    if (cells_.size() > most) {
      while (cells_.size() > most / 2) {
        Halve();
      }
    }
  }

  // How long each cell's stretch is, in microseconds. 1 means that every moment has its own.
  [[nodiscard]] std::int64_t Width() const noexcept { return std::int64_t{1} << shift_; }
  // With their numbers: a cell begins at its number times Width().
  [[nodiscard]] const std::vector<std::pair<std::int64_t, Cell>>& Cells() const noexcept {
    return cells_;
  }

 private:
  std::vector<std::pair<std::int64_t, Cell>> cells_;
  unsigned shift_ = 0;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_TIME_BUCKETS_H
