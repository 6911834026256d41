// SPDX-License-Identifier: MIT
#include "model/time_buckets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using testing::ElementsAre;
using testing::Pair;
using vextrel::program::TimeBuckets;

struct Sum {
  int value = 0;
  void Merge(const Sum& later) { value += later.value; }
  bool operator==(const Sum& other) const = default;
};

TEST(TimeBuckets, KeepsEachMomentAsLongAsTheyAreFew) {
  TimeBuckets<Sum> buckets;
  buckets.At(3).value += 1;
  buckets.At(3).value += 2;
  buckets.At(10).value += 4;
  buckets.Fit(2);
  EXPECT_EQ(buckets.Width(), 1);
  EXPECT_THAT(buckets.Cells(), ElementsAre(Pair(3, Sum{3}), Pair(10, Sum{4})));
}

TEST(TimeBuckets, MergesNeighborsUntilHalfOfTheRoomIsFree) {
  TimeBuckets<Sum> buckets;
  for (int i = 0; i < 5; ++i) {
    buckets.At(i).value = 1;
  }
  buckets.Fit(4);
  // 0 to 3, and 4 to 7.
  EXPECT_EQ(buckets.Width(), 4);
  EXPECT_THAT(buckets.Cells(), ElementsAre(Pair(0, Sum{4}), Pair(1, Sum{1})));
}

TEST(TimeBuckets, CountsAStepBackAsNow) {
  TimeBuckets<Sum> buckets;
  buckets.At(10).value = 1;
  buckets.At(9).value += 1;
  EXPECT_THAT(buckets.Cells(), ElementsAre(Pair(10, Sum{2})));
}

}  // namespace
}  // namespace vextrel_test
