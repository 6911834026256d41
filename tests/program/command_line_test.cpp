// SPDX-License-Identifier: MIT
#include "commands/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;

TEST(CommandLine, HasExamplesForEveryCommand) {
  const ProgramResult help = RunVextrel({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const std::string command : {"show", "report", "diff", "export"}) {
    EXPECT_THAT(help.output, HasSubstr("  " + command));
    const ProgramResult own = RunVextrel({command, "--help"});
    EXPECT_EQ(own.status, 0);
    EXPECT_THAT(own.output, HasSubstr("Examples:\n  vextrel " + command));
  }
}

TEST(CommandLine, TellsItsVersion) {
  EXPECT_THAT(RunVextrel({"--version"}).output, testing::StartsWith("vextrel "));
}

TEST(CommandLine, RefusesInOneSentence) {
  const ScratchFile log(SmallSession());
  const ScratchFile empty("");
  const std::string folder = log.Path().substr(0, log.Path().rfind('/'));
  const std::string binary = log.Beside(std::string(3000, '\0'), "binary.log");
  const std::string foreign = log.Beside("Nov 22 00:00:01 host kernel: hello\n", "foreign.log");
  const std::string properties = log.Beside("rootCategory=INFO, file\n", "log.properties");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{},
        {"shw"},
        {"show"},
        {"show", "--nonsense", log.Path()},
        {"show", empty.Path()},
        {"report", empty.Path()},
        {"report", log.Path() + ".none"},
        {"report", folder},
        {"show", binary},
        {"export", "--to", "csv", foreign},
        {"export", "--to", "chrome", properties},
        {"diff", log.Path(), foreign},
        {"diff", empty.Path(), log.Path()},
        {"show", "--pattern", "%d", log.Path()},
        {"show", "--config", log.Path(), log.Path()},
        {"report", "--pattern", "%r|%m%n", log.Path()}}) {
    const ProgramResult result = RunVextrel(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, testing::StartsWith("vextrel: "));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
}

TEST(CommandLine, SaysWhatItDoesntKnow) {
  EXPECT_EQ(RunVextrel({"chek", "x.log"}).errors,
            "vextrel: there's no command 'chek': see 'vextrel --help'\n");
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"trace", "grab"},
                                                    {"trace", "--timing", "grab", "--frames", "10"},
                                                    {"trace", "grab", "--", "more"}}) {
    const ProgramResult result = RunVextrel(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors,
              "vextrel: trace doesn't know 'grab': put the application and its arguments after "
              "'--', as in 'vextrel trace -- grab'\n");
  }
  EXPECT_THAT(RunVextrel({"trace", "--chek", "--", "grab"}).errors, testing::HasSubstr("--chek"));
}

TEST(CommandLine, NamesTheSizesOfARollingLog) {
  EXPECT_THAT(RunVextrel({"trace", "--help"}).output, testing::HasSubstr("from 64K to 2047M"));
}

TEST(CommandLine, TakesALayoutFromAPatternOrAConfiguration) {
  const ScratchFile log("12|GC_ERR_SUCCESS=GCInitLib(void)|\n");
  const std::string config = log.Beside(
      "appender.a.layout=PatternLayout\n"
      "appender.a.layout.ConversionPattern=%r|%m|%n\n",
      "log.properties");
  const std::string expected = "       1 0.012 s   +0.000 GCInitLib()\n";
  EXPECT_EQ(RunVextrel({"show", "--pattern", "%r|%m|%n", log.Path()}).output, expected);
  EXPECT_EQ(RunVextrel({"show", "--config", config, log.Path()}).output, expected);
}

}  // namespace
}  // namespace vextrel_test
