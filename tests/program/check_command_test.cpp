// SPDX-License-Identifier: MIT
#include "commands/check_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

// A library that is closed twice, used in between, and a transport layer that is left open: an
// error at line 5, counted twice, and a warning at line 6.
std::string BadSession() {
  return LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
         LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
         LogLine(2, "GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000A10)") +
         LogLine(3, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A20))") +
         LogLine(4, "GC_ERR_INVALID_HANDLE=TLClose(hTL=0x0000000000000A10)") +
         LogLine(5, "GC_ERR_INVALID_HANDLE=TLClose(hTL=0x0000000000000A10)") +
         LogLine(6, "GC_ERR_SUCCESS=GCCloseLib(void)");
}

ProgramResult Check(const std::string& text, std::vector<std::string> options = {}) {
  const ScratchFile log(text);
  options.insert(options.begin(), "check");
  options.push_back(log.Path());
  return RunVextrel(options);
}

TEST(Check, SaysWhatIsWrongWhereAndWhy) {
  const ProgramResult result = Check(BadSession());
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(
      result.output,
      HasSubstr("app.log:5: error HND-AFTER: TLClose uses TL1, but it was closed already.\n"
                "    at 2026-11-21 12:00:00.004 by T1, 2 times, the last time at line 6\n"));
  EXPECT_THAT(result.output, HasSubstr("app.log:3: TL1 is closed\n"));
  EXPECT_THAT(result.output, HasSubstr("    fix: Forget a handle when it"));
  EXPECT_THAT(result.output, HasSubstr("(GenTL 6.1.3)\n"));
  EXPECT_THAT(result.output,
              HasSubstr("app.log:7: warning MOD-LEAK: TL2 is still open when the library is"));
  EXPECT_THAT(result.output, HasSubstr("\n1 error, 1 warning, 0 infos\n"));
}

TEST(Check, NamesTheFileOfTheLastTime) {
  const std::string whole = BadSession();
  const std::size_t second = whole.find("2026-11-21 12:00:00.005");
  const ScratchFile log(whole.substr(0, second));
  const std::string next = log.Beside(whole.substr(second), "next.log");
  const ProgramResult result = RunVextrel({"check", log.Path(), next});
  EXPECT_THAT(result.output, HasSubstr("app.log:5: error HND-AFTER"));
  EXPECT_THAT(result.output, HasSubstr(", 2 times, the last time at " + next + ":1\n"));
}

TEST(Check, SaysNothingOfWhatIsOpenWhenALogIsCut) {
  const std::string whole =
      LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
      LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))");
  const ProgramResult cut = Check(whole + "2026-11-21 12:00:00.002 [7] INFO  GC_ERR_SUCC");
  EXPECT_THAT(cut.output, Not(HasSubstr("warning MOD-LEAK")));
  EXPECT_THAT(cut.output, HasSubstr("not judged: MOD-LEAK: the log ends in the middle of a line"));
  const ProgramResult busy =
      Check(whole + LogLine(2, "Call 9 enters TLClose(0x0000000000000A10)", "DEBUG"));
  EXPECT_THAT(busy.output, HasSubstr("not judged: MOD-LEAK: the session ends while a call is in "
                                     "the producer"));
}

TEST(Check, HasJsonOfSchema1) {
  const ScratchFile log(BadSession());
  const ProgramResult result = RunVextrel({"check", "--json", log.Path()});
  EXPECT_EQ(result.status, 1);
  const json report = json::parse(result.output);
  EXPECT_EQ(report["schema"], 1);
  EXPECT_EQ(report["errors"], 1);
  EXPECT_EQ(report["warnings"], 1);
  EXPECT_EQ(report["infos"], 0);
  const json noTiming = {
      {"rules", "EVT-CLOSE-WAIT, T-SLOW, T-SERIAL, END-INFLIGHT"},
      {"why", "the log has no timing lines, which 'vextrel trace --timing' writes"}};
  EXPECT_EQ(report["notJudged"], json::array({noTiming}));
  ASSERT_EQ(report["findings"].size(), 2U);
  const json expected = {{"rule", "HND-AFTER"},
                         {"severity", "error"},
                         {"message", "TLClose uses TL1, but it was closed already."},
                         {"file", log.Path()},
                         {"line", 5},
                         {"time", "2026-11-21 12:00:00.004"},
                         {"thread", "7"},
                         {"handles", {"TL1"}},
                         {"count", 2},
                         {"related",
                          {{{"file", log.Path()}, {"line", 3}, {"what", "TL1 is closed"}},
                           {{"file", log.Path()}, {"line", 2}, {"what", "TL1 is opened"}}}}};
  EXPECT_EQ(report["findings"][0], expected) << result.output;
  const json whole = json::parse(RunVextrel({"report", "--json", log.Path()}).output);
  EXPECT_EQ(whole["findings"], report["findings"]);
}

TEST(Check, HasAnExitStatusForScripts) {
  const std::string warning = LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)");
  const std::string good = warning + LogLine(1, "GC_ERR_SUCCESS=GCCloseLib(void)");
  EXPECT_EQ(Check(good, {"--fail-on", "info"}).status, 0);
  EXPECT_EQ(Check(warning).status, 0);
  EXPECT_EQ(Check(warning, {"--fail-on", "warning"}).status, 1);
  EXPECT_EQ(Check(BadSession(), {"--ignore", "HND-AFTER"}).status, 0);
  EXPECT_EQ(Check(BadSession(), {"--only", "LIB,MOD-LEAK"}).status, 0);
  EXPECT_EQ(Check(BadSession(), {"--only", "HND"}).status, 1);
  EXPECT_EQ(Check("no log\n").status, 2);
  EXPECT_EQ(Check(good, {"--only", "HND-NEVER"}).status, 2);
  EXPECT_EQ(Check(good, {"--fail-on", "nothing"}).status, 2);
  EXPECT_EQ(RunVextrel({"check", "no such file.log"}).status, 2);
  EXPECT_THAT(Check(BadSession(), {"--only", "MOD"}).output, Not(HasSubstr("HND-AFTER")));
}

TEST(Check, WritesJUnit) {
  const ScratchFile log(BadSession());
  const std::string path = log.Beside("", "check.xml");
  EXPECT_EQ(
      RunVextrel({"check", "--only", "HND-AFTER,MOD-LEAK,LIB-INIT", "--junit", path, log.Path()})
          .status,
      1);
  std::ifstream file{std::filesystem::path(path), std::ios::binary};
  const std::string xml{std::istreambuf_iterator<char>(file), {}};
  EXPECT_THAT(xml, HasSubstr("tests=\"3\" failures=\"1\">\n"));
  EXPECT_THAT(xml, HasSubstr("<testcase classname=\"vextrel\" name=\"LIB-INIT\"/>\n"));
  EXPECT_THAT(xml, HasSubstr("name=\"HND-AFTER\">\n    <failure message=\"A handle was used"));
  EXPECT_THAT(xml, HasSubstr("name=\"MOD-LEAK\">\n    <system-out>"));
}

TEST(Check, SaysWhatItCannotKnow) {
  const ProgramResult late = Check(LogLine(0, "GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000A10)"));
  EXPECT_EQ(late.status, 0);
  EXPECT_THAT(late.output, HasSubstr("not judged: what was opened, listed or queued before: the "
                                     "log doesn't begin with GCInitLib"));
  // Two processes: the first one's transport layer is used when the second one has begun.
  const ProgramResult mixed =
      Check(LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
            LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
            LogLine(2, "GC_ERR_SUCCESS=GCInitLib(void)", "INFO", "9") +
            LogLine(3, "GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000A10)") +
            LogLine(4, "GC_ERR_INVALID_HANDLE=TLClose(hTL=0x0000000000000A10)", "INFO", "9"));
  EXPECT_EQ(mixed.status, 0) << mixed.output;
  EXPECT_THAT(mixed.output, HasSubstr("not judged: all rules that follow handles from call to "
                                      "call: several processes wrote this log"));
}

TEST(Check, SaysWhichRulesLackWhatTheyNeed) {
  const std::string initialized = "GC_ERR_SUCCESS=GCInitLib(void)";
  const std::string closed = "GC_ERR_SUCCESS=GCCloseLib(void)";
  EXPECT_EQ(
      Check(LogLine(0, "Call 1 enters GCInitLib()", "DEBUG") + LogLine(0, initialized) +
            LogLine(0, "Call 1 leaves GCInitLib after 1.000 us", "DEBUG") + LogLine(1, closed))
          .output,
      "0 errors, 0 warnings, 0 infos\n");
  EXPECT_EQ(Check(initialized + "\n" + closed + "\n", {"--pattern", "%m%n"}).output,
            "not judged: EVT-CLOSE-WAIT, T-SLOW, T-SERIAL, END-INFLIGHT: the log has no timing "
            "lines, which 'vextrel trace --timing' writes\n"
            "not judged: BUF-STARVE, ACQ-RACE, EVT-POLL, EVT-STORM, EVT-SHORT, PORT-POLL, "
            "T-STALL, T-HOLD, T-LAG, T-SERIAL, LOG-TIME: the log's layout shows no time\n"
            "not judged: LIST-RACE, T-SERIAL, ERR-STALE: the log's layout shows no thread ids\n"
            "0 errors, 0 warnings, 0 infos\n");
  // Of rules that nobody asked for, nothing is said.
  EXPECT_EQ(Check(LogLine(0, initialized) + LogLine(1, closed), {"--only", "HND"}).output,
            "0 errors, 0 warnings, 0 infos\n");
  EXPECT_THAT(
      Check(LogLine(0, "Transport Layer was not closed down properly using TLClose()", "ERROR"))
          .output,
      HasSubstr("not judged: all rules that look at calls: no call returned in this log; "));
}

TEST(Check, TakesTextOfTheLogAsText) {
  const ProgramResult result =
      Check(LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
            LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
            LogLine(2,
                    "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
                    "0x000000000000F028->(sInterfaceName=\x1b[31m<b>), "
                    "0x000000000000F030->(hInterface=0000000000000A20))"));
  EXPECT_THAT(result.output, HasSubstr("\\x1b[31m<b>"));
  EXPECT_THAT(result.output, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace vextrel_test
