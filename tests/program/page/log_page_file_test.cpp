// SPDX-License-Identifier: MIT
#include "commands/log_page_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "images/file_bytes.h"
#include "launching/system.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;
using vextrel::program::PathOf;
using vextrel::program::ReadBytes;

bool IsOneSentence(const std::string& errors) {
  return errors.starts_with("vextrel: ") && std::count(errors.begin(), errors.end(), '\n') == 1;
}

TEST(LogPageFile, IsWrittenInsteadOfTheReport) {
  const ScratchFile log(SmallSession());
  const std::string page = log.Beside("", "page \xC3\xBC.html");
  const ProgramResult result = RunVextrel({"report", "--html", page, log.Path()});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "vextrel: wrote '" + page + "' (0.2 MB)\n");
  EXPECT_THAT(ReadBytes(PathOf(page)).value_or(""), StartsWith("<!DOCTYPE html>\n"));
}

TEST(LogPageFile, ThatCantBeWrittenIsOneSentence) {
  const ScratchFile log(SmallSession());
  const std::string page = log.Path() + "/page.html";
  const ProgramResult result = RunVextrel({"report", "--html", page, log.Path()});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(IsOneSentence(result.errors)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("page.html' can't be written"));
}

TEST(LogPageFile, IsNeverTheLog) {
  const ScratchFile log(SmallSession());
  const ProgramResult result = RunVextrel({"report", "--html", log.Path(), log.Path()});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(IsOneSentence(result.errors)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("is the log itself"));
  EXPECT_EQ(ReadBytes(PathOf(log.Path())), SmallSession());
}

TEST(LogPageFile, NeedsALogThatCanBeReadTwice) {
  const ScratchFile log("");
  const std::string page = log.Beside("", "page.html");
  const ProgramResult result = RunVextrel({"report", "--html", page, "-"});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(IsOneSentence(result.errors)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("standard input can be read only once"));
}

TEST(LogPageFile, IsNeitherJsonNorAComparison) {
  const ScratchFile log(SmallSession());
  const std::string page = log.Beside("", "page.html");
  for (const std::vector<std::string>& other :
       {std::vector<std::string>{"--json"}, {"--compare", log.Path()}}) {
    std::vector<std::string> arguments = {"report", "--html", page, log.Path()};
    arguments.insert(arguments.end(), other.begin(), other.end());
    const ProgramResult result = RunVextrel(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(IsOneSentence(result.errors)) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr(other.front() + " excludes --html"));
  }
  EXPECT_EQ(ReadBytes(PathOf(page)), "");
}

TEST(LogPageFile, HasTheLinesOfRolledFiles) {
  const std::string session = SmallSession();
  const std::size_t half = session.find("2026-11-21 12:00:00.210");
  const ScratchFile log(session.substr(half));
  static_cast<void>(log.Beside(session.substr(0, half), "app.log.1"));
  const std::string page = log.Beside("", "page.html");
  EXPECT_EQ(RunVextrel({"report", "--html", page, log.Path()}).status, 0);
  // The gap of frame ids is on line 22 of the whole, the second of the newer file.
  EXPECT_THAT(ReadBytes(PathOf(page)).value_or(""), HasSubstr(R"("rule":"T-GAP")"));
  EXPECT_THAT(ReadBytes(PathOf(page)).value_or(""), HasSubstr(R"("at":[1,2])"));
}

}  // namespace
}  // namespace vextrel_test
