// SPDX-License-Identifier: MIT
#include "page/stream_courses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program/page/page_data.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;
using vextrel::program::DepthCell;
using vextrel::program::IntervalCell;

TEST(StreamCourses, HaveEveryFrameOfAShortLog) {
  const json streams = DataOf(PageOf(SmallSession()))["streams"];
  ASSERT_EQ(streams["count"], 1);
  const json& course = streams["all"][0];
  EXPECT_EQ(course["stream"]["name"], "DS1");
  EXPECT_EQ(course["announced"], 2);
  // The time, the mean, the longest, how many, and the line.
  EXPECT_EQ(course["intervals"]["rows"],
            json::parse("[[210.0, 100.0, 100.0, 1, 21], [810.0, 600.0, 600.0, 1, 26]]"));
}

TEST(StreamCourses, FollowTheQueue) {
  const json course = DataOf(PageOf(SmallSession()))["streams"]["all"][0];
  // The time, the least depth then, and the last. Both buffers are queued at 7 ms; the flush at
  // 1010 takes them away.
  EXPECT_EQ(course["depths"]["rows"],
            json::parse("[[5.0, 0, 0], [7.0, 1, 2], [110.0, 1, 1], [114.0, 2, 2], [210.0, 1, 1],"
                        " [216.0, 2, 2], [810.0, 1, 1], [1010.0, 0, 0]]"));
}

TEST(StreamCourses, CountIntervalsInEqualBins) {
  const json histogram = DataOf(PageOf(SmallSession()))["streams"]["all"][0]["histogram"];
  // 100 and 600 ms, in no more than 61 bins of whole milliseconds.
  EXPECT_EQ(histogram["firstMs"], 100.0);
  EXPECT_EQ(histogram["widthMs"], 9.0);
  EXPECT_EQ(histogram["longer"], 0);
  ASSERT_EQ(histogram["bins"].size(), 56U);
  EXPECT_EQ(histogram["bins"][0], 1);
  EXPECT_EQ(histogram["bins"][55], 1);
}

TEST(StreamCourses, MergeIntervalsToTheLongestOne) {
  IntervalCell cell;
  cell.Add(10, 5, {0, 1});
  cell.Add(19, 9, {0, 2});
  IntervalCell later;
  later.Add(26, 7, {0, 3});
  cell.Merge(later);
  EXPECT_EQ(cell.count, 3U);
  EXPECT_EQ(cell.sum, 21);
  EXPECT_EQ(cell.longest, 9);
  EXPECT_EQ(cell.longestTime, 19);
  EXPECT_EQ(cell.longestAt.line, 2U);
}

TEST(StreamCourses, MergeDepthsToTheLeastOne) {
  DepthCell cell;
  cell.Add(3);
  DepthCell later;
  later.Add(1);
  later.Add(DepthCell::kUnknown);
  cell.Merge(later);
  EXPECT_EQ(cell.least, 1);
  EXPECT_EQ(cell.last, DepthCell::kUnknown);
}

}  // namespace
}  // namespace vextrel_test
