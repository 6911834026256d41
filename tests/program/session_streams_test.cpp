// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "model/session_model.h"
#include "program/model_of.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(SessionStreams, TellWhatAStreamDid) {
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

TEST(SessionStreams, AreKnownInALogThatStartsLate) {
  const std::string whole = SmallSession();
  const SessionModel model = ModelOf(whole.substr(whole.find("2026-11-21 12:00:00.110")));
  ASSERT_EQ(model.Streams().size(), 1U);
  const Stream& stream = model.Streams()[0];
  // The event's kind becomes known with its first buffer that was seen before; here by none.
  EXPECT_FALSE(model.AllHandles().At(stream.Id()).openedAt.has_value());
  EXPECT_FALSE(stream.QueueDepth().has_value());
  EXPECT_EQ(model.Unreadable(), 0U);
}

TEST(SessionStreams, TakeWhatNewerFunctionsTell) {
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

}  // namespace
}  // namespace vextrel_test
