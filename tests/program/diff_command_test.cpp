// SPDX-License-Identifier: MIT
#include "commands/diff_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;

ProgramResult Diff(const std::string& good, const std::string& bad,
                   std::vector<std::string> options = {}) {
  const ScratchFile log(good);
  const std::string other = log.Beside(bad, "bad.log");
  options.insert(options.begin(), "diff");
  options.insert(options.end(), {log.Path(), other});
  return RunVextrel(options);
}

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

// Takes the record out that holds `what`.
std::string Without(std::string text, std::string_view what) {
  const std::size_t at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  const std::size_t begin = text.rfind('\n', at) + 1;
  text.erase(begin, text.find('\n', at) + 1 - begin);
  return text;
}

TEST(Diff, FindsRunsEqualThatDifferInAddressesTimesAndThreads) {
  std::string other = Replaced(SmallSession(), "0x000000000000F", "0x00007FFF0000F");
  other = Replaced(other, "0000000000000D50", "00000000ABCDEF50");
  other = Replaced(other, "0000000000000B01", "0000000000007B01");
  other = Replaced(other, "=0x01,0x0b", "=0x01,0x7b");
  other = Replaced(other, "2026-11-21 12:", "2027-01-31 03:");
  other = Replaced(other, "[7]", "[140566109555904]");
  const ProgramResult result = Diff(SmallSession(), other);
  EXPECT_EQ(result.output, "The runs are equal: 34 calls and reports.\n");
  EXPECT_EQ(result.status, 0);
}

TEST(Diff, ComparesLogsOfDifferentPlatforms) {
  EXPECT_EQ(Diff(SmallSession(), Replaced(SmallSession(), "\n", "\r\n")).status, 0);
}

TEST(Diff, DoesNotCountPolls) {
  std::string more = SmallSession();
  const std::size_t begin = more.find("2026-11-21 12:00:00.710");
  const std::string poll = more.substr(begin, more.find('\n', begin) + 1 - begin);
  more.insert(begin, poll + poll + poll);
  EXPECT_EQ(Diff(SmallSession(), more).status, 0);
  // That somebody waited in vain at all is a difference, unless it's ignored.
  const std::string none = Without(SmallSession(), "GC_ERR_TIMEOUT");
  EXPECT_EQ(Diff(SmallSession(), none).status, 1);
  EXPECT_EQ(Diff(SmallSession(), none, {"--ignore", "timing"}).status, 0);
}

TEST(Diff, ShowsTheFirstDifferenceWithItsSurroundings) {
  const ProgramResult result = Diff(SmallSession(), Without(SmallSession(),
                                                            "DSQueueBuffer(hDS=0x0000000000000D50, "
                                                            "hB=0x0000000000000B02)"));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output,
              HasSubstr("      13  DSQueueBuffer(DS1, BUF1)\n"
                        "-       14  DSQueueBuffer(DS1, BUF2)\n"
                        "        15  DSStartAcquisition(DS1, Flags=ACQ_START_FLAGS_DEFAULT"));
  EXPECT_THAT(result.output, HasSubstr("33 calls and reports are equal, of 34 and 33"));
  EXPECT_THAT(result.output,
              HasSubstr("         1         0         0         0  DSQueueBuffer\n"));
}

TEST(Diff, TellsResultsAndValues) {
  const std::string result =
      Replaced(SmallSession(), "GC_ERR_SUCCESS=IFClose", "GC_ERR_IO=IFClose");
  EXPECT_THAT(Diff(SmallSession(), result).output, HasSubstr("another result"));
  EXPECT_EQ(Diff(SmallSession(), result, {"--ignore", "results"}).status, 0);
  const std::string value = Replaced(SmallSession(), "(Buffer=64)", "(Buffer=65)");
  EXPECT_THAT(Diff(SmallSession(), value).output, HasSubstr("another value"));
  EXPECT_EQ(Diff(SmallSession(), value, {"--ignore", "values"}).status, 0);
  const std::string report = Without(SmallSession(), "was not revoked properly");
  EXPECT_EQ(Diff(SmallSession(), report).status, 1);
  EXPECT_EQ(Diff(SmallSession(), report, {"--ignore", "reports"}).status, 0);
}

TEST(Diff, RefusesALogThatIsNone) {
  EXPECT_EQ(Diff(SmallSession(), "").status, 2);
  EXPECT_EQ(Diff(SmallSession(), "something else\n").status, 2);
  EXPECT_EQ(Diff(SmallSession(), SmallSession(), {"--ignore", "everything"}).status, 2);
}

}  // namespace
}  // namespace vextrel_test
