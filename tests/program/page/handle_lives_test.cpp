// SPDX-License-Identifier: MIT
#include "page/handle_lives.h"

#include <gtest/gtest.h>

#include "program/page/page_data.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;

json HandleNamed(const json& data, const std::string& name) {
  for (const json& each : data["handles"]["all"]) {
    if (each["name"] == name) {
      return each;
    }
  }
  return nullptr;
}

TEST(HandleLives, ReachFromTheOpeningToTheEnd) {
  const json data = DataOf(PageOf(SmallSession()));
  const json device = HandleNamed(data, "DEV1");
  EXPECT_EQ(device["id"], "Cam2");
  EXPECT_EQ(device["begin"], 4.0);
  EXPECT_EQ(device["end"], 1013.0);
  EXPECT_EQ(device["opened"], json::parse("[0, 8]"));
  EXPECT_EQ(device["closed"], json::parse("[0, 33]"));
  EXPECT_EQ(device["value"], "0x00000001000C0DE0");
  EXPECT_EQ(device["left"], false);
}

TEST(HandleLives, EndWithWhatTookThemAlong) {
  const json buffer = HandleNamed(DataOf(PageOf(SmallSession())), "BUF2");
  EXPECT_EQ(buffer["begin"], 5.0);
  EXPECT_EQ(buffer["end"], 1012.0);
  EXPECT_EQ(buffer["closed"], nullptr);
  EXPECT_EQ(buffer["with"], "DS1");
  EXPECT_EQ(buffer["left"], true);
}

TEST(HandleLives, HaveNoEndIfTheLogHasNone) {
  const json transportLayer = HandleNamed(DataOf(PageOf(TimedCalls())), "TL1");
  EXPECT_EQ(transportLayer["begin"], 1.0);
  EXPECT_EQ(transportLayer["end"], nullptr);
}

TEST(HandleLives, EndWhenTheValueComesBack) {
  const std::string open =
      "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))";
  const json data = DataOf(PageOf(LogLine(0, open) + LogLine(50, open)));
  EXPECT_EQ(HandleNamed(data, "TL1")["end"], 50.0);
  EXPECT_EQ(HandleNamed(data, "TL2")["begin"], 50.0);
}

}  // namespace
}  // namespace vextrel_test
