// SPDX-License-Identifier: MIT
// The set-up of the log, seen from outside: real variables, real files, and the channel of a log
// that nobody has configured.
#ifndef VEXTREL_TESTS_LIFECYCLE_LOGGING_FIXTURE_H
#define VEXTREL_TESTS_LIFECYCLE_LOGGING_FIXTURE_H

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/library_fixture.h"
#include "support/debug_output.h"

namespace vextrel_test {

inline constexpr const char* kConfigNotFound =
    "ERROR  : Vextrel Environment variable GENICAM_GENTL64_VEXTREL_LOG_CONFIG not found!";

[[nodiscard]] inline std::string LoadingConfig(const std::string& path) {
  return "INFO  : Loading logger parameter file '" + path + "'";
}
[[nodiscard]] inline std::string CannotOpenConfig(const std::string& path) {
  return "ERROR  : Cannot open logger parameter file '" + path + "'";
}
[[nodiscard]] inline std::string ConfigFailed(const std::string& reason) {
  return "ERROR  : Loading logger configuration failed. error = '" + reason + "'";
}

// A line of the default channel begins with the time in seconds, which is taken off here.
[[nodiscard]] inline std::string WithoutTime(const std::string& line) {
  const std::size_t digits = line.find_first_not_of("0123456789");
  if (digits == 0 || digits == std::string::npos || line[digits] != ' ') {
    ADD_FAILURE() << "no time: " << line;
    return line;
  }
  return line.substr(digits + 1);
}

class LoggingFixture : public LibraryFixture {
 protected:
  LoggingFixture() {
    SetVariable(kFirst, nullptr);
    SetVariable(kSecond, nullptr);
    UseTarget(ScriptedTargetPath());
    LoadProxy();
  }
  ~LoggingFixture() override {
    SetVariable(kFirst, nullptr);
    SetVariable(kSecond, nullptr);
  }

  // Variables for tests that need some.
  static constexpr const char* kFirst = "VEXTREL_TEST_FIRST";
  static constexpr const char* kSecond = "VEXTREL_TEST_SECOND";

  [[nodiscard]] std::string ConfigFile() const { return (Folder() / "log.properties").string(); }

  // The properties of an appender "file" that writes "PRIORITY message" to the log file.
  [[nodiscard]] std::string FileAppender() const {
    return "appender.file=FileAppender\nappender.file.fileName=" + LogFile().string() +
           "\nappender.file.layout=PatternLayout\n"
           "appender.file.layout.ConversionPattern=%p %m%n\n";
  }
  // A configuration that is in order.
  [[nodiscard]] std::string GoodConfig() const {
    return "rootCategory=INFO, file\n" + FileAppender();
  }

  // Writes the configuration and sets the variable.
  void UseConfig(std::string_view content) const {
    WriteFile(ConfigFile(), content);
    SetVariable(kLogConfigVariable, ConfigFile().c_str());
  }

  // GCInitLib, which succeeds whatever becomes of the log, and what it sends to the default
  // channel, without the times.
  [[nodiscard]] std::vector<std::string> Init() {
    const DebugOutput output;
    EXPECT_EQ(proxy.GCInitLib(), 0);
    return Lines(output);
  }
  [[nodiscard]] std::vector<std::string> Close() {
    const DebugOutput output;
    EXPECT_EQ(proxy.GCCloseLib(), 0);
    return Lines(output);
  }

  // What a first GCInitLib writes to the default channel at INFO, in front of it `first`.
  [[nodiscard]] static std::vector<std::string> DefaultLines(const std::string& first) {
    return {first, "INFO Vextrel : Loading GenTL Producer '" + ScriptedTargetPath().string() + "'",
            "INFO Vextrel : GenTL producer file version: '0.0.0.0'",
            "INFO Vextrel : GC_ERR_SUCCESS=GCInitLib(void)"};
  }
  // What it writes to a log file.
  [[nodiscard]] static std::vector<std::string> FileLines() {
    return {LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded};
  }

 private:
  static std::vector<std::string> Lines(const DebugOutput& output) {
    std::vector<std::string> lines;
    for (const std::string& line : SplitLines(output.Text())) {
      lines.push_back(WithoutTime(line));
    }
    return lines;
  }
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LIFECYCLE_LOGGING_FIXTURE_H
