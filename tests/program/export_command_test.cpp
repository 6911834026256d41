// SPDX-License-Identifier: MIT
#include "commands/export_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

std::string Export(const std::string& form, const std::string& text) {
  const ScratchFile log(text);
  const ProgramResult result = RunVextrel({"export", "--to", form, log.Path()});
  EXPECT_EQ(result.status, 0) << result.errors;
  return result.output;
}

std::vector<json> JsonLines(const std::string& text) {
  std::vector<json> lines;
  std::istringstream stream(Export("jsonl", text));
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(json::parse(line));
  }
  return lines;
}

TEST(ExportJsonLines, HasAnObjectForEachRecord) {
  const std::vector<json> lines = JsonLines(SmallSession());
  ASSERT_EQ(lines.size(), 36U);
  const json& queue = lines[12];
  EXPECT_EQ(queue["line"], 13);
  EXPECT_EQ(queue["kind"], "call");
  EXPECT_EQ(queue["function"], "DSQueueBuffer");
  EXPECT_EQ(queue["result"], "GC_ERR_SUCCESS");
  EXPECT_EQ(queue["code"], 0);
  EXPECT_EQ(queue["time"], "2026-11-21 12:00:00.007");
  EXPECT_EQ(queue["thread"], "7");
  EXPECT_EQ(queue["args"], (json{{"hDS", "DS1"}, {"hB", "BUF1"}}));
  EXPECT_EQ(lines[15]["delivered"], "BUF1");
  EXPECT_EQ(lines[15]["args"]["iTimeout"], 500);
  EXPECT_EQ(lines[18]["args"]["iCommand"], "BUFFER_INFO_DATA_SIZE");
  EXPECT_EQ(lines[5]["code"], -1005);
  EXPECT_EQ(lines[30]["kind"], "report");
  EXPECT_EQ(lines[30]["priority"], "WARN");
}

TEST(ExportJsonLines, LeavesOutWhatStandsUnderAForeignLabel) {
  const std::vector<json> lines = JsonLines(SmallSession());
  EXPECT_EQ(lines[6]["args"], (json{{"ErrorText", "somebody else uses Cam1"}, {"iSize", 24}}));
}

TEST(ExportJsonLines, KeepsWhatItCannotRead) {
  const std::vector<json> lines = JsonLines(SmallSession() + LogLine(2000, "hello \xFF") +
                                            LogLine(2001, "GC_ERR_SUCCESS=DSQ\xFF"));
  ASSERT_EQ(lines.size(), 38U);
  EXPECT_EQ(lines[36]["kind"], "other");
  EXPECT_EQ(lines[36]["text"], "hello \\xff");
  EXPECT_EQ(lines[37]["kind"], "unreadable");
  EXPECT_EQ(lines[37]["text"], "GC_ERR_SUCCESS=DSQ\\xff");
}

TEST(ExportCsv, HasARowForEachRecordBehindAHeader) {
  const std::string csv = Export("csv", SmallSession());
  EXPECT_THAT(csv, testing::StartsWith("file,line,session,time,us,thread,kind,function,result,"
                                       "failed,handle,delivered,number,start_us,duration_us,text"
                                       "\r\n"));
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 37);
  EXPECT_THAT(csv, HasSubstr(",16,1,2026-11-21 12:00:00.110,1795262400110000,7,call,EventGetData,"
                             "GC_ERR_SUCCESS,0,EV1,BUF1,,,,\"EventGetData(EV1 NEW_BUFFER of DS1, "
                             "iTimeout=500) -> BUF1\"\r\n"));
}

TEST(ExportJsonLines, HasTimesInTheTarget) {
  const std::vector<json> lines = JsonLines(TimedCalls());
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0]["number"], 1);
  EXPECT_EQ(lines[0]["start_us"], lines[0]["us"].get<std::int64_t>() - 1'000);
  EXPECT_EQ(lines[0]["duration_us"], 1204.567);
  EXPECT_EQ(lines[3]["kind"], "neverReturned");
  EXPECT_EQ(lines[3]["function"], "GCReadPort");
  EXPECT_EQ(lines[3]["line"], 4);
  EXPECT_EQ(lines[3]["thread"], "8");
}

TEST(ExportCsv, HasTimesInTheTarget) {
  const std::string csv = Export("csv", TimedCalls());
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 5);
  EXPECT_THAT(csv, HasSubstr(",0,TL1,,1,1795262400000000,1204.567,TLOpen() -> TL1\r\n"));
  EXPECT_THAT(csv, HasSubstr(",4,1,2026-11-21 12:00:00.002,1795262400002000,8,neverReturned,"
                             "GCReadPort,,1,TL1,,2,1795262400002000,,GCReadPort(TL1)\r\n"));
}

TEST(ExportCsv, HasNoFormulas) {
  const std::string csv =
      Export("csv", SmallSession() + LogLine(2000, "=cmd|' /C calc'!A0") + LogLine(2001, "@x") +
                        LogLine(2002, "-1+1") + LogLine(2003, "a \"b\""));
  EXPECT_THAT(csv, HasSubstr(",'=cmd|' /C calc'!A0\r\n"));
  EXPECT_THAT(csv, HasSubstr(",'@x\r\n"));
  EXPECT_THAT(csv, HasSubstr(",'-1+1\r\n"));
  EXPECT_THAT(csv, HasSubstr(",\"a \"\"b\"\"\"\r\n"));
}

TEST(ExportChrome, HasATrackACounterAndSpans) {
  const json trace = json::parse(Export("chrome", SmallSession()));
  std::map<std::string, int> phases;
  std::vector<int> depths;
  std::map<std::string, int> openSpans;
  double lastTime = 0;
  for (const json& event : trace["traceEvents"]) {
    const std::string phase = event["ph"];
    ++phases[phase];
    if (phase == "C") {
      EXPECT_EQ(event["name"], "queue depth of DS1");
      depths.push_back(event["args"]["buffers"]);
    } else if (phase == "b" || phase == "e") {
      openSpans[event["id"]] += phase == "b" ? 1 : -1;
    }
    if (phase == "X") {
      // The next one starts no earlier than this one ends: slices of a track don't overlap.
      EXPECT_GE(event["ts"].get<double>(), lastTime);
      lastTime = event["ts"].get<double>() + event["dur"].get<double>();
    }
  }
  // Four waits, 28 other calls, 2 reports.
  EXPECT_EQ(phases["X"], 4);
  EXPECT_EQ(phases["i"], 30);
  EXPECT_EQ(phases["M"], 2);
  EXPECT_EQ(depths, (std::vector<int>{0, 1, 2, 1, 2, 1, 2, 1, 0}));
  for (const auto& [buffer, open] : openSpans) {
    EXPECT_EQ(open, 0) << buffer;
  }
  EXPECT_EQ(openSpans.size(), 2U);
}

TEST(ExportChrome, DrawsAWaitFromTheLineBefore) {
  const json trace = json::parse(Export("chrome", SmallSession()));
  for (const json& event : trace["traceEvents"]) {
    if (event["ph"] == "X" && event["args"]["line"] == 16) {
      EXPECT_EQ(event["ts"], 10'000);
      EXPECT_EQ(event["dur"], 100'000);
      EXPECT_EQ(event["cat"], "wait");
    }
  }
}

TEST(ExportChrome, DrawsTimedCallsAsLongAsTheyWere) {
  const json trace = json::parse(Export("chrome", TimedCalls()));
  std::map<int, std::vector<json>> tracks;
  for (const json& event : trace["traceEvents"]) {
    EXPECT_NE(event["ph"], "i");
    if (event["ph"] == "X") {
      tracks[event["tid"]].push_back({event["name"], event["ts"], event["dur"]});
    }
  }
  EXPECT_EQ(tracks[1], (std::vector<json>{{"TLOpen", 0.0, 1204.567},
                                          {"GCGetInfo", 2000.0, 0.85},
                                          {"GCGetInfo", 2000.85, 900.0}}));
  EXPECT_EQ(tracks[2], (std::vector<json>{{"GCReadPort", 2000.0, 1000.0}}));
}

TEST(ExportChrome, WantsTimes) {
  const ScratchFile log("GC_ERR_SUCCESS=GCInitLib(void)\n");
  const ProgramResult result = RunVextrel({"export", "--to", "chrome", log.Path()});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.errors, HasSubstr("has no time"));
}

}  // namespace
}  // namespace vextrel_test
