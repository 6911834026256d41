// SPDX-License-Identifier: MIT
#include "model/session_model.h"

#include <gtest/gtest.h>

#include <string>

#include "program/model_of.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(SessionModel, KnowsWhatFailedAndWhy) {
  const SessionModel model = ModelOf(SmallSession());
  const std::vector<Failure>& failures = model.Counts().Failures();
  ASSERT_EQ(failures.size(), 2U);
  EXPECT_EQ(FunctionNames()[failures[0].function], "IFOpenDevice");
  EXPECT_EQ(failures[0].result, GC_ERR_ACCESS_DENIED);
  EXPECT_EQ(failures[0].first.line, 6U);
  EXPECT_EQ(failures[0].text, "somebody else uses Cam1");
  EXPECT_EQ(FunctionNames()[failures[1].function], "EventGetData");
  EXPECT_EQ(failures[1].text, "");
  EXPECT_EQ(model.Reports(), 2U);
  EXPECT_EQ(model.Unreadable(), 0U);
}

TEST(SessionModel, GoesOnAfterMidnight) {
  const SessionModel model = ModelOf(
      "23:59:59.900 INFO  GC_ERR_SUCCESS=GCInitLib(void)\n"
      "00:00:00.100 INFO  GC_ERR_SUCCESS=GCCloseLib(void)\n");
  EXPECT_EQ(*model.LastTime() - *model.FirstTime(), 200'000);
}

TEST(SessionModel, CountsWhatOthersWroteApart) {
  const std::string text =
      LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") + LogLine(1, "camera opened") +
      LogLine(2, "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x00") + LogLine(3, "GC_ERR_NO_SUCH=TLOpen()");
  const SessionModel model = ModelOf(text);
  EXPECT_EQ(model.OtherLines(), 1U);
  EXPECT_EQ(model.Unreadable(), 2U);
  // Where the layout shows the category, that tells.
  const SessionModel named = ModelOf(
      "1795262400 INFO Vextrel : GC_ERR_SUCCESS=GCInitLib(void)\n"
      "1795262400 INFO app : GC_ERR_SUC\n1795262400 INFO Vextrel.Timing : GC_ERR_SUC\n");
  EXPECT_EQ(named.OtherLines(), 1U);
  EXPECT_EQ(named.Unreadable(), 1U);
}

TEST(SessionModel, JoinsCallsWithTheirTimingLines) {
  const ScratchFile log(TimedCalls());
  ReadingOptions options;
  options.files = {log.Path()};
  RecordReader reader(std::move(options));
  SessionModel model(reader.UsedLayout());
  Record record;
  Message message;
  std::vector<std::uint64_t> numbers;
  std::vector<std::uint64_t> durations;
  std::vector<std::int64_t> starts;
  while (reader.Next(record)) {
    ParseMessage(record.message, message);
    const Context& context = model.Take(record, message);
    if (message.IsCall()) {
      ASSERT_NE(context.timing, nullptr);
      numbers.push_back(context.timing->entered.number);
      durations.push_back(context.timing->nanoseconds);
      starts.push_back(*context.timing->entered.time - *model.FirstTime());
    }
  }
  EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 3, 4}));
  EXPECT_EQ(durations, (std::vector<std::uint64_t>{1'204'567, 850, 900'000}));
  EXPECT_EQ(starts, (std::vector<std::int64_t>{0, 2'000, 2'000}));
  ASSERT_EQ(model.Timings().InTarget().size(), 1U);
  model.Finish();
  EXPECT_TRUE(model.Timings().InTarget().empty());
  ASSERT_EQ(model.Timings().NeverReturned().size(), 1U);
  const EnteredCall& lost = model.Timings().NeverReturned()[0];
  EXPECT_EQ(lost.number, 2U);
  EXPECT_EQ(FunctionNames()[lost.function], "GCReadPort");
  EXPECT_EQ(lost.thread, 2U);
  EXPECT_EQ(lost.place.line, 4U);
  EXPECT_EQ(model.AllHandles().Name(lost.handle), "TL1");
  EXPECT_EQ(model.Unreadable(), 0U);
  EXPECT_EQ(model.Counts().Calls(), 3U);
}

TEST(SessionModel, KnowsNoTimingWithoutTimingLines) {
  const SessionModel model = ModelOf(SmallSession());
  EXPECT_FALSE(model.Timings().Any());
  EXPECT_EQ(model.Timings().NeverReturnedCount(), 0U);
}

}  // namespace
}  // namespace vextrel_test
