// SPDX-License-Identifier: MIT
// Where the log goes: the default channel, the file that the variable names, and what is said when
// that does not work.
#include "calllog/logger_setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "lifecycle/logging_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class LoggerSetup : public LoggingFixture {
 protected:
  void ExpectNoLogFile() const { EXPECT_FALSE(std::filesystem::exists(LogFile())); }
};

TEST_F(LoggerSetup, ReportsAMissingVariableAndGoesOnAtInfoInTheDefaultChannel) {
  EXPECT_THAT(Init(),
              ElementsAreArray(DefaultLines("ERROR  : Vextrel Environment variable "
                                            "GENICAM_GENTL64_VEXTREL_LOG_CONFIG not found!")));
}

TEST_F(LoggerSetup, SendsLaterLinesToTheDefaultChannelToo) {
  static_cast<void>(Init());
  EXPECT_THAT(Close(), ElementsAre("INFO Vextrel : GC_ERR_SUCCESS=GCCloseLib(void)"));
}

TEST_F(LoggerSetup, BeginsEachDefaultLineWithTheSecondsSince1970) {
  const DebugOutput output;
  const std::time_t before = std::time(nullptr);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::time_t after = std::time(nullptr);
  const std::vector<std::string> lines = SplitLines(output.Text());
  ASSERT_EQ(lines.size(), 4);
  for (const std::string& line : lines) {
    const long long seconds = std::atoll(line.c_str());
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after);
  }
}

TEST_F(LoggerSetup, TakesAnEmptyVariableAsMissing) {
  SetVariable(kLogConfigVariable, "");
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(kConfigNotFound)));
}

TEST_F(LoggerSetup, CountsAsDoneAfterAMissingVariable) {
  static_cast<void>(Init());
  static_cast<void>(Close());
  UseConfig(GoodConfig());
  EXPECT_THAT(Init(), ElementsAre(DefaultLines("")[1], DefaultLines("")[2], DefaultLines("")[3]));
  ExpectNoLogFile();
}

TEST_F(LoggerSetup, ReportsAMissingProducerInTheDefaultChannel) {
  SetVariable(kProducerVariable, nullptr);
  EXPECT_THAT(Init(), ElementsAre(kConfigNotFound,
                                  "ERROR Vextrel : Vextrel Environment variable "
                                  "GENICAM_GENTL64_VEXTREL_PRODUCER not found!"));
}

TEST_F(LoggerSetup, ReportsAMissingFileAndGoesOnAtInfoInTheDefaultChannel) {
  SetVariable(kLogConfigVariable, ConfigFile().c_str());
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines("ERROR  : Cannot open logger parameter file '" +
                                                    ConfigFile() + "'")));
}

TEST_F(LoggerSetup, CountsAsDoneAfterAMissingFile) {
  SetVariable(kLogConfigVariable, ConfigFile().c_str());
  static_cast<void>(Init());
  static_cast<void>(Close());
  UseConfig(GoodConfig());
  EXPECT_THAT(Init(), ElementsAre(DefaultLines("")[1], DefaultLines("")[2], DefaultLines("")[3]));
  ExpectNoLogFile();
}

TEST_F(LoggerSetup, CannotOpenAFolder) {
  SetVariable(kLogConfigVariable, Folder().string().c_str());
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(Folder().string()))));
}

TEST_F(LoggerSetup, ShowsPercentSignsOfAPathAsTheyAre) {
  const std::string missing = (Folder() / "100%s%n%p.properties").string();
  SetVariable(kLogConfigVariable, missing.c_str());
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(missing))));
}

TEST_F(LoggerSetup, SaysWhichFileItLoadsAndLeavesTheDefaultChannel) {
  UseConfig(GoodConfig());
  EXPECT_THAT(Init(), ElementsAre("INFO  : Loading logger parameter file '" + ConfigFile() + "'"));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
  EXPECT_THAT(Close(), IsEmpty());
}

TEST_F(LoggerSetup, ExpandsAReferenceInThePath) {
  UseConfig(GoodConfig());
  SetVariable(kFirst, Folder().string().c_str());
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)/log.properties");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(Folder().string() + "/log.properties")));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
}

TEST_F(LoggerSetup, OnlyTestsASecondReferenceInThePath) {
  SetVariable(kFirst, Folder().string().c_str());
  SetVariable(kSecond, "log");
  UseConfig(GoodConfig());
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)/$(VEXTREL_TEST_SECOND).properties");
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(
                          Folder().string() + "/$(VEXTREL_TEST_SECOND).properties"))));
}

TEST_F(LoggerSetup, OpensThePathWithItsSecondReferenceAsItStands) {
  SetVariable(kFirst, Folder().string().c_str());
  SetVariable(kSecond, "log");
  WriteFile(Folder() / "$(VEXTREL_TEST_SECOND).properties", GoodConfig());
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)/$(VEXTREL_TEST_SECOND).properties");
  EXPECT_THAT(Init(),
              ElementsAre(LoadingConfig(Folder().string() + "/$(VEXTREL_TEST_SECOND).properties")));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
}

TEST_F(LoggerSetup, TakesAPathWithBlanks) {
  std::filesystem::create_directory(Folder() / "my settings");
  const std::string path = (Folder() / "my settings" / " the log.properties").string();
  WriteFile(path, GoodConfig());
  SetVariable(kLogConfigVariable, path.c_str());
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(path)));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
}

TEST_F(LoggerSetup, ShowsAPathOfMoreThan1024CharactersWhole) {
  const std::string path = Folder().string() + "/" + std::string(1100, 'x');
  SetVariable(kLogConfigVariable, path.c_str());
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(path))));
}

TEST_F(LoggerSetup, FailsForAReferenceInThePathThatCannotBeResolved) {
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)/log.properties");
  EXPECT_THAT(Init(), ElementsAre("ERROR  : Loading logger configuration failed. error = "
                                  "'Environment variable 'VEXTREL_TEST_FIRST' not found'"));
}

TEST_F(LoggerSetup, FailsForASecondReferenceInThePathThatCannotBeResolved) {
  SetVariable(kFirst, Folder().string().c_str());
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)/$(VEXTREL_TEST_SECOND).properties");
  EXPECT_THAT(Init(),
              ElementsAre(ConfigFailed("Environment variable 'VEXTREL_TEST_SECOND' not found")));
}

TEST_F(LoggerSetup, ShowsErrorsButNoInfoLinesAfterAFailure) {
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)");
  const auto target = ScriptedTargetWithout("EventKill");
  UseTarget(target);
  EXPECT_THAT(Init(),
              ElementsAre(ConfigFailed("Environment variable 'VEXTREL_TEST_FIRST' not found"),
                          "ERROR Vextrel : EventKill not exported"));
  EXPECT_THAT(Close(), IsEmpty());
  EXPECT_FALSE(IsModuleLoaded(target));
}

TEST_F(LoggerSetup, TriesAgainAtEachInitAfterAFailure) {
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)");
  const std::string failed = ConfigFailed("Environment variable 'VEXTREL_TEST_FIRST' not found");
  EXPECT_THAT(Init(), ElementsAre(failed));
  EXPECT_THAT(Close(), IsEmpty());
  EXPECT_THAT(Init(), ElementsAre(failed));
  EXPECT_THAT(Close(), IsEmpty());

  WriteFile(ConfigFile(), GoodConfig());
  SetVariable(kFirst, ConfigFile().c_str());
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
}

TEST_F(LoggerSetup, IsAtInfoAgainWhenTheVariableIsGoneAfterAFailure) {
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)");
  static_cast<void>(Init());
  static_cast<void>(Close());
  SetVariable(kLogConfigVariable, nullptr);
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(kConfigNotFound)));
}

TEST_F(LoggerSetup, KeepsItsConfigurationOverGCCloseLib) {
  UseConfig(GoodConfig());
  static_cast<void>(Init());
  EXPECT_THAT(Close(), IsEmpty());
  WriteFile(Folder() / "other.properties", "nothing that log4cpp would take");
  SetVariable(kLogConfigVariable, (Folder() / "other.properties").string().c_str());
  EXPECT_THAT(Init(), IsEmpty());
  auto expected = FileLines();
  expected.emplace_back(kCloseSucceeded);
  for (const std::string& line : FileLines()) {
    expected.push_back(line);
  }
  EXPECT_THAT(LogLines(), ElementsAreArray(expected));
}

TEST_F(LoggerSetup, IsShutDownWhenTheModuleIsUnloaded) {
  UseConfig(GoodConfig());
  static_cast<void>(Init());
  static_cast<void>(Close());
  const auto renamed = Folder() / "renamed.log";
  std::error_code error;
  std::filesystem::rename(LogFile(), renamed, error);
  EXPECT_EQ(static_cast<bool>(error), kOnWindows) << "Windows does not rename an open file";
  if (!error) {
    std::filesystem::rename(renamed, LogFile());
  }

  UnloadProxy();
  std::filesystem::rename(LogFile(), renamed, error);
  EXPECT_FALSE(error) << error.message();
  std::filesystem::remove(renamed, error);
  EXPECT_FALSE(error) << error.message();
}

TEST_F(LoggerSetup, BeginsAnewWhenTheModuleIsLoadedAgain) {
  UseConfig(GoodConfig());
  static_cast<void>(Init());
  static_cast<void>(Close());
  UnloadProxy();
  SetVariable(kLogConfigVariable, nullptr);
  LoadProxy();
  const std::vector<std::string> before = LogLines();
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(kConfigNotFound)));
  EXPECT_EQ(LogLines(), before);
}

}  // namespace
}  // namespace vextrel_test
