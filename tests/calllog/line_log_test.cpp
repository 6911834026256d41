// SPDX-License-Identifier: MIT
#include "calllog/line_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <log4cpp/Category.hh>
#include <log4cpp/NDC.hh>
#include <log4cpp/PatternLayout.hh>
#include <log4cpp/StringQueueAppender.hh>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "calllog/guarded_memory.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace vextrel::literals;
using vextrel::ByteDump;
using vextrel::LogCall;
using vextrel::Misplaced;
using vextrel::ReportError;
using vextrel::ReportInfo;
using vextrel::ReportWarn;
using vextrel::ValueAt;
using Lines = std::vector<std::string>;

// A category of its own whose lines stay in memory as "PRIORITY message".
class LineLog : public testing::Test {
 protected:
  LineLog()
      : logger(log4cpp::Category::getInstance("line_log")),
        pattern(*new log4cpp::PatternLayout),
        appender_(new log4cpp::StringQueueAppender("memory")) {
    pattern.setConversionPattern("%p %m");
    appender_->setLayout(&pattern);
    logger.setAdditivity(false);
    logger.setPriority(log4cpp::Priority::DEBUG);
    logger.addAppender(appender_);
  }
  ~LineLog() override { logger.removeAllAppenders(); }

  [[nodiscard]] Lines TakeLines() {
    Lines lines;
    while (appender_->queueSize() > 0) {
      lines.push_back(appender_->popMessage());
    }
    return lines;
  }

  // One line of each priority.
  void LogThrice() {
    ReportInfo(logger, "call %u"_line, 1U);
    ReportWarn(logger, "left %u"_line, 2U);
    ReportError(logger, "wrong %u"_line, 3U);
  }

  log4cpp::Category& logger;
  log4cpp::PatternLayout& pattern;  // owned by the appender

 private:
  log4cpp::StringQueueAppender* appender_;  // owned by the category
};

using LineLogDeathTest = LineLog;

TEST_F(LineLog, WritesEachLineAtItsPriorityWithAndWithoutValues) {
  LogThrice();
  ReportInfo(logger, "info"_line);
  ReportWarn(logger, "warn"_line);
  ReportError(logger, "error"_line);
  EXPECT_EQ(TakeLines(), (Lines{"INFO call 1", "WARN left 2", "ERROR wrong 3", "INFO info",
                                "WARN warn", "ERROR error"}));
}

TEST_F(LineLog, KeepsPercentSignsOfValues) {
  const char* text = "%s %n %p %% %m 100%";
  ReportInfo(logger, "%s"_line, text);
  ReportWarn(logger, "%s"_line, text);
  ReportError(logger, "%s"_line, text);
  EXPECT_EQ(TakeLines(), (Lines{"INFO %s %n %p %% %m 100%", "WARN %s %n %p %% %m 100%",
                                "ERROR %s %n %p %% %m 100%"}));
}

TEST_F(LineLog, WritesLongLinesWholeAndTheLineBreaksOfAValue) {
  const std::string text(100'000, 'l');
  ReportInfo(logger, "<%s>"_line, text);
  ReportInfo(logger, "a%sb"_line, std::string(",\n"));
  EXPECT_EQ(TakeLines(), (Lines{"INFO <" + text + ">", "INFO a,\nb"}));
}

TEST_F(LineLog, WritesNothingBelowThePriorityOfTheCategory) {
  const std::map<log4cpp::Priority::Value, Lines> expected = {
      {log4cpp::Priority::DEBUG, {"INFO call 1", "WARN left 2", "ERROR wrong 3"}},
      {log4cpp::Priority::INFO, {"INFO call 1", "WARN left 2", "ERROR wrong 3"}},
      {log4cpp::Priority::NOTICE, {"WARN left 2", "ERROR wrong 3"}},
      {log4cpp::Priority::WARN, {"WARN left 2", "ERROR wrong 3"}},
      {log4cpp::Priority::ERROR, {"ERROR wrong 3"}},
      {log4cpp::Priority::CRIT, {}},
      {log4cpp::Priority::FATAL, {}},
  };
  for (const auto& [priority, lines] : expected) {
    logger.setPriority(priority);
    LogThrice();
    EXPECT_EQ(TakeLines(), lines) << priority;
  }
}

TEST_F(LineLog, FollowsThePriorityThatTheCategoryInherits) {
  log4cpp::Category& child = log4cpp::Category::getInstance("line_log.child");
  ReportInfo(child, "seen"_line);
  logger.setPriority(log4cpp::Priority::ERROR);
  ReportInfo(child, "unseen"_line);
  EXPECT_EQ(TakeLines(), (Lines{"INFO seen"}));
}

TEST_F(LineLog, DoesNotReadTheValuesOfALineThatIsNotWritten) {
  const GuardedMemory memory(1);
  const void* unreadable = memory.Forbidden();
  logger.setPriority(log4cpp::Priority::FATAL);
  ReportInfo(logger, "%s"_line, Misplaced(unreadable));
  ReportWarn(logger, "%s"_line, Misplaced(unreadable));
  ReportError(logger, "%s"_line, Misplaced(unreadable));
  EXPECT_EQ(TakeLines(), Lines{});
}

TEST_F(LineLog, WritesTheLinesOfCallsInTheSameWay) {
  LogCall(logger, "%s=IFClose(hIface=0x%p)"_line, std::string("GC_ERR_SUCCESS"), Handle(0x10));
  logger.setPriority(log4cpp::Priority::NOTICE);
  LogCall(logger, "%s"_line, std::string("unseen"));
  EXPECT_EQ(TakeLines(), (Lines{"INFO GC_ERR_SUCCESS=IFClose(hIface=0x0000000000000010)"}));
}

TEST_F(LineLog, ReadsAnOutputOnlyForALineThatIsWritten) {
  const std::uint32_t count = 7;
  const std::uint32_t* none = nullptr;
  LogCall(logger, "%u"_line, ValueAt(&count));
  logger.setPriority(log4cpp::Priority::NOTICE);
  LogCall(logger, "%u"_line, ValueAt(none));
  EXPECT_EQ(TakeLines(), (Lines{"INFO 7"}));
}

TEST_F(LineLog, TellsLog4cppOfACallsLineWhatItsOwnFunctionTells) {
  pattern.setConversionPattern("%c|%p|%t|%x|%m");
  log4cpp::NDC::push("inside");
  const std::string text(200, 't');
  LogCall(logger, "%s"_line, text);
  logger.info(text);
  log4cpp::NDC::clear();
  const Lines lines = TakeLines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], lines[1]);
  EXPECT_THAT(lines[0], testing::AllOf(testing::StartsWith("line_log|INFO|"),
                                       testing::EndsWith("|inside|" + text)));
}

// What a call's line is made of is rendered on every call: a fault in the consumer's memory must
// not depend on the log's priority.
TEST_F(LineLogDeathTest, ReadsTheDataOfACallEvenIfNoLineIsWritten) {
  const GuardedMemory memory(1);
  logger.setPriority(log4cpp::Priority::FATAL);
  EXPECT_DEATH(LogCall(logger, "%s"_line, ByteDump{memory.Forbidden(), 1}), "");
  EXPECT_DEATH(LogCall(logger, "%s"_line, ByteDump{memory.Forbidden(), 4096}), "");
}

TEST_F(LineLog, WritesLinesOfManyThreadsWhole) {
  constexpr std::uint32_t kThreads = 4;
  constexpr std::uint32_t kLinesPerThread = 500;
  std::vector<std::thread> threads;
  for (std::uint32_t number = 0; number < kThreads; ++number) {
    threads.emplace_back([this, number] {
      for (std::uint32_t i = 0; i < kLinesPerThread; ++i) {
        ReportInfo(logger, "%u:%u:%s"_line, number, i,
                   std::string(40, static_cast<char>('a' + number)));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  Lines expected;
  for (std::uint32_t number = 0; number < kThreads; ++number) {
    for (std::uint32_t i = 0; i < kLinesPerThread; ++i) {
      expected.push_back("INFO " + std::to_string(number) + ":" + std::to_string(i) + ":" +
                         std::string(40, static_cast<char>('a' + number)));
    }
  }
  Lines lines = TakeLines();
  std::sort(lines.begin(), lines.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace vextrel_test
