// SPDX-License-Identifier: MIT
#include "model/duration_counts.h"

#include <bit>

namespace vextrel::program {
namespace {

// Values of fewer bits have buckets of their own; each octave above them has half as many.
constexpr unsigned kExactBits = 6;
constexpr std::uint64_t kExact = 1U << kExactBits;
constexpr std::uint64_t kPerOctave = kExact / 2;

std::size_t BucketOf(std::uint64_t value) noexcept {
  if (value < kExact) {
    return static_cast<std::size_t>(value);
  }
  const auto octave = static_cast<unsigned>(std::bit_width(value)) - kExactBits;
  return static_cast<std::size_t>(octave * kPerOctave + (value >> octave));
}

std::uint64_t LastOf(std::size_t bucket) noexcept {
  if (bucket < kExact) {
    return bucket;
  }
  const std::uint64_t octave = bucket / kPerOctave - 1;
  const std::uint64_t first = bucket - octave * kPerOctave;
  return ((first + 1) << octave) - 1;
}

}  // namespace

void DurationCounts::Add(std::uint64_t nanoseconds) {
  const std::size_t bucket = BucketOf(nanoseconds);
  if (bucket >= buckets_.size()) {
    buckets_.resize(bucket + 1);
  }
  ++buckets_[bucket];
  ++count_;
  sum_ += static_cast<double>(nanoseconds);
  max_ = std::max(max_, nanoseconds);
}

std::uint64_t DurationCounts::Quantile(double percent) const {
  const double wanted = static_cast<double>(count_) * percent / 100;
  std::uint64_t seen = 0;
  for (std::size_t i = 0; i < buckets_.size(); ++i) {
    seen += buckets_[i];
    if (static_cast<double>(seen) >= wanted && seen > 0) {
      return std::min(LastOf(i), max_);
    }
  }
  return max_;
}

}  // namespace vextrel::program
