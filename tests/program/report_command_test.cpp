// SPDX-License-Identifier: MIT
#include "commands/report_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;

ProgramResult Report(const std::string& text, std::vector<std::string> options = {}) {
  const ScratchFile log(text);
  options.insert(options.begin(), "report");
  options.push_back(log.Path());
  return RunVextrel(options);
}

TEST(Report, FitsOnOneScreen) {
  const std::string shown = Report(SmallSession()).output;
  EXPECT_LE(std::count(shown.begin(), shown.end(), '\n'), 40);
  EXPECT_THAT(shown, HasSubstr("32 calls on 36 lines"));
  EXPECT_THAT(shown, HasSubstr("resolution 1 ms"));
  EXPECT_THAT(shown, HasSubstr("producer '/opt/camera.cti', version 1.2.3.4"));
  EXPECT_THAT(shown, HasSubstr("IFOpenDevice             1 x GC_ERR_ACCESS_DENIED, first at line 6 "
                               "by T1\n      \"somebody else uses Cam1\"\n"));
  EXPECT_THAT(
      shown,
      HasSubstr("DS1 \"Stream0\" of DEV1: frames: 3, waits that timed out: 1; incomplete: 1; "
                "missing frame ids: 1, first at line 22\n"));
  EXPECT_THAT(shown, HasSubstr("max 600.000 ms at line 26"));
}

TEST(Report, KnowsNothingBelowTheResolution) {
  std::string log =
      LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
      LogLine(0,
              "GC_ERR_SUCCESS=DSStartAcquisition(hDS=0x0000000000000D50, "
              "Flags=ACQ_START_FLAGS_DEFAULT, iNumFramesToAcquire=1)") +
      LogLine(0,
              "GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000000D50, "
              "iEvent=EVENT_NEW_BUFFER, 0x000000000000F070->(hE=0x0000000000000E10))");
  // Held for 0, 0 and 3 ms.
  for (const int time : {100, 110, 120}) {
    log += LogLine(time,
                   "GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, "
                   "0x000000000000F000->(Buffer=0x01,0x0b,0x00,0x00,0x00,0x00,0x00,0x00), "
                   "0x000000000000F008->(iSize=8), iTimeout=500)");
    log += LogLine(time == 120 ? time + 3 : time,
                   "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000D50, hB=0x0000000000000B01)");
  }
  const std::string shown = Report(log).output;
  EXPECT_THAT(shown, HasSubstr("hold        mean 1.000, p50 < 1, p95 3.000, p99 3.000, max 3.000 "
                               "ms\n"));
  EXPECT_THAT(shown, HasSubstr("interval    mean 10.000, p50 10.000,"));
}

TEST(Report, ShowsWhatTimingLinesTell) {
  const std::string shown = Report(TimedCalls(), {"--slowest"}).output;
  EXPECT_THAT(shown, HasSubstr("resolution 1 us\n"));
  EXPECT_THAT(shown, HasSubstr("never returned: 1\n  GCReadPort(TL1), entered at line 4 by T2, "
                               "2026-11-21 12:00:00.002\n"));
  EXPECT_THAT(shown, HasSubstr("    1.204 ms  TLOpen(0x000000000000F000), entered at line 1\n"));
}

TEST(Report, ShowsHandlesThatWereNeverClosedAsATree) {
  const std::string shown =
      Report(LogLine(0, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
             LogLine(0,
                     "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
                     "0x000000000000F028->(sInterfaceName=If0), "
                     "0x000000000000F030->(hInterface=0000000000000A20))"))
          .output;
  EXPECT_THAT(shown, HasSubstr("Never closed: 2\n  TL1, opened at line 1\n"
                               "    IF1 \"If0\", opened at line 2\n"));
}

TEST(Report, ComparesTwoLogs) {
  const ScratchFile log(SmallSession());
  const std::string other = log.Beside(SmallSession() + SmallSession(), "other.log");
  const ProgramResult result = RunVextrel({"report", "--compare", other, log.Path()});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_THAT(result.output,
              HasSubstr("  calls                                 32            64      2.00\n"));
  EXPECT_THAT(result.output,
              HasSubstr("  interval mean ms                 350.000       350.000      1.00\n"));
}

TEST(Report, HasDetailsOnRequest) {
  const std::string shown =
      Report(SmallSession(), {"--functions", "--handles", "--histogram", "--slowest"}).output;
  EXPECT_THAT(shown, HasSubstr("TLOpenInterface\n"));
  EXPECT_THAT(shown, HasSubstr("DEV1 \"Cam2\": 0x1000C0DE0, opened at line 8, closed at line 33"));
  // 100 ms lies between 64 and 128, 600 ms between 512 and 1024.
  EXPECT_THAT(shown, HasSubstr("   from 64 ms          1 "));
  EXPECT_THAT(shown, HasSubstr("  from 512 ms          1 "));
  EXPECT_THAT(shown, HasSubstr("494.000 ms  EventGetData at line 25\n"));
}

}  // namespace
}  // namespace vextrel_test
