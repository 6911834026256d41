// SPDX-License-Identifier: MIT
#include "commands/log_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(LogOptions, AddRolledFilesAndSaySo) {
  const ScratchFile log("c\n");
  const std::string older = log.Beside("a\n", "app.log.2");
  const std::string old = log.Beside("b\n", "app.log.1");
  LogOptions options;
  options.files = {log.Path()};
  Output errors;
  const ReadingOptions toRead = options.ToRead(errors);
  EXPECT_EQ(toRead.files, (std::vector<std::string>{older, old, log.Path()}));
  EXPECT_FALSE(toRead.layout.has_value());
  EXPECT_EQ(errors.Text(),
            "vextrel: also read, before the log itself: " + older + " " + old + "\n");
}

TEST(LogOptions, TakeTheLayoutFromAPatternOrAPropertyFile) {
  const ScratchFile config(
      "appender.a.layout=PatternLayout\n"
      "appender.a.layout.ConversionPattern=%p|%m%n\n");
  Output errors;
  LogOptions options;
  options.files = {"-"};
  options.pattern = "%r %m%n";
  EXPECT_EQ(options.ToRead(errors).layout->Name(), Layout::OfPattern("%r %m%n").Name());
  options.pattern = "";
  options.config = config.Path();
  EXPECT_EQ(options.ToRead(errors).layout->Name(), Layout::OfPattern("%p|%m%n").Name());
  options.config = config.Path() + ".none";
  EXPECT_THROW(static_cast<void>(options.ToRead(errors)), std::runtime_error);
  EXPECT_EQ(errors.Text(), "");
}

TEST(LogOptions, TakeNoPatternBesideAPropertyFile) {
  CLI::App command;
  LogOptions options;
  options.AddFilesTo(command);
  EXPECT_THROW(command.parse("a.log --pattern %m --config b"), CLI::ExcludesError);
}

}  // namespace
}  // namespace vextrel_test
