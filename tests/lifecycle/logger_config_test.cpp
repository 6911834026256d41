// SPDX-License-Identifier: MIT
// What a configuration file may hold, and what becomes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "lifecycle/logging_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

std::string WithCrLf(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    result += letter == '\n' ? "\r\n" : std::string(1, letter);
  }
  return result;
}

class LoggerConfig : public LoggingFixture {
 protected:
  // The configuration is taken, and the log is in the file.
  void ExpectTaken(const std::string& content) {
    UseConfig(content);
    EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
    EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
  }
  // The configuration is refused for that reason, and the default channel is left at ERROR.
  void ExpectRefused(const std::string& content, const std::string& reason) {
    UseConfig(content);
    EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile()), ConfigFailed(reason)));
    EXPECT_THAT(Close(), IsEmpty());
  }
};

TEST_F(LoggerConfig, MayHaveWindowsLineEnds) {
  ExpectTaken(WithCrLf(GoodConfig()));
}

TEST_F(LoggerConfig, MayEndWithoutALineEnd) {
  ExpectTaken(FileAppender() + "rootCategory=INFO, file");
}

TEST_F(LoggerConfig, MayHaveEmptyLines) {
  ExpectTaken("\n\n" + GoodConfig() + "\n\n");
}

TEST_F(LoggerConfig, MayHaveLinesOfAnyLength) {
  ExpectTaken("# " + std::string(5000, 'x') + "\nother=" + std::string(3000, 'y') + "\n" +
              GoodConfig());
}

TEST_F(LoggerConfig, MayConfigureTheCategoryOfTheLibrary) {
  UseConfig("rootCategory=INFO\ncategory.Vextrel=ERROR, file\n" + FileAppender());
  UseTarget(ScriptedTargetWithout("EventKill"));
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(Close(), IsEmpty());
  EXPECT_THAT(LogLines(), ElementsAre("ERROR EventKill not exported"));
}

TEST_F(LoggerConfig, MaySilenceTheLibrary) {
  UseConfig("rootCategory=FATAL, file\n" + FileAppender());
  SetVariable(kProducerVariable, nullptr);
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(LoggerConfig, MayUseAnyLayoutOfLog4cpp) {
  UseConfig("rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
            LogFile().string() + "\nappender.file.layout=BasicLayout\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  const std::vector<std::string> lines = LogLines();
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(WithoutTime(lines[2]), "INFO Vextrel : GC_ERR_SUCCESS=GCInitLib(void)");
}

TEST_F(LoggerConfig, MayNameSeveralAppenders) {
  const auto second = Folder() / "second.log";
  UseConfig("rootCategory=INFO, file, second\n" + FileAppender() +
            "appender.second=RollingFileAppender\nappender.second.fileName=" + second.string() +
            "\nappender.second.layout=SimpleLayout\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
  EXPECT_EQ(SplitLines(ReadFile(second)).size(), 3);
}

// The log is lost, but nobody is told: log4cpp does not say.
TEST_F(LoggerConfig, MayNameALogFileThatCannotBeWritten) {
  UseConfig("rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
            (Folder() / "missing" / "trace.log").string() +
            "\nappender.file.layout=SimpleLayout\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(Close(), IsEmpty());
  EXPECT_THAT(Init(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(Folder() / "missing"));
}

TEST_F(LoggerConfig, GetsALineWithAReferenceAsItStands) {
  SetVariable(kFirst, "value");
  UseConfig("rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
            LogFile().string() +
            "\nappender.file.layout=PatternLayout\n"
            "appender.file.layout.ConversionPattern=$(VEXTREL_TEST_FIRST) %m%n\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  const std::vector<std::string> lines = LogLines();
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[2], "$(VEXTREL_TEST_FIRST) GC_ERR_SUCCESS=GCInitLib(void)");
}

TEST_F(LoggerConfig, OnlyHasTheFirstReferenceOfALineTested) {
  SetVariable(kFirst, "value");
  ExpectTaken("other=$(VEXTREL_TEST_FIRST)$(VEXTREL_TEST_SECOND)\n" + GoodConfig());
}

TEST_F(LoggerConfig, MayReferToAValueOf256CharactersAndMore) {
  SetVariable(kFirst, std::string(300, 'x').c_str());
  ExpectTaken("other=$(VEXTREL_TEST_FIRST)\n" + GoodConfig());
}

TEST_F(LoggerConfig, MayHoldAReferenceThatIsNotClosed) {
  ExpectTaken("other=$(VEXTREL_TEST_FIRST\n" + GoodConfig());
}

TEST_F(LoggerConfig, MayReferToAnythingInAComment) {
  ExpectTaken("# $(VEXTREL_TEST_FIRST)\n#$(VEXTREL_TEST_SECOND)\n" + GoodConfig() +
              "#rootCategory=$(VEXTREL_TEST_FIRST)");
}

TEST_F(LoggerConfig, IsRefusedForAReferenceThatCannotBeResolved) {
  ExpectRefused(GoodConfig() + "other=$(VEXTREL_TEST_FIRST)\n",
                "Environment variable 'VEXTREL_TEST_FIRST' not found");
  EXPECT_FALSE(std::filesystem::exists(LogFile())) << "log4cpp must not have seen it";
}

TEST_F(LoggerConfig, IsRefusedForAReferenceInItsLastLineWithoutALineEnd) {
  ExpectRefused(GoodConfig() + "$(VEXTREL_TEST_FIRST)",
                "Environment variable 'VEXTREL_TEST_FIRST' not found");
}

TEST_F(LoggerConfig, IsRefusedForTheFirstOfTwoUnresolvableReferences) {
  ExpectRefused("a=$(VEXTREL_TEST_SECOND)\nb=$(VEXTREL_TEST_FIRST)\n" + GoodConfig(),
                "Environment variable 'VEXTREL_TEST_SECOND' not found");
}

TEST_F(LoggerConfig, IsRefusedForAReferenceInACommentThatDoesNotBeginTheLine) {
  ExpectRefused(" # $(VEXTREL_TEST_FIRST)\n" + GoodConfig(),
                "Environment variable 'VEXTREL_TEST_FIRST' not found");
}

TEST_F(LoggerConfig, IsRefusedForAnEmptyReference) {
  ExpectRefused("a=$()\n" + GoodConfig(), "Environment variable '' not found");
}

TEST_F(LoggerConfig, MayBeginWithAUtf8MarkInFrontOfAComment) {
  ExpectTaken("\xEF\xBB\xBF# The log of Vextrel\n" + GoodConfig());
}

TEST_F(LoggerConfig, IsRefusedIfAUtf8MarkIsPartOfTheOnlyRootCategory) {
  ExpectRefused("\xEF\xBB\xBF" + GoodConfig(), "Unable to find category: rootCategory");
}

TEST_F(LoggerConfig, HasReferencesTestedInACommentBehindAUtf8Mark) {
  ExpectRefused("\xEF\xBB\xBF# $(VEXTREL_TEST_FIRST)\n" + GoodConfig(),
                "Environment variable 'VEXTREL_TEST_FIRST' not found");
}

TEST_F(LoggerConfig, IsTriedAgainAfterItWasRefused) {
  ExpectRefused("", "Unable to find category: rootCategory");
  ExpectTaken(GoodConfig());
}

// The library's own lines no longer reach what a refused configuration had set up on the root.
TEST_F(LoggerConfig, LeavesNothingOnTheRootWhenItIsRefused) {
  ExpectRefused(GoodConfig() + "category.Other=INFO, nowhere\n",
                "Appender 'nowhere' not found for category 'Other'");
  EXPECT_THAT(LogLines(), IsEmpty());
}

struct Refused {
  const char* name;
  const char* content;
  const char* reason;
};

class RefusedConfig : public LoggerConfig, public ::testing::WithParamInterface<Refused> {};

TEST_P(RefusedConfig, IsReportedWithLog4cppsReason) {
  ExpectRefused(GetParam().content, GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedConfig,
    ::testing::Values(
        Refused{"EmptyFile", "", "Unable to find category: rootCategory"},
        Refused{"BlankLines", "\n\n\n", "Unable to find category: rootCategory"},
        Refused{"OnlyAComment", "# nothing\n", "Unable to find category: rootCategory"},
        Refused{"NoProperties", "nothing\n", "Unable to find category: rootCategory"},
        Refused{"UnknownPriority", "rootCategory=LOUD\n",
                "unknown priority name: 'LOUD' for category 'rootCategory'"},
        Refused{"UnknownAppender", "rootCategory=INFO, nowhere\n",
                "Appender 'nowhere' not found for category 'rootCategory'"},
        Refused{"UnknownAppenderType", "rootCategory=INFO, a\nappender.a=CarrierPigeonAppender\n",
                "Appender 'a' has unknown type 'CarrierPigeonAppender'"},
        Refused{"MissingLayout", "rootCategory=INFO, a\nappender.a=ConsoleAppender\n",
                "Missing layout property for appender 'a'"},
        Refused{"UnknownLayout",
                "rootCategory=INFO, a\nappender.a=ConsoleAppender\nappender.a.layout=OddLayout\n",
                "Unknown layout type 'OddLayout' for appender 'a'"},
        Refused{"PropertiesWithoutTheirAppender",
                "rootCategory=INFO, a\nappender.a.layout=BasicLayout\n",
                "partial appender definition : appender.a.layout"},
        Refused{"RootPriorityNotSet", "rootCategory=NOTSET\n",
                "cannot set priority NOTSET on Root Category for category 'rootCategory'"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace vextrel_test
