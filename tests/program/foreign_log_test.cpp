// SPDX-License-Identifier: MIT
// The figures of one real session of another maker's application and producer, counted by hand. The
// log isn't ours to publish: who has it names it when the tests are configured.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;

json ReportOfForeignLog() {
  const ProgramResult result = RunVextrel({"report", "--json", VEXTREL_FOREIGN_LOG});
  EXPECT_EQ(result.status, 0) << result.errors;
  return json::parse(result.output);
}

json CallsOf(const json& report, std::string_view function) {
  for (const json& each : report["functions"]) {
    if (each["name"] == function) {
      return each["calls"];
    }
  }
  return nullptr;
}

TEST(ForeignLog, HasTheCallsThatWereCounted) {
  const json report = ReportOfForeignLog();
  const json& log = report["log"];
  EXPECT_EQ(log["bytes"], 571371);
  EXPECT_EQ(log["calls"], 968);
  EXPECT_EQ(log["reports"], 0);
  EXPECT_EQ(log["unreadable"], 0);
  EXPECT_EQ(log["first"], "2026-11-21 18:55:08.786");
  EXPECT_EQ(log["last"], "2026-11-21 18:55:13.923");
  EXPECT_EQ(log["timing"], false);
  EXPECT_EQ(report["results"], (json{{"GC_ERR_SUCCESS", 967}, {"GC_ERR_ABORT", 1}}));
  EXPECT_EQ(CallsOf(report, "DSGetBufferInfo"), 735);
  EXPECT_EQ(CallsOf(report, "DSQueueBuffer"), 54);
  EXPECT_EQ(CallsOf(report, "EventGetData"), 50);
  EXPECT_EQ(CallsOf(report, "IFGetDeviceInfo"), 48);
  EXPECT_EQ(CallsOf(report, "GCReadPort"), 11);
  EXPECT_EQ(CallsOf(report, "TLOpen"), 2);
}

TEST(ForeignLog, HasTheStreamThatWasCounted) {
  const json report = ReportOfForeignLog();
  ASSERT_EQ(report["streams"].size(), 1U);
  const json& stream = report["streams"][0];
  EXPECT_EQ(stream["name"], "DS1");
  EXPECT_EQ(stream["device"], "DEV1");
  EXPECT_EQ(stream["id"], "default");
  // The 50th wait was aborted.
  EXPECT_EQ(stream["frames"], 49);
  EXPECT_EQ(stream["timeouts"], 0);
  // It wasn't asked.
  EXPECT_EQ(stream["incomplete"], nullptr);
  EXPECT_EQ(stream["intervalMs"]["mean"], 100.4375);
  EXPECT_EQ(stream["intervalMs"]["p50"], 100);
  EXPECT_EQ(stream["intervalMs"]["max"], 107);
}

TEST(ForeignLog, HasTheDeviceWhoseHandleIsPutTogether) {
  const json report = ReportOfForeignLog();
  for (const json& each : report["handles"]) {
    if (each["name"] == "DEV1") {
      EXPECT_EQ(each["id"], "udp://123.123.123.123/left");
      EXPECT_EQ(each["value"], "0x000055B586E2E930");
      EXPECT_EQ(each["openedAt"]["line"], 94);
      EXPECT_EQ(each["closedAt"]["line"], 6277);
      return;
    }
  }
  ADD_FAILURE() << "there's no DEV1";
}

TEST(ForeignLog, HasNoError) {
  EXPECT_EQ(RunVextrel({"check", VEXTREL_FOREIGN_LOG}).status, 0);
}

}  // namespace
}  // namespace vextrel_test
