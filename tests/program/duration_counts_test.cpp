// SPDX-License-Identifier: MIT
#include "model/duration_counts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace vextrel_test {
namespace {

using vextrel::program::DurationCounts;

TEST(DurationCounts, AreExactForSmallValues) {
  DurationCounts counts;
  for (std::uint64_t value = 1; value <= 50; ++value) {
    counts.Add(value);
  }
  EXPECT_EQ(counts.Quantile(50), 25U);
  EXPECT_EQ(counts.Quantile(99), 50U);
  EXPECT_EQ(counts.Max(), 50U);
  EXPECT_DOUBLE_EQ(counts.Mean(), 25.5);
}

TEST(DurationCounts, AreNoMoreThanTheirPromiseAboveTheTruth) {
  std::mt19937_64 random(1);
  DurationCounts counts;
  std::vector<std::uint64_t> values;
  for (int i = 0; i < 2000; ++i) {
    values.push_back(random() >> (random() % 64));
    counts.Add(values.back());
  }
  std::sort(values.begin(), values.end());
  for (const double percent : {1.0, 50.0, 95.0, 99.0, 100.0}) {
    const std::uint64_t exact = values[static_cast<std::size_t>(percent * 20) - 1];
    EXPECT_GE(counts.Quantile(percent), exact);
    EXPECT_LE(counts.Quantile(percent) - exact, exact / 32);
  }
  EXPECT_EQ(counts.Quantile(100), values.back());
}

TEST(DurationCounts, TakeTheLargestValue) {
  DurationCounts counts;
  counts.Add(UINT64_MAX);
  EXPECT_EQ(counts.Quantile(50), UINT64_MAX);
}

}  // namespace
}  // namespace vextrel_test
