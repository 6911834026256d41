// SPDX-License-Identifier: MIT
#include "model/session_model.h"

#include <gtest/gtest.h>

#include <string>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

SessionModel ModelOf(const std::string& text) {
  const ScratchFile log(text);
  ReadingOptions options;
  options.files = {log.Path()};
  RecordReader reader(std::move(options));
  SessionModel model(reader.UsedLayout());
  Record record;
  Message message;
  while (reader.Next(record)) {
    ParseMessage(record.message, message);
    static_cast<void>(model.Take(record, message));
  }
  model.Finish();
  return model;
}

HandleId Named(const SessionModel& model, std::string_view name) {
  for (HandleId id = 1; id <= model.AllHandles().Last(); ++id) {
    if (model.AllHandles().Name(id) == name) {
      return id;
    }
  }
  ADD_FAILURE() << name;
  return kNoHandle;
}

TEST(SessionModel, KnowsWhoOpenedWhatWhere) {
  const SessionModel model = ModelOf(SmallSession());
  const Handles& handles = model.AllHandles();
  const Handle& device = handles.At(Named(model, "DEV1"));
  EXPECT_EQ(handles.FullName(Named(model, "DEV1")), "DEV1 \"Cam2\"");
  EXPECT_EQ(device.value, 0x00000001000C0DE0U);
  EXPECT_EQ(device.openedAt->line, 8U);
  EXPECT_EQ(device.closedAt->line, 33U);
  EXPECT_EQ(handles.Name(device.parent), "IF1");
  EXPECT_EQ(handles.At(Named(model, "IF1")).id, "If, (0)");
  EXPECT_EQ(handles.FullName(Named(model, "EV1")), "EV1 NEW_BUFFER of DS1");
  // The stream's closing takes them along; nobody closed them.
  EXPECT_FALSE(handles.At(Named(model, "EV1")).closedAt.has_value());
  EXPECT_FALSE(handles.At(Named(model, "EV1")).isOpen);
  EXPECT_EQ(handles.At(Named(model, "EV1")).closedWith, Named(model, "DS1"));
  EXPECT_EQ(handles.At(Named(model, "DS1")).closedWith, kNoHandle);
  EXPECT_FALSE(handles.At(Named(model, "BUF2")).closedAt.has_value());
  EXPECT_EQ(handles.At(Named(model, "BUF1")).closedAt->line, 29U);
  EXPECT_TRUE(handles.OpenOnes().empty());
}

TEST(SessionModel, KnowsWhatAStreamDid) {
  const SessionModel model = ModelOf(SmallSession());
  ASSERT_EQ(model.Streams().size(), 1U);
  const Stream& stream = model.Streams()[0];
  EXPECT_EQ(stream.Frames(), 3U);
  EXPECT_EQ(stream.TimeOuts(), 1U);
  EXPECT_EQ(stream.Incomplete(), 1U);
  EXPECT_EQ(stream.MissingFrameIds(), 1U);
  // 100 ms and 600 ms.
  EXPECT_EQ(stream.Intervals().Count(), 2U);
  EXPECT_DOUBLE_EQ(stream.Intervals().Mean(), 350'000);
  // 4 ms and 6 ms.
  EXPECT_EQ(stream.Holds().Count(), 2U);
  EXPECT_DOUBLE_EQ(stream.Holds().Mean(), 5'000);
  // 2 for 100 ms, 1 for 4, 2 for 96, 1 for 6, 2 for 594, 1 for 200.
  const auto depth = stream.QueueDepth();
  EXPECT_EQ(depth->min, 1);
  EXPECT_DOUBLE_EQ(depth->mean.value(), 1.79);
  EXPECT_EQ(depth->timeAtZero, 0);
}

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

TEST(SessionModel, StartsANewSessionWithEachInitialization) {
  const SessionModel model =
      ModelOf(SmallSession() + SmallSession() + LogLine(2000, "GC_ERR_SUCCESS=GCInitLib(void)"));
  ASSERT_EQ(model.Sessions().size(), 3U);
  EXPECT_EQ(model.Sessions()[0].producer, "/opt/camera.cti");
  EXPECT_EQ(model.Sessions()[0].producerVersion, "1.2.3.4");
  EXPECT_TRUE(model.Sessions()[1].wasClosed);
  EXPECT_EQ(model.Sessions()[1].begin.line, 37U);
  EXPECT_EQ(model.Sessions()[2].begin.line, 73U);
  EXPECT_FALSE(model.Sessions()[2].wasClosed);
  // The same values are other handles.
  EXPECT_EQ(model.AllHandles().At(Named(model, "DEV2")).session, 2U);
}

// The thread id says nothing then: the second one may be another process's.
TEST(SessionModel, StartsNoSessionWithAnInitializationThatIsRefused) {
  const std::string loading = LogLine(1, "Loading GenTL Producer '/opt/other.cti'") +
                              LogLine(1, "GenTL producer file version: '9.9.9.9'");
  const std::string opened =
      LogLine(0, "Loading GenTL Producer '/opt/camera.cti'") +
      LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
      LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))");
  const SessionModel refused =
      ModelOf(opened + loading + LogLine(2, "GC_ERR_RESOURCE_IN_USE=GCInitLib(void)"));
  ASSERT_EQ(refused.Sessions().size(), 1U);
  EXPECT_EQ(refused.Sessions()[0].producer, "/opt/camera.cti");
  EXPECT_TRUE(refused.AllHandles().At(Named(refused, "TL1")).isOpen);
  const SessionModel another =
      ModelOf(opened + loading + LogLine(2, "GC_ERR_SUCCESS=GCInitLib(void)"));
  ASSERT_EQ(another.Sessions().size(), 2U);
  EXPECT_EQ(another.Sessions()[1].begin.line, 4U);
  EXPECT_EQ(another.Sessions()[1].producer, "/opt/other.cti");
  EXPECT_EQ(another.Sessions()[1].producerVersion, "9.9.9.9");
  EXPECT_FALSE(another.AllHandles().At(Named(another, "TL1")).isOpen);
  // It hangs, or the process has ended in it.
  const SessionModel unknown = ModelOf(opened + loading);
  EXPECT_EQ(unknown.Sessions().size(), 2U);
}

TEST(SessionModel, TakesALogThatStartsLate) {
  const std::string whole = SmallSession();
  const SessionModel model = ModelOf(whole.substr(whole.find("2026-11-21 12:00:00.110")));
  ASSERT_EQ(model.Streams().size(), 1U);
  const Stream& stream = model.Streams()[0];
  // The event's kind becomes known with its first buffer that was seen before; here by none.
  EXPECT_FALSE(model.AllHandles().At(stream.Id()).openedAt.has_value());
  EXPECT_FALSE(stream.QueueDepth().has_value());
  EXPECT_EQ(model.Unreadable(), 0U);
}

TEST(SessionModel, DoesNotTrustOutputsOfFailedCalls) {
  const SessionModel model =
      ModelOf(LogLine(0, "GC_ERR_ERROR=TLOpen(0x000000000000F000->(pHandle=0x00000000DEADBEEF))"));
  EXPECT_EQ(model.AllHandles().Last(), 0U);
}

TEST(SessionModel, GoesOnAfterMidnight) {
  const SessionModel model = ModelOf(
      "23:59:59.900 INFO  GC_ERR_SUCCESS=GCInitLib(void)\n"
      "00:00:00.100 INFO  GC_ERR_SUCCESS=GCCloseLib(void)\n");
  EXPECT_EQ(*model.LastTime() - *model.FirstTime(), 200'000);
}

TEST(SessionModel, GivesReportsTheWritersPriorities) {
  int warnings = 0;
  int infos = 0;
  for (std::size_t i = 0; i < ReportShapes().size(); ++i) {
    warnings += PriorityOfReport(i) == Priority::Warn ? 1 : 0;
    infos += PriorityOfReport(i) == Priority::Info ? 1 : 0;
  }
  EXPECT_EQ(warnings, 5);
  EXPECT_EQ(infos, 4);
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

TEST(SessionModel, TakesWhatNewerFunctionsTell) {
  const std::string stream =
      LogLine(0,
              "GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000000DE0, "
              "0x000000000000F058->(pID=S), 0x000000000000F060->(hDS=0x0000000000000D50))") +
      LogLine(1,
              "GC_ERR_SUCCESS=DSAnnounceCompositeBuffer(hDS=0x0000000000000D50, "
              "iNumSegments=0, ppSegments=0x0000000000000000, piSizes=0x0000000000000000, "
              "Segments=NULL, pPrivate=0x0000000000000000, "
              "0x000000000000F010->(hBuffer=0x0000000000000B01))") +
      LogLine(2,
              "GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000000D50, "
              "iEvent=EVENT_NEW_BUFFER, 0x000000000000F070->(hE=0x0000000000000E10))") +
      LogLine(3, "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000D50, hB=0x0000000000000B01)");
  const auto frame = [](int time, int id, int incomplete) {
    return LogLine(time,
                   "GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, "
                   "0x000000000000F000->(Buffer=0x01,0x0b,0x00,0x00,0x00,0x00,0x00,0x00,"
                   "0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00), "
                   "0x000000000000F008->(iSize=16), iTimeout=500)") +
           LogLine(time,
                   "GC_ERR_SUCCESS=DSGetBufferInfoStacked(hDS=0x0000000000000D50, "
                   "hBuffer=0x0000000000000B01, 0x000000000000F000->(Infos="
                   "Info[0]=(iCmd=BUFFER_INFO_FRAMEID, iType=INFO_DATATYPE_UINT64, Buffer=" +
                       std::to_string(id) +
                       ", iSize=8, iResult=GC_ERR_SUCCESS);"
                       "Info[1]=(iCmd=BUFFER_INFO_IS_INCOMPLETE, iType=INFO_DATATYPE_BOOL8, "
                       "Buffer=" +
                       std::to_string(incomplete) +
                       ", iSize=1, iResult=GC_ERR_SUCCESS);), iNumInfos=2)");
  };
  const SessionModel model = ModelOf(stream + frame(10, 7, 0) + frame(20, 10, 1));
  ASSERT_EQ(model.Streams().size(), 1U);
  EXPECT_EQ(model.Streams()[0].Announced(), 1U);
  EXPECT_EQ(model.Streams()[0].MissingFrameIds(), 2U);
  EXPECT_EQ(model.Streams()[0].Incomplete(), 1U);
  EXPECT_EQ(model.Unreadable(), 0U);
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
