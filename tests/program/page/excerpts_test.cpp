// SPDX-License-Identifier: MIT
#include "page/excerpts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program/page/page_data.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;
using testing::ElementsAre;

std::vector<std::uint64_t> LinesOf(const json& rows) {
  std::vector<std::uint64_t> lines;
  for (const json& row : rows) {
    lines.push_back(row[1]);
  }
  return lines;
}

// 40 harmless calls from line 2 on, one that uses a closed handle, and 40 more.
std::string CallOfClosedHandle() {
  const std::string harmless =
      "GC_ERR_SUCCESS=GCGetInfo(iInfoCmd=TL_INFO_VENDOR, "
      "0x000000000000F000->(iType=INFO_DATATYPE_STRING), Buffer='V', "
      "0x000000000000F008->(iSize=2))";
  std::string log = LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)");
  const auto add = [&](int first) {
    for (int i = 0; i < 40; ++i) {
      log += LogLine(first + i, harmless);
    }
  };
  add(1);
  log += LogLine(50, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))");
  log += LogLine(51, "GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000A10)");
  add(60);
  log += LogLine(110, "GC_ERR_INVALID_HANDLE=TLClose(hTL=0x0000000000000A10)");
  add(120);
  return log + LogLine(200, "GC_ERR_SUCCESS=GCCloseLib(void)");
}

TEST(Excerpts, AreTheLinesAroundFindingsAndTheirProof) {
  const json data = DataOf(PageOf(CallOfClosedHandle()));
  const json& finding = data["findings"]["all"][0];
  ASSERT_EQ(finding["rule"], "HND-AFTER");
  EXPECT_EQ(finding["at"], json::parse("[0, 84]"));
  // Line 42 opens the handle and 43 closes it.
  EXPECT_THAT(LinesOf(data["rows"]),
              ElementsAre(41, 42, 43, 44, 80, 81, 82, 83, 84, 85, 86, 87, 88));
}

TEST(Excerpts, TellWhereLinesAreLeftOut) {
  const json rows = DataOf(PageOf(CallOfClosedHandle()))["rows"];
  ASSERT_EQ(rows.size(), 13U);
  EXPECT_EQ(rows[3][6], true);
  EXPECT_EQ(rows[4][6], false) << "line 80 doesn't follow line 44";
  EXPECT_EQ(rows[5][6], true);
}

TEST(Excerpts, ReadAsShowDoes) {
  const json rows = DataOf(PageOf(CallOfClosedHandle()))["rows"];
  ASSERT_EQ(rows.size(), 13U);
  const json& own = rows[8];
  EXPECT_EQ(own[2], "12:00:00.110");
  EXPECT_EQ(own[3], 1);
  EXPECT_EQ(own[4], 1) << "it failed";
  EXPECT_EQ(own[5], "TLClose(TL1(closed)) GC_ERR_INVALID_HANDLE");
}

TEST(Excerpts, ShowTheTimingLineThatIsAProof) {
  const json data = DataOf(PageOf(TimedCalls()));
  ASSERT_EQ(data["findings"]["all"][0]["rule"], "END-INFLIGHT");
  bool found = false;
  for (const json& row : data["rows"]) {
    found = found || (row[1] == 4 && row[5] == "Call 2 enters GCReadPort(0x0000000000000A10)");
  }
  EXPECT_TRUE(found) << data["rows"];
}

}  // namespace
}  // namespace vextrel_test
