// SPDX-License-Identifier: MIT
// The figures of `report --json`.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "program/small_log.h"
#include "views/report.h"

namespace vextrel_test {
namespace {

using nlohmann::json;

json AsJson(const std::string& text) {
  const ScratchFile log(text);
  const ProgramResult result = RunVextrel({"report", "--json", log.Path()});
  EXPECT_EQ(result.status, 0) << result.errors;
  return json::parse(result.output);
}

json Named(const json& list, std::string_view name) {
  for (const json& each : list) {
    if (each["name"] == name) {
      return each;
    }
  }
  ADD_FAILURE() << name;
  return {};
}

TEST(ReportJson, TellsTheLogsFigures) {
  const std::string text = SmallSession();
  const json log = AsJson(text)["log"];
  EXPECT_EQ(log["bytes"], text.size());
  EXPECT_EQ(log["lines"], 36);
  EXPECT_EQ(log["calls"], 32);
  EXPECT_EQ(log["reports"], 2);
  EXPECT_EQ(log["unreadable"], 0);
  EXPECT_EQ(log["first"], "2026-11-21 12:00:00.000");
  EXPECT_EQ(log["last"], "2026-11-21 12:00:01.014");
  EXPECT_EQ(log["resolutionMs"], 1);
  EXPECT_EQ(log["timing"], false);
}

TEST(ReportJson, TellsCallsByFunctionAndResult) {
  const json report = AsJson(SmallSession());
  EXPECT_EQ(report["results"],
            (json{{"GC_ERR_SUCCESS", 30}, {"GC_ERR_TIMEOUT", 1}, {"GC_ERR_ACCESS_DENIED", 1}}));
  EXPECT_EQ(Named(report["functions"], "EventGetData"),
            (json{{"name", "EventGetData"},
                  {"calls", 4},
                  {"errors", 1},
                  {"results", {{"GC_ERR_SUCCESS", 3}, {"GC_ERR_TIMEOUT", 1}}}}));
  EXPECT_EQ(Named(report["functions"], "DSGetBufferInfo")["calls"], 5);
}

TEST(ReportJson, TellsHandles) {
  const json report = AsJson(SmallSession());
  const json device = Named(report["handles"], "DEV1");
  EXPECT_EQ(device["kind"], "DEV");
  EXPECT_EQ(device["value"], "0x00000001000C0DE0");
  EXPECT_EQ(device["id"], "Cam2");
  EXPECT_EQ(device["parent"], "IF1");
  EXPECT_EQ(device["openedAt"]["line"], 8);
  EXPECT_EQ(device["closedAt"]["line"], 33);
  const json buffer = Named(report["handles"], "BUF2");
  EXPECT_EQ(buffer["id"], nullptr);
  EXPECT_EQ(buffer["closedAt"], nullptr);
  EXPECT_EQ(report["handles"].size(), 7U);
}

TEST(ReportJson, TellsStreams) {
  const json stream = Named(AsJson(SmallSession())["streams"], "DS1");
  EXPECT_EQ(stream["device"], "DEV1");
  EXPECT_EQ(stream["id"], "Stream0");
  EXPECT_EQ(stream["frames"], 3);
  EXPECT_EQ(stream["timeouts"], 1);
  EXPECT_EQ(stream["incomplete"], 1);
  EXPECT_EQ(stream["missingFrameIds"], 1);
  EXPECT_EQ(stream["intervalMs"],
            (json{{"mean", 350}, {"p50", 100}, {"p95", 600}, {"p99", 600}, {"max", 600}}));
  EXPECT_EQ(stream["holdMs"], (json{{"mean", 5}, {"p50", 4}, {"p95", 6}, {"p99", 6}, {"max", 6}}));
  EXPECT_EQ(stream["queueDepth"]["min"], 1);
  EXPECT_NEAR(stream["queueDepth"]["mean"].get<double>(), 1.79, 1e-9);
  EXPECT_EQ(stream["queueDepth"]["msAtZero"], 0);
}

TEST(ReportJson, SaysNullWhereNothingIsKnown) {
  const json report = AsJson(
      "GC_ERR_SUCCESS=DSStopAcquisition(hDS=0x0000000000000D50, "
      "Flags=ACQ_STOP_FLAGS_DEFAULT)\n");
  EXPECT_EQ(report["log"]["first"], nullptr);
  EXPECT_EQ(report["log"]["resolutionMs"], nullptr);
  const json stream = Named(report["streams"], "DS1");
  EXPECT_EQ(stream["device"], nullptr);
  EXPECT_EQ(stream["incomplete"], nullptr);
  EXPECT_EQ(stream["missingFrameIds"], nullptr);
  EXPECT_EQ(stream["intervalMs"]["p50"], nullptr);
  EXPECT_EQ(stream["queueDepth"]["mean"], nullptr);
  EXPECT_EQ(stream["queueDepth"]["msAtZero"], nullptr);
}

TEST(ReportJson, TellsWhatTimingLinesTell) {
  const json report = AsJson(TimedCalls());
  EXPECT_EQ(report["log"]["timing"], true);
  EXPECT_EQ(report["log"]["calls"], 3);
  EXPECT_EQ(Named(report["durations"], "TLOpen"), (json{{"name", "TLOpen"},
                                                        {"calls", 1},
                                                        {"meanUs", 1204.567},
                                                        {"p50Us", 1204.567},
                                                        {"p95Us", 1204.567},
                                                        {"p99Us", 1204.567},
                                                        {"maxUs", 1204.567}}));
  const json info = Named(report["durations"], "GCGetInfo");
  EXPECT_EQ(info["calls"], 2);
  EXPECT_NEAR(info["p50Us"].get<double>(), 0.85, 0.85 / 32);
  EXPECT_EQ(info["maxUs"], 900);
  EXPECT_NEAR(info["meanUs"].get<double>(), 450.425, 1e-9);
  ASSERT_EQ(report["neverReturned"].size(), 1U);
  const json& lost = report["neverReturned"][0];
  EXPECT_EQ(lost["function"], "GCReadPort");
  EXPECT_EQ(lost["number"], 2);
  EXPECT_EQ(lost["call"], "GCReadPort(TL1)");
  EXPECT_EQ(lost["handle"], "TL1");
  EXPECT_EQ(lost["thread"], "8");
  EXPECT_EQ(lost["session"], 1);
  EXPECT_EQ(lost["time"], "2026-11-21 12:00:00.002");
  EXPECT_EQ(lost["enteredAt"]["line"], 4);

  const json untimed = AsJson(SmallSession());
  EXPECT_EQ(untimed["durations"], nullptr);
  EXPECT_EQ(untimed["neverReturned"], nullptr);
}

TEST(ReportJson, GivesNewerNamesToResults) {
  const json report = AsJson(LogLine(0, "(Unknown GC_ERROR: -1022)=GCCloseLib(void)") +
                             LogLine(0, "TLOpen not exported", "ERROR"));
  EXPECT_EQ(report["results"], (json{{"GC_ERR_BUSY", 1}}));
  EXPECT_EQ(report["log"]["reports"], 0);
}

TEST(ReportJson, EscapesBytesThatAreNoUtf8) {
  const json report = AsJson(LogLine(0,
                                     "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000001, "
                                     "0x0000000000000002->(sInterfaceName=a\xFF), "
                                     "0x0000000000000003->(hInterface=0000000000000004))"));
  EXPECT_EQ(Named(report["handles"], "IF1")["id"], "a\\xff");
}

// A viewer that streams on a second thread: an earlier look at the producer leaves the values of
// handles behind, a description of 40 bytes is read in three lines, the first buffers are queued
// after the start, the wait is killed, and the library is never closed.
std::string ViewerSession() {
  const auto poll = [](int time, std::string_view firstByte) {
    return LogLine(time,
                   "GC_ERR_SUCCESS=EventGetData(hEvent=0x00007F0000000E10, "
                   "0x00007F000000F000->(Buffer=" +
                       std::string(firstByte) +
                       ",0x0b,0x00,0x00,0xaa,0x55,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
                       "0x00\n), 0x00007F000000F008->(iSize=16), iTimeout=4294967295)",
                   "INFO", "8");
  };
  const auto queue = [](int time, std::string_view buffer) {
    return LogLine(
        time,
        "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x000055AA00000D50, hB=0x" + std::string(buffer) + ")",
        "INFO", "8");
  };
  const auto look = [](int time) {
    return LogLine(time,
                   "GC_ERR_SUCCESS=TLOpen(0x00007F000000F000->(pHandle=0x000055AA00000A10))") +
           LogLine(time,
                   "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x000055AA00000A10, "
                   "0x00007F000000F028->(sInterfaceName=eth), "
                   "0x00007F000000F030->(hInterface=000055AA00000A20))");
  };
  std::string bytes;
  for (int i = 0; i < 40; ++i) {
    bytes += i == 0 ? "0x41" : (i % 16 == 0 ? ",\n0x41" : ",0x41");
  }
  return LogLine(0, "Loading GenTL Producer '/opt/other.cti'") +
         LogLine(1, "GC_ERR_SUCCESS=GCInitLib(void)") + look(1) +
         LogLine(2, "GC_ERR_SUCCESS=IFClose(hInterface=0x000055AA00000A20)") +
         LogLine(2, "GC_ERR_SUCCESS=TLClose(hTL=0x000055AA00000A10)") + look(3) +
         LogLine(4,
                 "GC_ERR_SUCCESS=IFOpenDevice(hInterface=0x000055AA00000A20, "
                 "0x00007F000000F038->(sDevName=cam), iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, "
                 "0x00007F000000F040->(hDev=0xde0))") +
         LogLine(5,
                 "GC_ERR_SUCCESS=DevGetPort(hDev=0x000055AA00000DE0, "
                 "0x00007F000000F048->(pPort=0x000055AA00000D90))") +
         LogLine(6,
                 "GC_ERR_SUCCESS=GCReadPort(hPort=0x000055AA00000D90, iAddress=0xf0000000, "
                 "0x00007F000000F058->(Buffer=" +
                     std::string(40, 'A') + "," + bytes + "), 0x00007F000000F060->(iSize=40)") +
         LogLine(7,
                 "GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x000055AA00000DE0, "
                 "0x00007F000000F068->(pID=default), "
                 "0x00007F000000F070->(hDS=0x000055AA00000D50))") +
         LogLine(8,
                 "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x000055AA00000D50, "
                 "pBuffer=0x000055AA00001000, iSize=64, pPrivate=0x0000000000000000, "
                 "0x00007F000000F078->(hBuffer=0x000055AA00000B01))") +
         LogLine(9,
                 "GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x000055AA00000D50, "
                 "iEvent=EVENT_NEW_BUFFER, 0x00007F000000F080->(hE=0x00007F0000000E10))") +
         LogLine(10,
                 "GC_ERR_SUCCESS=DSStartAcquisition(hDS=0x000055AA00000D50, "
                 "Flags=ACQ_START_FLAGS_DEFAULT, iNumFramesToAcquire=4294967295)") +
         queue(12, "000055AA00000B01") + poll(30, "0x01") + queue(33, "000055AA00000B01") +
         poll(60, "0x01") + queue(61, "000055AA00000B01") + poll(100, "0x01") +
         queue(105, "000055AA00000B01") +
         LogLine(210,
                 "GC_ERR_SUCCESS=DSStopAcquisition(hDS=0x000055AA00000D50, "
                 "Flags=ACQ_STOP_FLAGS_DEFAULT)") +
         LogLine(210, "GC_ERR_SUCCESS=EventKill(hEvent=0x00007F0000000E10)") +
         LogLine(211,
                 "GC_ERR_ABORT=EventGetData(hEvent=0x00007F0000000E10, "
                 "0x00007F000000F000->(Buffer=), 0x00007F000000F008->(iSize=0), "
                 "iTimeout=4294967295)",
                 "INFO", "8") +
         LogLine(211,
                 "GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x000055AA00000D50, "
                 "iEvent=EVENT_NEW_BUFFER)") +
         LogLine(211,
                 "GC_ERR_SUCCESS=DSFlushQueue(hDS=0x000055AA00000D50, "
                 "QueueType=ACQ_QUEUE_ALL_DISCARD)") +
         LogLine(211,
                 "GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x000055AA00000D50, "
                 "hBuffer=0x000055AA00000B01, pBuffer=NULL, pPrivate=NULL)") +
         LogLine(212, "GC_ERR_SUCCESS=DSClose(hDS=0x000055AA00000D50)") +
         LogLine(212, "GC_ERR_SUCCESS=DevClose(hDev=0x000055AA00000DE0)") +
         LogLine(212, "GC_ERR_SUCCESS=IFClose(hInterface=0x000055AA00000A20)") +
         LogLine(212, "GC_ERR_SUCCESS=TLClose(hTL=0x000055AA00000A10)");
}

TEST(ReportJson, TellsTheFiguresOfAViewersSession) {
  const json report = AsJson(ViewerSession());
  // 32 records; each of the three deliveries has a line more, the description two.
  EXPECT_EQ(report["log"]["lines"], 37);
  EXPECT_EQ(report["log"]["calls"], 31);
  EXPECT_EQ(report["log"]["reports"], 0);
  EXPECT_EQ(report["log"]["unreadable"], 0);
  EXPECT_EQ(report["results"], (json{{"GC_ERR_SUCCESS", 30}, {"GC_ERR_ABORT", 1}}));
  const json stream = Named(report["streams"], "DS1");
  EXPECT_EQ(stream["frames"], 3);
  EXPECT_EQ(stream["timeouts"], 0);
  EXPECT_EQ(stream["incomplete"], nullptr);
  EXPECT_EQ(stream["missingFrameIds"], nullptr);
  // 30 and 40 ms; held for 3, 1 and 5 ms.
  EXPECT_EQ(stream["intervalMs"],
            (json{{"mean", 35}, {"p50", 30}, {"p95", 40}, {"p99", 40}, {"max", 40}}));
  EXPECT_EQ(stream["holdMs"], (json{{"mean", 3}, {"p50", 3}, {"p95", 5}, {"p99", 5}, {"max", 5}}));
  // Of the 200 ms from 10 to 210, none was queued for 2 + 3 + 1 + 5.
  EXPECT_EQ(stream["queueDepth"]["min"], 0);
  EXPECT_EQ(stream["queueDepth"]["msAtZero"], 11);
  EXPECT_NEAR(stream["queueDepth"]["mean"].get<double>(), 189.0 / 200, 1e-9);
  // The values that came back are other handles.
  EXPECT_EQ(Named(report["handles"], "TL2")["value"], "0x000055AA00000A10");
  EXPECT_EQ(Named(report["handles"], "IF2")["parent"], "TL2");
  EXPECT_EQ(Named(report["handles"], "DEV1")["value"], "0x000055AA00000DE0");
  EXPECT_EQ(Named(report["handles"], "DEV1")["parent"], "IF2");
  EXPECT_EQ(Named(report["handles"], "PORT1")["closedWith"], "DEV1");
  EXPECT_EQ(report["handles"].size(), 9U);
}

// Stands in a golden log for a value that differs from run to run.
std::string ValueOf(std::string name, std::vector<std::string>& names) {
  const bool isLowHalf = name.starts_with("LOW HALF OF ");
  if (isLowHalf) {
    name.erase(0, std::string_view("LOW HALF OF ").size());
  }
  const std::string_view eventData = "EVENT DATA OF ";
  const bool isEventData = name.starts_with(eventData);
  if (isEventData) {
    name = name.substr(eventData.size(), name.find(" AND") - eventData.size());
  }
  auto known = std::find(names.begin(), names.end(), name);
  if (known == names.end()) {
    names.push_back(name);
    known = names.end() - 1;
  }
  const auto number = static_cast<unsigned>(known - names.begin()) + 1;
  char text[32];
  if (isEventData) {
    std::snprintf(text, sizeof text, "0x%02x,0x", number);
    return text + std::string(
                      "10,0x00,0x00,0x01,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
                      "0x00,0x00");
  }
  std::snprintf(text, sizeof text, isLowHalf ? "10%02x" : "00000001000010%02X", number);
  return text;
}

// A golden log without its comments, each value in the place of its name, a line each millisecond.
std::string GoldenLog(const std::string& name) {
  std::ifstream golden(VEXTREL_GOLDEN_FOLDER "/" + name, std::ios::binary);
  EXPECT_TRUE(golden.is_open());
  std::string text;
  std::string line;
  std::vector<std::string> names;
  for (int time = 0; std::getline(golden, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    for (const auto& [what, value] :
         {std::pair<std::string, std::string>{"<XML>", "x,0x78"}, {"<XML SIZE>", "1"}}) {
      if (const std::size_t at = line.find(what); at != std::string::npos) {
        line.replace(at, what.size(), value);
      }
    }
    for (std::size_t at = line.find('<'); at != std::string::npos; at = line.find('<')) {
      const std::size_t end = line.find('>', at);
      line.replace(at, end + 1 - at, ValueOf(line.substr(at + 1, end - at - 1), names));
    }
    const std::size_t blank = line.find(' ');
    text += LogLine(time++, line.substr(blank + 1), line.substr(0, blank));
  }
  return text;
}

// The figures are counted in the golden logs by hand.
TEST(ReportJson, TellsTheFiguresOfTheDemosMisuse) {
  const json report = AsJson(GoldenLog("misuse.log"));
  EXPECT_EQ(report["log"]["lines"], 156);
  EXPECT_EQ(report["log"]["calls"], 146);
  EXPECT_EQ(report["log"]["reports"], 8);
  EXPECT_EQ(report["log"]["unreadable"], 0);
  EXPECT_EQ(
      report["results"],
      (json{{"GC_ERR_SUCCESS", 144}, {"GC_ERR_ACCESS_DENIED", 1}, {"GC_ERR_INVALID_HANDLE", 1}}));
  EXPECT_EQ(Named(report["functions"], "DSQueueBuffer")["calls"], 7);
  EXPECT_EQ(Named(report["functions"], "GCGetLastError")["calls"], 2);
  const json stream = Named(report["streams"], "DS1");
  EXPECT_EQ(stream["frames"], 3);
  EXPECT_EQ(stream["timeouts"], 0);
  EXPECT_EQ(stream["incomplete"], 0);
  EXPECT_EQ(stream["missingFrameIds"], 0);
  // Left when their parents were closed: the fourth buffer, the stream's event.
  EXPECT_EQ(Named(report["handles"], "BUF4")["closedAt"], nullptr);
  EXPECT_EQ(Named(report["handles"], "EV1")["closedAt"], nullptr);
  EXPECT_EQ(Named(report["handles"], "EV1")["closedWith"], "DS1");
  EXPECT_NE(Named(report["handles"], "DEV1")["closedAt"], nullptr);
  EXPECT_EQ(Named(report["handles"], "DEV2")["closedAt"], nullptr);
  EXPECT_EQ(Named(report["handles"], "DEV1")["id"], "SimCam2");
}

TEST(ReportJson, TellsTheFiguresOfTheDemosGrabbing) {
  const json report = AsJson(GoldenLog("grab.log"));
  EXPECT_EQ(report["log"]["lines"], 213);
  EXPECT_EQ(report["log"]["calls"], 211);
  EXPECT_EQ(report["results"], (json{{"GC_ERR_SUCCESS", 210}, {"GC_ERR_ACCESS_DENIED", 1}}));
  EXPECT_EQ(Named(report["functions"], "DSGetBufferInfo")["calls"], 80);
  EXPECT_EQ(report["handles"].size(), 10U);
  EXPECT_EQ(report["log"]["reports"], 0);
  EXPECT_EQ(report["log"]["unreadable"], 0);
  const json stream = Named(report["streams"], "DS1");
  EXPECT_EQ(stream["frames"], 10);
  EXPECT_EQ(stream["incomplete"], 0);
  EXPECT_EQ(stream["missingFrameIds"], 0);
  // Each frame is ten lines: the event, eight questions and the queueing.
  EXPECT_EQ(stream["intervalMs"]["p50"], 10);
  EXPECT_EQ(stream["holdMs"]["max"], 9);
  // From the start, 103 ms: three buffers queued for 9 ms of each frame, four for the rest.
  EXPECT_EQ(stream["queueDepth"]["min"], 3);
  EXPECT_NEAR(stream["queueDepth"]["mean"].get<double>(), 322.0 / 103, 1e-9);
}

// The strict consumer, with parts and chunks, through the extended module.
TEST(ReportJson, TellsTheFiguresOfTheDemosStrictConsumer) {
  const json report = AsJson(GoldenLog("grab_gentl_1_5.log"));
  EXPECT_EQ(report["log"]["lines"], 166);
  EXPECT_EQ(report["log"]["calls"], 164);
  EXPECT_EQ(report["log"]["reports"], 0);
  EXPECT_EQ(report["log"]["unreadable"], 0);
  EXPECT_EQ(report["log"]["otherLines"], 0);
  EXPECT_EQ(report["results"], (json{{"GC_ERR_SUCCESS", 163}, {"GC_ERR_ACCESS_DENIED", 1}}));
  EXPECT_EQ(Named(report["functions"], "DSGetBufferPartInfo")["calls"], 24);
  EXPECT_EQ(Named(report["functions"], "DSGetBufferChunkData")["calls"], 4);
  EXPECT_EQ(Named(report["functions"], "IFGetParentTL")["calls"], 1);
  // TL1, IF1, DEV1, PORT1, DS1, EV1, BUF1 to BUF4: the questions for parents open none.
  EXPECT_EQ(report["handles"].size(), 10U);
  const json stream = Named(report["streams"], "DS1");
  EXPECT_EQ(stream["frames"], 2);
  EXPECT_EQ(stream["missingFrameIds"], 0);
  // A frame is 25 lines; its buffer is held for 24 of them. From the start, 53 ms: four buffers
  // queued for 5 of them, three for 48.
  EXPECT_EQ(stream["intervalMs"]["mean"], 25);
  EXPECT_EQ(stream["holdMs"]["mean"], 24);
  EXPECT_EQ(stream["queueDepth"]["min"], 3);
  EXPECT_NEAR(stream["queueDepth"]["mean"].get<double>(), 164.0 / 53, 1e-9);
  EXPECT_EQ(stream["queueDepth"]["msAtZero"], 0);
}

}  // namespace
}  // namespace vextrel_test
