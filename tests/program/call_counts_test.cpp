// SPDX-License-Identifier: MIT
#include "model/call_counts.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using vextrel::program::CallCounts;

TEST(CallCounts, CountByFunctionAndResult) {
  CallCounts counts;
  EXPECT_EQ(counts.Add(3, GC_ERR_SUCCESS, {0, 1}, 1), CallCounts::kNone);
  EXPECT_EQ(counts.Add(3, GC_ERR_TIMEOUT, {0, 2}, 1), 0U);
  EXPECT_EQ(counts.Add(4, GC_ERR_TIMEOUT, {0, 3}, 1), 1U);
  EXPECT_EQ(counts.Add(3, GC_ERR_ABORT, {0, 4}, 2), 2U);
  EXPECT_EQ(counts.Add(3, GC_ERR_TIMEOUT, {0, 5}, 2), 0U);
  EXPECT_EQ(counts.Calls(), 5U);
  EXPECT_EQ(counts.CallsOf(3), 4U);
  EXPECT_EQ(counts.SuccessesOf(3), 1U);
  EXPECT_EQ(counts.CallsOf(5), 0U);
  EXPECT_EQ(counts.Results(), (std::map<GC_ERROR, std::uint64_t>{
                                  {GC_ERR_SUCCESS, 1}, {GC_ERR_TIMEOUT, 3}, {GC_ERR_ABORT, 1}}));
  ASSERT_EQ(counts.Failures().size(), 3U);
  EXPECT_EQ(counts.Failures()[0].count, 2U);
  EXPECT_EQ(counts.Failures()[0].first.line, 2U);
  EXPECT_EQ(counts.Failures()[2].thread, 2U);
}

TEST(CallCounts, KeepTheFirstExplanation) {
  CallCounts counts;
  const std::size_t failure = counts.Add(1, GC_ERR_ERROR, {}, 1);
  counts.Explain(failure, "because");
  counts.Explain(failure, "no, because");
  EXPECT_EQ(counts.Failures()[failure].text, "because");
}

}  // namespace
}  // namespace vextrel_test
