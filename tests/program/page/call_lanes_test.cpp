// SPDX-License-Identifier: MIT
#include "page/call_lanes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "program/page/page_data.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;
using testing::Each;
using testing::ElementsAre;
using vextrel::program::CallGroup;
using vextrel::program::CallLanes;
using vextrel::program::GroupOf;

using Numbers = std::vector<std::int64_t>;

// A column that holds differences.
Numbers Sums(const json& column) {
  Numbers numbers = column.get<Numbers>();
  std::partial_sum(numbers.begin(), numbers.end(), numbers.begin());
  return numbers;
}

// More calls than are kept one by one, a millisecond apart, on two threads; one of them failed.
std::string ManyCalls() {
  std::string log =
      LogLine(0, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))");
  for (std::size_t i = 1; i <= CallLanes::kMostCalls; ++i) {
    const bool failed = i == 5'000;
    log += LogLine(static_cast<int>(i),
                   failed ? "GC_ERR_IO=TLClose(hTL=0x0000000000000A10)"
                          : "GC_ERR_SUCCESS=TLGetNumInterfaces(hTL=0x0000000000000A10, "
                            "0x000000000000F028->(iNumInterfaces=0x1))",
                   "INFO", i % 2 == 0 ? "7" : "8");
  }
  return log;
}

TEST(CallLanes, AreByWhatFunctionsAreFor) {
  EXPECT_EQ(GroupOf("EventGetData"), CallGroup::Event);
  EXPECT_EQ(GroupOf("GCRegisterEvent"), CallGroup::Event);
  EXPECT_EQ(GroupOf("DSQueueBuffer"), CallGroup::Buffer);
  EXPECT_EQ(GroupOf("DSAllocAndAnnounceBuffer"), CallGroup::Buffer);
  EXPECT_EQ(GroupOf("DSGetBufferInfo"), CallGroup::Info);
  EXPECT_EQ(GroupOf("GCReadPortStacked"), CallGroup::Port);
  EXPECT_EQ(GroupOf("IFOpenDevice"), CallGroup::Open);
  EXPECT_EQ(GroupOf("GCCloseLib"), CallGroup::Open);
  EXPECT_EQ(GroupOf("DSStopAcquisition"), CallGroup::Acquire);
}

TEST(CallLanes, ShowCallsAsLongAsTheyWereInTheTarget) {
  const json calls = DataOf(PageOf(TimedCalls()))["calls"];
  // The two that return in order; the one that doesn't is by the second thread. In tenths of a
  // microsecond, from the line that says that the call enters.
  EXPECT_THAT(Sums(calls["line"]), ElementsAre(3, 4, 7, 10));
  EXPECT_THAT(calls["lane"].get<Numbers>(), ElementsAre(0, 1, 0, 0));
  EXPECT_THAT(Sums(calls["begin"]), ElementsAre(0, 20'000, 20'000, 20'008));
  // What never returned lasts up to the end of the log, a millisecond later.
  EXPECT_THAT(calls["duration"].get<Numbers>(), ElementsAre(12'045, 10'000, 8, 9'000));
  // 1 is timed, 2 failed, 4 never returned.
  EXPECT_THAT(calls["look"].get<Numbers>(), ElementsAre(1, 7, 1, 1));
}

TEST(CallLanes, ShowWaitsFromTheLineBeforeWithoutTimingLines) {
  const json calls = DataOf(PageOf(SmallSession()))["calls"];
  const Numbers lines = Sums(calls["line"]);
  ASSERT_EQ(lines.size(), 32U);
  const auto at =
      static_cast<std::size_t>(std::find(lines.begin(), lines.end(), 25) - lines.begin());
  ASSERT_LT(at, lines.size());
  // The wait that timed out: from 216 ms to 710.
  EXPECT_EQ(Sums(calls["begin"])[at], 2'160'000);
  EXPECT_EQ(calls["duration"][at], 4'940'000);
  EXPECT_EQ(calls["look"][at], 8);
  EXPECT_THAT(calls["lane"].get<Numbers>(), Each(0));
}

TEST(CallLanes, CountAllAndKeepWhatMattersOfManyCalls) {
  const json data = DataOf(PageOf(ManyCalls()));
  EXPECT_EQ(data["keepsAll"], false);
  std::int64_t calls = 0;
  std::int64_t failed = 0;
  std::size_t cells = 0;
  ASSERT_EQ(data["lanes"]["all"].size(), 2U);
  for (const json& lane : data["lanes"]["all"]) {
    cells += lane["slot"].size();
    const Numbers callsOfLane = lane["calls"].get<Numbers>();
    const Numbers failedOfLane = lane["failed"].get<Numbers>();
    calls += std::accumulate(callsOfLane.begin(), callsOfLane.end(), std::int64_t{0});
    failed += std::accumulate(failedOfLane.begin(), failedOfLane.end(), std::int64_t{0});
  }
  EXPECT_EQ(calls, 32'001);
  EXPECT_EQ(failed, 1);
  EXPECT_LE(cells, CallLanes::kMostCells);
  const Numbers lines = Sums(data["calls"]["line"]);
  EXPECT_LT(lines.size(), CallLanes::kMostCalls);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), 5'001), 1) << "the call that failed";
}

TEST(CallLanes, KeepFailuresOfAllOfTheLog) {
  std::string log;
  for (std::size_t i = 0; i <= CallLanes::kMostCalls; ++i) {
    log += LogLine(static_cast<int>(i), "GC_ERR_IO=TLClose(hTL=0x0000000000000A10)");
  }
  const Numbers lines = Sums(DataOf(PageOf(log))["calls"]["line"]);
  EXPECT_LT(lines.size(), CallLanes::kMostCalls / 2);
  // 32,001 of them: one in eight is kept, from the first to the last.
  EXPECT_GE(lines.size(), 4'000U);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    EXPECT_LE(lines[i] - lines[i - 1], 8);
  }
  EXPECT_GT(lines.back(), 31'990);
}

TEST(CallLanes, KeepTheCallsBeforeTheLongestInterval) {
  // 33,000 calls. Frames come each 20 ms, with ten calls in between; one comes 500 ms late.
  const std::size_t end = SmallSession().find("2026-11-21 12:00:00.110");
  std::string log = SmallSession().substr(0, end);
  int now = 110;
  std::int64_t late = 0;
  std::int64_t line = 15;
  for (int frame = 0; frame < 3'000; ++frame) {
    for (int i = 0; i < 10; ++i) {
      log += LogLine(now,
                     "GC_ERR_SUCCESS=TLGetNumInterfaces(hTL=0x0000000000000A10, "
                     "0x000000000000F028->(iNumInterfaces=0x1))");
    }
    now += frame == 1'500 ? 520 : 20;
    log += LogLine(now,
                   "GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, "
                   "0x000000000000F000->(Buffer=0x01,0x0b,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
                   "0x00,0x00,0x00,0x00,0x00,0x00,0x00), 0x000000000000F008->(iSize=16), "
                   "iTimeout=500)");
    line += 11;
    late = frame == 1'500 ? line : late;
  }
  const json data = DataOf(PageOf(log));
  ASSERT_EQ(data["keepsAll"], false);
  const Numbers lines = Sums(data["calls"]["line"]);
  for (std::int64_t each = late - 10; each <= late; ++each) {
    EXPECT_EQ(std::count(lines.begin(), lines.end(), each), 1) << each;
  }
}

TEST(CallLanes, AreNoMoreThanFit) {
  std::string log;
  for (int i = 0; i < 60; ++i) {
    log += LogLine(i, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))",
                   "INFO", std::to_string(1'000 + i));
  }
  const json data = DataOf(PageOf(log));
  const Numbers lanes = data["calls"]["lane"].get<Numbers>();
  ASSERT_EQ(lanes.size(), 60U);
  EXPECT_EQ(lanes[22], 22);
  EXPECT_EQ(lanes[23], 23);
  EXPECT_EQ(lanes[59], 23) << "the last one is for all further threads";
}

}  // namespace
}  // namespace vextrel_test
