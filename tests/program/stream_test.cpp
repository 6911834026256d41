// SPDX-License-Identifier: MIT
#include "model/stream.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(Stream, MeasuresIntervalsWithinOneAcquisition) {
  Stream stream(1, true);
  stream.Start(0, {0, 1});
  stream.Deliver(10, {0, 1}, true);
  stream.Deliver(15, {0, 2}, true);
  stream.Deliver(35, {0, 3}, true);
  stream.Deliver(40, {0, 4}, true);
  stream.Stop(50);
  stream.Start(1000, {0, 1});
  stream.Deliver(1010, {0, 5}, true);
  EXPECT_EQ(stream.Frames(), 5U);
  EXPECT_EQ(stream.Intervals().Count(), 3U);
  EXPECT_EQ(stream.Intervals().Sorted().back().first, 20);
  ASSERT_TRUE(stream.LongestIntervalAt().has_value());
  EXPECT_EQ(stream.LongestIntervalAt()->line, 3U);
}

TEST(Stream, KnowsTheLatestInterval) {
  Stream stream(1, true);
  stream.Start(0, {0, 1});
  stream.Deliver(10, {0, 1}, true);
  EXPECT_FALSE(stream.LastInterval().has_value());
  stream.Deliver(15, {0, 2}, true);
  EXPECT_EQ(stream.LastInterval(), 5);
  stream.Stop(50);
  stream.Start(1000, {0, 1});
  stream.Deliver(1010, {0, 5}, true);
  EXPECT_FALSE(stream.LastInterval().has_value());
}

TEST(Stream, CountsMissingFrameIds) {
  Stream stream(1, true);
  EXPECT_FALSE(stream.MissingFrameIds().has_value());
  stream.SeeFrameId(65'533, {0, 1});
  EXPECT_EQ(stream.MissingFrameIds(), 0U);
  stream.SeeFrameId(65'535, {0, 2});
  EXPECT_EQ(stream.MissingFrameIds(), 1U);
  // The number of 16 bits starts again at 1.
  stream.SeeFrameId(1, {0, 3});
  stream.SeeFrameId(5, {0, 4});
  EXPECT_EQ(stream.MissingFrameIds(), 4U);
  EXPECT_EQ(stream.FirstGap()->line, 2U);
  stream.SeeFrameId(4'000'000'000, {0, 5});
  EXPECT_EQ(stream.MissingFrameIds(), 4U);
}

TEST(Stream, WeighsTheQueueDepthWithTime) {
  Stream stream(1, true);
  stream.ChangeDepth(0, 2);
  EXPECT_FALSE(stream.QueueDepth().has_value());
  stream.Start(100, {0, 1});
  stream.ChangeDepth(120, -1);  // 2 for 20
  stream.ChangeDepth(130, -1);  // 1 for 10
  stream.ChangeDepth(160, 1);   // 0 for 30
  stream.Stop(200);             // 1 for 40
  const auto depth = stream.QueueDepth();
  ASSERT_TRUE(depth.has_value());
  EXPECT_EQ(depth->min, 0);
  EXPECT_DOUBLE_EQ(depth->mean.value(), 0.9);
  EXPECT_EQ(depth->timeAtZero, 30);
}

TEST(Stream, DoesNotKnowTheDepthUntilItCanBeTold) {
  Stream stream(1, false);
  stream.Start(0, {0, 1});
  stream.ChangeDepth(10, 1);
  EXPECT_FALSE(stream.QueueDepth().has_value());
  stream.SetDepth(20, 3);
  stream.LoseDepth(30);
  stream.ChangeDepth(90, -1);
  stream.Stop(100);
  const auto depth = stream.QueueDepth();
  ASSERT_TRUE(depth.has_value());
  EXPECT_EQ(depth->min, 3);
  EXPECT_DOUBLE_EQ(depth->mean.value(), 3);
}

TEST(Stream, NoticesFrameIdsThatStandStill) {
  Stream stream(1, true);
  stream.SeeFrameId(0, {});
  EXPECT_FALSE(stream.FrameIdsStandStill());
  stream.SeeFrameId(0, {});
  EXPECT_TRUE(stream.FrameIdsStandStill());
  EXPECT_EQ(stream.MissingFrameIds(), 0U);
  stream.SeeFrameId(1, {});
  EXPECT_FALSE(stream.FrameIdsStandStill());
}

TEST(Stream, KnowsIncompleteFramesOnlyIfSomebodyAsked) {
  Stream stream(1, true);
  EXPECT_FALSE(stream.Incomplete().has_value());
  stream.SeeIncomplete(false);
  EXPECT_EQ(stream.Incomplete(), 0U);
  stream.SeeIncomplete(true);
  EXPECT_EQ(stream.Incomplete(), 1U);
}

}  // namespace
}  // namespace vextrel_test
