#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class EventLines : public ExportsTest {
 protected:
  const EVENT_HANDLE event = Handle(0x6000);
  InfoQuery query;
};

TEST_F(EventLines, GCRegisterEvent) {
  EVENT_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x6000); },
              .line = Fill("GCRegisterEvent(hEventSrc=0x0000000000004000, "
                           "iEvent=EVENT_NEW_BUFFER, 0x{}->(hE=0x0000000000006000))",
                           Hex16(&handle)),
              .after = {kNotOpened}},
             &Functions::GCRegisterEvent, Handle(0x4000), 1, &handle);
}

TEST_F(EventLines, GCUnregisterEvent) {
  ExpectLine({.line = "GCUnregisterEvent(hEventSrc=0x0000000000004000, "
                      "iEvent=(Unknown EVENT_TYPE: 5))",
              .after = {kNotOpened}},
             &Functions::GCUnregisterEvent, Handle(0x4000), 5);
}

TEST_F(EventLines, EventGetDataShowsTheDataDumpedWhateverTheEvent) {
  std::array<std::uint8_t, 16> data{};
  std::size_t size = data.size();
  const auto target = [&] {
    data = {0x00, 0x50, 0xab};
    size = 3;
  };
  ExpectLine({.target = target,
              .line = Fill("EventGetData(hEvent=0x0000000000006000, 0x{}->(Buffer=0x00,0x50,0xab), "
                           "0x{}->(iSize=3), iTimeout=4294967295)",
                           Hex16(data.data()), Hex16(&size)),
              .after = {kNotOpened}},
             &Functions::EventGetData, event, data.data(), &size, 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(EventLines, EventGetDataOfASizeAbove32Bits) {
  std::size_t size = 0x100000002;
  ExpectLine({.line = Fill("EventGetData(hEvent=0x0000000000006000, "
                           "0x0000000000000000->(Buffer=), 0x{}->(iSize=2), iTimeout=0)",
                           Hex16(&size)),
              .after = {kNotOpened}},
             &Functions::EventGetData, event, nullptr, &size, 0U);
}

TEST_F(EventLines, EventGetDataInfosValuesShiftByOnePlaceFromTheEventsSizeOn) {
  const std::array<char, 8> data{};
  // The type's and the size's bytes, read as texts, are "a" and "ABCDE".
  const auto target = [&] {
    query.AnswerText("text");
    query.type = 0x61;
    query.size = 0x4544434241;
  };
  ExpectLine({.target = target,
              .line = Fill("EventGetDataInfo(hEvent=0x0000000000006000, pInBuffer=0x{}, "
                           "iEventBufferSize=<decimal>, iID=a, 0x<address>->(iType=text) "
                           "0x<address>->(Buffer=ABCDE), 0x0000004544434241->(iSize=0))",
                           Hex16(data.data()))},
             &Functions::EventGetDataInfo, event, data.data(), data.size(), 1, &query.type,
             query.buffer.data(), &query.size);
}

TEST_F(EventLines, EventGetDataInfoOfTheSizeAlone) {
  const auto target = [&] { query.AnswerSize(0x62, 0x41); };
  ExpectLine({.target = target,
              .line = "EventGetDataInfo(hEvent=0x0000000000006000, pInBuffer=0x0000000000000000, "
                      "iEventBufferSize=<decimal>, iID=b, 0x<address>->(iType=(null)) "
                      "0x<address>->(Buffer=A), 0x0000000000000041->(iSize=0))"},
             &Functions::EventGetDataInfo, event, nullptr, 0U, 1000, &query.type, nullptr,
             &query.size);
}

TEST_F(EventLines, EventGetInfo) {
  ExpectLine({.target = [&] { query.AnswerText("event"); },
              .line = Fill("EventGetInfo(hEvent=0x0000000000006000, iID=EVENT_EVENT_TYPE, "
                           "0x{}->(iType=INFO_DATATYPE_STRING) 0x{}->(Buffer='event'), "
                           "0x{}->(iSize=6))",
                           Hex16(&query.type), Hex16(query.buffer.data()), Hex16(&query.size))},
             &Functions::EventGetInfo, event, 0, &query.type, query.buffer.data(), &query.size);
}

TEST_F(EventLines, EventGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(8, 0x100000008); },
              .line = Fill("EventGetInfo(hEvent=0x0000000000006000, "
                           "iID=EVENT_INFO_DATA_SIZE_MAX, 0x{}->(iType=INFO_DATATYPE_UINT64) "
                           "0x0000000000000000->(Buffer=NULL), 0x{}->(iSize=8))",
                           Hex16(&query.type), Hex16(&query.size))},
             &Functions::EventGetInfo, event, 4, &query.type, nullptr, &query.size);
}

TEST_F(EventLines, EventFlush) {
  ExpectLine({.line = "EventFlush(hEvent=0x0000000000006000)"}, &Functions::EventFlush, event);
}

TEST_F(EventLines, EventKill) {
  ExpectLine({.line = "EventKill(hEvent=0x0000000000006000)"}, &Functions::EventKill, event);
}

using EventRegistry = ExportsTest;

TEST_F(EventRegistry, GCRegisterEventBeforeAnyTLOpenIsReportedAndRecordsNothing) {
  EVENT_HANDLE handle = Handle(0x6000);
  EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x1000), 1, &handle), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=GCRegisterEvent("
                                      "hEventSrc=0x0000000000001000, iEvent=EVENT_NEW_BUFFER, "
                                      "0x{}->(hE=0x0000000000006000))",
                                      Hex16(&handle)),
                                 kNotOpened));
  OpenTransportLayer(0x1000);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

TEST_F(EventRegistry, GCRegisterEventTwiceOnADevice) {
  OpenDataStreamAndAllAbove();
  RegisterEvent(0x3000, 1, 0x6000);
  EVENT_HANDLE again = Handle(0x6001);
  EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x3000), 1, &again), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000003000, "
                         "iEvent=EVENT_NEW_BUFFER, 0x{}->(hE=0x0000000000006001))",
                         Hex16(&again)),
                    "ERROR The event type EVENT_NEW_BUFFER has already been registered on device "
                    "with handle 0x0000000000003000",
                    "ERROR The Event type EVENT_NEW_BUFFER has not been registered since the "
                    "handle 0x0000000000003000 has not been found on any Interface"));
}

TEST_F(EventRegistry, GCRegisterEventOnAnUnknownSource) {
  OpenTransportLayer(0x1000);
  EVENT_HANDLE handle = Handle(0x6000);
  EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x4000), 0, &handle), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000004000, "
                         "iEvent=EVENT_ERROR, 0x{}->(hE=0x0000000000006000))",
                         Hex16(&handle)),
                    "ERROR The Event type EVENT_ERROR has not been registered since the handle "
                    "0x0000000000004000 has not been found on any Interface"));
}

TEST_F(EventRegistry, GCRegisterEventTakesANullEventHandleLikeAnyOther) {
  OpenTransportLayer(0x1000);
  RegisterEvent(0x1000, 0, 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000000000 on Transport Layer "
                    "0x0000000000001000 was not unregistered directly using GCUnregisterEvent()"));
}

TEST_F(EventRegistry, GCUnregisterEventOfANullSourceIsIllegalAndChangesNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x2000, 1, 0x6000);
  EXPECT_EQ(proxy.GCUnregisterEvent(nullptr, 1), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x0000000000000000, "
                    "iEvent=EVENT_NEW_BUFFER)",
                    "ERROR Illegal Interface handle!"));
  EXPECT_EQ(proxy.GCUnregisterEvent(Handle(0x2000), 1), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x0000000000002000, "
                    "iEvent=EVENT_NEW_BUFFER)"));
}

TEST_F(EventRegistry, GCUnregisterEventOfANullSourceIsIllegalWithoutATransportLayerToo) {
  EXPECT_EQ(proxy.GCUnregisterEvent(nullptr, 0), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x0000000000000000, "
                    "iEvent=EVENT_ERROR)",
                    "ERROR Illegal Interface handle!"));
}

TEST_F(EventRegistry, GCUnregisterEventOfAnEventNeverRegisteredShowsItsTypeAsANumber) {
  OpenDataStreamAndAllAbove();
  EXPECT_EQ(proxy.GCUnregisterEvent(Handle(0x4000), 1), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x0000000000004000, "
                    "iEvent=EVENT_NEW_BUFFER)",
                    "ERROR Unable to remove Event type EVENT_NEW_BUFFER on TL 0x0000000000004000! "
                    "Event was not found on any Interface!",
                    "ERROR The event 1 on handle 0x0000000000000000 was not previously registered "
                    "correctly using GCRegisterEvent()!"));
  EXPECT_EQ(proxy.GCUnregisterEvent(Handle(0x1000), -5), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=GCUnregisterEvent(hEventSrc=0x0000000000001000, "
                    "iEvent=(Unknown EVENT_TYPE: -5))",
                    "ERROR Unable to remove Event type (Unknown EVENT_TYPE: -5) on TL "
                    "0x0000000000001000! Event was not added or already removed!",
                    "ERROR The event -5 on handle 0x0000000000000000 was not previously registered "
                    "correctly using GCRegisterEvent()!"));
}

TEST_F(EventRegistry, EventGetDataWithATransportLayerOpenWritesItsLineOnly) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0x5000);
  RegisterEvent(0x4000, 1, 0x6000);
  BUFFER_HANDLE delivered = Handle(0x5000);
  std::size_t size = sizeof delivered;
  EXPECT_EQ(proxy.EventGetData(Handle(0x6000), &delivered, &size, 10), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000006000, "
                                      "0x{}->(Buffer=0x00,0x50,0x00,0x00,0x00,0x00,0x00,0x00), "
                                      "0x{}->(iSize=8), iTimeout=10)",
                                      Hex16(&delivered), Hex16(&size))));
}

TEST_F(EventRegistry, EventKillAndEventFlushLeaveTheRegistrationsAsTheyAre) {
  OpenTransportLayer(0x1000);
  RegisterEvent(0x1000, 0, 0x6000);
  EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0);
  EXPECT_EQ(proxy.EventKill(Handle(0x6000)), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=EventFlush(hEvent=0x0000000000006000)",
                    "INFO GC_ERR_SUCCESS=EventKill(hEvent=0x0000000000006000)",
                    "INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on Transport Layer "
                    "0x0000000000001000 was not unregistered directly using GCUnregisterEvent()"));
}

TEST_F(EventRegistry, FailuresTakeNoStep) {
  OpenTransportLayer(0x1000);
  EVENT_HANDLE handle = Handle(0x6000);
  std::size_t size = 0;
  ExpectNoStepOnFailure(&Functions::GCRegisterEvent, Handle(0x1000), 0, &handle);
  ExpectNoStepOnFailure(&Functions::GCUnregisterEvent, Handle(0x1000), 0);
  ExpectNoStepOnFailure(&Functions::GCUnregisterEvent, nullptr, 0);
  ExpectNoStepOnFailure(&Functions::EventGetData, handle, nullptr, &size, 0U);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

}  // namespace
}  // namespace vextrel_test
