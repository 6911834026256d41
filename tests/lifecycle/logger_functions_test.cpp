// SPDX-License-Identifier: MIT
// The set-up's single steps, and what they leave in log4cpp.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <log4cpp/Category.hh>
#include <log4cpp/Configurator.hh>
#include <log4cpp/Priority.hh>
#include <stdexcept>
#include <string>
#include <vector>

#include "calllog/logger_setup.h"
#include "lifecycle/logging_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vextrel::ConfigureLogging;
using vextrel::GetLogger;
using vextrel::GetRootLogger;
using vextrel::LoadLogConfigFile;
using vextrel::LoadLogConfigFromEnv;
using vextrel::ShutdownLogging;

constexpr int kError = 300;
constexpr int kInfo = 600;

class LoggerFunctions : public LoggingFixture {
 protected:
  LoggerFunctions() { Reset(); }
  ~LoggerFunctions() override { Reset(); }

  [[nodiscard]] static std::vector<std::string> AppendersOfRoot() {
    std::vector<std::string> names;
    for (const log4cpp::Appender* appender : GetRootLogger().getAllAppenders()) {
      names.push_back(appender->getName());
    }
    return names;
  }

 private:
  static void Reset() {
    ShutdownLogging();
    GetRootLogger().removeAllAppenders();
    GetRootLogger().setPriority(log4cpp::Priority::DEBUG);
  }

  const DebugOutput quiet_;
};

TEST_F(LoggerFunctions, GetLoggerYieldsTheCategoryOfThatName) {
  EXPECT_EQ(GetLogger("Vextrel").getName(), "Vextrel");
  EXPECT_EQ(&GetLogger("Vextrel"), &log4cpp::Category::getInstance("Vextrel"));
  EXPECT_EQ(&GetLogger("Vextrel"), &GetLogger(std::string("Vextrel").c_str()));
  EXPECT_NE(&GetLogger("Vextrel"), &GetLogger("Other"));
}

TEST_F(LoggerFunctions, GetRootLoggerYieldsTheRootCategory) {
  EXPECT_EQ(&GetRootLogger(), &log4cpp::Category::getRoot());
  EXPECT_EQ(GetLogger("Vextrel").getParent(), &GetRootLogger());
}

TEST_F(LoggerFunctions, ApplyDefaultLogConfigLeavesOneAppenderAtError) {
  vextrel::ApplyDefaultLogConfig();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), kError);
}

TEST_F(LoggerFunctions, ApplyDefaultLogConfigReplacesWhatWasThere) {
  UseConfig(GoodConfig());
  EXPECT_TRUE(LoadLogConfigFromEnv());
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("file"));
  vextrel::ApplyDefaultLogConfig();
  vextrel::ApplyDefaultLogConfig();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), kError);
}

TEST_F(LoggerFunctions, ConfigureLoggingLeavesTheDefaultAtInfoWithoutAVariable) {
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), kInfo);
}

TEST_F(LoggerFunctions, ConfigureLoggingLeavesTheDefaultAtInfoWithoutTheFile) {
  SetVariable(kLogConfigVariable, ConfigFile().c_str());
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), kInfo);
}

TEST_F(LoggerFunctions, ConfigureLoggingLeavesTheDefaultAtErrorAfterAFailure) {
  UseConfig("rootCategory=DEBUG, nowhere\n");
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), kError);
}

TEST_F(LoggerFunctions, ConfigureLoggingLeavesWhatTheFileSays) {
  UseConfig("rootCategory=WARN, file\n" + FileAppender());
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("file"));
  EXPECT_EQ(GetRootLogger().getPriority(), log4cpp::Priority::WARN);
}

TEST_F(LoggerFunctions, ConfigureLoggingWorksOnce) {
  ConfigureLogging();
  GetRootLogger().setPriority(log4cpp::Priority::WARN);
  UseConfig(GoodConfig());
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
  EXPECT_EQ(GetRootLogger().getPriority(), log4cpp::Priority::WARN);
}

TEST_F(LoggerFunctions, ConfigureLoggingWorksAgainAfterAFailure) {
  UseConfig("");
  ConfigureLogging();
  UseConfig(GoodConfig());
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("file"));
}

TEST_F(LoggerFunctions, ConfigureLoggingWorksAgainAfterShutdownLogging) {
  ConfigureLogging();
  ShutdownLogging();
  UseConfig(GoodConfig());
  ConfigureLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("file"));
}

TEST_F(LoggerFunctions, LoadLogConfigFromEnvIsFalseWithoutAVariable) {
  EXPECT_FALSE(LoadLogConfigFromEnv());
}

TEST_F(LoggerFunctions, LoadLogConfigFromEnvRaisesForAnUnresolvableReference) {
  SetVariable(kLogConfigVariable, "$(VEXTREL_TEST_FIRST)");
  EXPECT_THROW(static_cast<void>(LoadLogConfigFromEnv()), std::runtime_error);
}

TEST_F(LoggerFunctions, LoadLogConfigFileIsFalseForAMissingFile) {
  EXPECT_FALSE(LoadLogConfigFile(ConfigFile()));
}

TEST_F(LoggerFunctions, LoadLogConfigFileIsTrueForAFileThatWasApplied) {
  WriteFile(ConfigFile(), GoodConfig());
  EXPECT_TRUE(LoadLogConfigFile(ConfigFile()));
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("file"));
}

TEST_F(LoggerFunctions, LoadLogConfigFileTestsTheReferenceBeforeItOpensTheFile) {
  EXPECT_THROW(static_cast<void>(LoadLogConfigFile("$(VEXTREL_TEST_FIRST)/missing")),
               std::runtime_error);
}

TEST_F(LoggerFunctions, LoadLogConfigFileLetsLog4cppsFailurePass) {
  WriteFile(ConfigFile(), "rootCategory=LOUD\n");
  EXPECT_THROW(static_cast<void>(LoadLogConfigFile(ConfigFile())), log4cpp::ConfigureFailure);
}

TEST_F(LoggerFunctions, ShutdownLoggingTakesTheAppendersAway) {
  ConfigureLogging();
  ShutdownLogging();
  EXPECT_THAT(AppendersOfRoot(), IsEmpty());
}

TEST_F(LoggerFunctions, ShutdownLoggingDoesNothingUnlessConfigured) {
  UseConfig("");
  ConfigureLogging();
  ShutdownLogging();
  EXPECT_THAT(AppendersOfRoot(), ElementsAre("default"));
}

}  // namespace
}  // namespace vextrel_test
