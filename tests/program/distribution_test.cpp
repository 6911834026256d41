// SPDX-License-Identifier: MIT
#include "model/distribution.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(Distribution, IsInMilliseconds) {
  ValueCounts values;
  values.Add(1'000);
  values.Add(2'000);
  values.Add(6'000);
  const std::optional<Distribution> figures = Summarize(values);
  ASSERT_TRUE(figures.has_value());
  EXPECT_DOUBLE_EQ(figures->mean, 3);
  EXPECT_DOUBLE_EQ(figures->p50, 2);
  EXPECT_DOUBLE_EQ(figures->p95, 6);
  EXPECT_DOUBLE_EQ(figures->max, 6);
}

TEST(Distribution, OfNothingIsNotKnown) {
  EXPECT_FALSE(Summarize(ValueCounts()).has_value());
}

}  // namespace
}  // namespace vextrel_test
