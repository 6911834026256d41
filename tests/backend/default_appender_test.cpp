// SPDX-License-Identifier: MIT
#include "backend/default_appender.h"

#include <gtest/gtest.h>

#include <log4cpp/Appender.hh>
#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/PatternLayout.hh>
#include <memory>
#include <string>

#include "support/debug_output.h"

namespace vextrel_test {
namespace {

std::unique_ptr<log4cpp::Appender> MakeAppender() {
  std::unique_ptr<log4cpp::Appender> appender =
      vextrel::backend::MakeDefaultAppender("default channel");
  auto* layout = new log4cpp::PatternLayout;
  layout->setConversionPattern("%p %m%n");
  appender->setLayout(layout);
  return appender;
}

TEST(MakeDefaultAppender, GivesTheAppenderItsName) {
  EXPECT_EQ(MakeAppender()->getName(), "default channel");
}

TEST(MakeDefaultAppender, WritesToTheDefaultChannel) {
  const std::unique_ptr<log4cpp::Appender> appender = MakeAppender();
  const DebugOutput output;
  appender->doAppend(
      log4cpp::LoggingEvent("category", "100%s of it", "", log4cpp::Priority::ERROR));
  appender->doAppend(log4cpp::LoggingEvent("category", "more", "", log4cpp::Priority::WARN));
  EXPECT_EQ(output.Text(), "ERROR 100%s of it\nWARN more\n");
}

TEST(MakeDefaultAppender, LetsThroughEveryPriority) {
  EXPECT_EQ(MakeAppender()->getThreshold(), log4cpp::Priority::NOTSET);
}

}  // namespace
}  // namespace vextrel_test
