// SPDX-License-Identifier: MIT
#include "model/value_counts.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(ValueCounts, GiveTheSmallestValueThatEnoughDontExceed) {
  ValueCounts values;
  for (int i = 100; i >= 1; --i) {
    values.Add(i);
  }
  const auto sorted = values.Sorted();
  EXPECT_EQ(Quantile(sorted, 50), 50);
  EXPECT_EQ(Quantile(sorted, 95), 95);
  EXPECT_EQ(Quantile(sorted, 99), 99);
  EXPECT_EQ(Quantile(sorted, 99.5), 100);
  EXPECT_EQ(Quantile(sorted, 100), 100);
  EXPECT_DOUBLE_EQ(values.Mean(), 50.5);
}

TEST(ValueCounts, CountRepetitions) {
  ValueCounts values;
  for (int i = 0; i < 98; ++i) {
    values.Add(10);
  }
  values.Add(20);
  values.Add(-5);
  EXPECT_EQ(values.Count(), 100U);
  const auto sorted = values.Sorted();
  ASSERT_EQ(sorted.size(), 3U);
  EXPECT_EQ(sorted[0], std::make_pair(std::int64_t{-5}, std::uint64_t{1}));
  EXPECT_EQ(Quantile(sorted, 1), -5);
  EXPECT_EQ(Quantile(sorted, 99), 10);
  EXPECT_EQ(Quantile(sorted, 99.1), 20);
}

TEST(ValueCounts, OfOneValueAreThatValue) {
  ValueCounts values;
  values.Add(7);
  EXPECT_EQ(Quantile(values.Sorted(), 50), 7);
  EXPECT_EQ(Quantile(values.Sorted(), 99), 7);
}

}  // namespace
}  // namespace vextrel_test
