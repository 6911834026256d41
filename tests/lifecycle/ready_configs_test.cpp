// SPDX-License-Identifier: MIT
// The configuration files that come with the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "lifecycle/logging_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Only the extended module times calls, and only one configuration asks for it.
#if defined(VEXTREL_EXTENDED)
constexpr const char* kTimingConfig = "timing";
#else
constexpr const char* kTimingConfig = "none";
#endif

std::vector<std::filesystem::path> ReadyConfigs() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(ProgramFolder() / "config")) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void ReplaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

class ReadyConfig : public LoggingFixture,
                    public ::testing::WithParamInterface<std::filesystem::path> {
 protected:
  // The text of every log file that came to be.
  [[nodiscard]] std::string Logged() const {
    std::string text;
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
      if (entry.path().extension() == ".log") {
        text += ReadFile(entry.path());
      }
    }
    return text;
  }
};

TEST_P(ReadyConfig, LoadsWithoutAnErrorAndShowsErrors) {
  // The log goes to the test's own folder instead of the user's.
  std::string config = ReadFile(GetParam());
  ReplaceAll(config, "${TEMP}", Folder().string());
  EXPECT_THAT(config, Not(HasSubstr("${")));
  UseConfig(config);
  UseTarget(ScriptedTargetWithout("EventKill"));

  const DebugOutput output;
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::vector<std::string> lines = SplitLines(output.Text());
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(WithoutTime(lines[0]), LoadingConfig(ConfigFile()));
  EXPECT_THAT(output.Text(), Not(HasSubstr("Loading logger configuration failed")));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  if (config.find("ConsoleAppender") == std::string::npos) {
    EXPECT_THAT(Logged(), HasSubstr("EventKill not exported"));
    EXPECT_EQ(lines.size(), 1);
    const bool isTimed = GetParam().stem() == kTimingConfig;
    EXPECT_EQ(Logged().find("DEBUG Call 1 enters GCInitLib()") != std::string::npos, isTimed);
    EXPECT_EQ(Logged().find("DEBUG Call 2 leaves GCCloseLib after ") != std::string::npos, isTimed);
  } else if (!kOnWindows) {
    EXPECT_THAT(output.Text(), HasSubstr("EventKill not exported"));
  }
}

INSTANTIATE_TEST_SUITE_P(All, ReadyConfig, ::testing::ValuesIn(ReadyConfigs()),
                         [](const auto& test) {
                           std::string name = test.param.stem().string();
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace vextrel_test
