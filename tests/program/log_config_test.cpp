// SPDX-License-Identifier: MIT
#include "doctor/log_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launching/trace_folder.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kRoot = "rootCategory=INFO, file\n";
const std::string kAppender = "appender.file=FileAppender\nappender.file.fileName=${TEMP}/a.log\n";
const std::string kLayout = "appender.file.layout=PatternLayout\n";

Variables WithTemp() {
  Variables variables;
  variables.Set("TEMP", "/t");
  return variables;
}

TEST(LogConfig, ThatIsSoundNamesItsFile) {
  const LogConfig config =
      ReadLogConfig("# a comment\r\n" + kRoot + kAppender + kLayout, WithTemp());
  EXPECT_THAT(config.problems, IsEmpty());
  EXPECT_THAT(config.files, ElementsAre("/t/a.log"));
  EXPECT_TRUE(config.logsCalls);
  // What traces are made with is sound, too.
  Variables variables;
  variables.Set(kLogVariable, "x#y.log");
  for (const bool rolls : {false, true}) {
    const LogStyle style{.withTiming = true, .rollingSize = rolls ? 70000U : 0U};
    const LogConfig traced = ReadLogConfig(PropertyText(style), variables);
    EXPECT_THAT(traced.problems, IsEmpty());
    EXPECT_THAT(traced.files, ElementsAre("x#y.log"));
    EXPECT_TRUE(traced.logsCalls);
  }
}

TEST(LogConfig, ThatTheModuleRefusesIsToldWithItsLine) {
  struct Case {
    std::string text;
    std::size_t line;
    const char* problem;
  };
  const std::string rest = kAppender + kLayout;
  const Case cases[] = {
      {"", 0, "has no rootCategory"},
      {"rootCategry=INFO, file\n" + rest, 0, "has no rootCategory"},
      {"\xEF\xBB\xBF" + kRoot + rest, 1, "a byte order mark is in front"},
      {"\xFF\xFEr", 1, "UTF-16"},
      {kRoot + "appender.file.target=$(NOWHERE)\n" + rest, 2, "$(NOWHERE) can't be replaced"},
      {"rootCategory=LOUD, file\n" + rest, 1, "'LOUD' is no priority"},
      {"rootCategory=, file\n" + rest, 1, "rootCategory has no priority"},
      {"rootCategory=INFO, fil\n" + rest, 1, "there's no appender 'fil'"},
      {kRoot + "appender.file=FillAppender\n", 2, "log4cpp has no 'FillAppender'"},
      {kRoot + "appender.file.fileName=x\n", 2, "'appender.file=' is missing"},
      {kRoot + "appender.file=FileAppender\nappender.file.filename=x\n" + kLayout, 2,
       "goes to 'foobar'"},
      {kRoot + kAppender, 2, "'appender.file.layout' is missing"},
      {kRoot + kAppender + "appender.file.layout=NiceLayout\n", 4, "no layout 'NiceLayout'"},
      {kRoot + kAppender + kLayout + "appender.file.threshold=LOUD\n", 5, "'LOUD' is no priority"},
      {kRoot + "appender.file=ConsoleAppender\nappender.file.target=screen\n" + kLayout, 3,
       "'screen' is no target"},
      {kRoot + "appender.file=FileAppender\nappender.file.fileName=${NOWHERE}/a\n" + kLayout, 3,
       "NOWHERE isn't set"},
  };
  for (const Case& each : cases) {
    bool isTold = false;
    std::string told;
    const LogConfig config = ReadLogConfig(each.text, WithTemp());
    for (const ConfigProblem& problem : config.problems) {
      told += std::to_string(problem.line) + ": " + problem.text + "\n";
      isTold = isTold || (problem.isFatal && problem.line == each.line &&
                          problem.text.find(each.problem) != std::string::npos);
    }
    EXPECT_TRUE(isTold) << each.problem << ", but told:\n" << told;
  }
}

TEST(LogConfig, ThatLogsLessIsNoted) {
  // A mark in front of a comment does no harm.
  EXPECT_THAT(ReadLogConfig("\xEF\xBB\xBF# x\n" + kRoot + kAppender + kLayout, WithTemp()).problems,
              IsEmpty());
  const LogConfig quiet =
      ReadLogConfig("rootCategory=WARN, file\n" + kAppender + kLayout, WithTemp());
  EXPECT_FALSE(quiet.logsCalls);
  ASSERT_EQ(quiet.problems.size(), 1U);
  EXPECT_FALSE(quiet.problems[0].isFatal);
  const LogConfig mixed = ReadLogConfig(
      "rootCategory=WARN, file\ncategory.Vextrel=INFO\n" + kAppender + kLayout, WithTemp());
  EXPECT_TRUE(mixed.logsCalls);
  const LogConfig twice = ReadLogConfig(kRoot + kRoot + kAppender + kLayout, WithTemp());
  ASSERT_EQ(twice.problems.size(), 1U);
  EXPECT_THAT(twice.problems[0].text, HasSubstr("the first one counts"));
  EXPECT_EQ(twice.problems[0].line, 2U);
}

}  // namespace
}  // namespace vextrel_test
