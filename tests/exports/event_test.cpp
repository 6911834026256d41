// SPDX-License-Identifier: MIT
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
              .line = "GCRegisterEvent(hEventSrc=0x0000000000004000, "
                      "iEvent=EVENT_NEW_BUFFER, 0x{3}->(hE=0x0000000000006000))",
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
              .line = "EventGetData(hEvent=0x0000000000006000, 0x{2}->(Buffer=0x00,0x50,0xab), "
                      "0x{3}->(iSize=3), iTimeout=4294967295)",
              .after = {kNotOpened}},
             &Functions::EventGetData, event, data.data(), &size, 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(EventLines, EventGetDataOfASizeAbove32Bits) {
  std::size_t size = 0x100000002;
  ExpectLine({.line = "EventGetData(hEvent=0x0000000000006000, "
                      "0x0000000000000000->(Buffer=), 0x{3}->(iSize=2), iTimeout=0)",
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
              .line = "EventGetDataInfo(hEvent=0x0000000000006000, pInBuffer=0x{2}, "
                      "iEventBufferSize=<decimal>, iID=a, 0x<address>->(iType=text) "
                      "0x<address>->(Buffer=ABCDE), 0x0000004544434241->(iSize=0))"},
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
              .line = "EventGetInfo(hEvent=0x0000000000006000, iID=EVENT_EVENT_TYPE, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING) 0x{4}->(Buffer='event'), "
                      "0x{5}->(iSize=6))"},
             &Functions::EventGetInfo, event, 0, &query.type, query.buffer.data(), &query.size);
}

TEST_F(EventLines, EventGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(8, 0x100000008); },
              .line = "EventGetInfo(hEvent=0x0000000000006000, "
                      "iID=EVENT_INFO_DATA_SIZE_MAX, 0x{3}->(iType=INFO_DATATYPE_UINT64) "
                      "0x0000000000000000->(Buffer=NULL), 0x{5}->(iSize=8))"},
             &Functions::EventGetInfo, event, 4, &query.type, nullptr, &query.size);
}

TEST_F(EventLines, EventFlush) {
  ExpectLine({.line = "EventFlush(hEvent=0x0000000000006000)"}, &Functions::EventFlush, event);
}

TEST_F(EventLines, EventKill) {
  ExpectLine({.line = "EventKill(hEvent=0x0000000000006000)"}, &Functions::EventKill, event);
}

}  // namespace
}  // namespace vextrel_test
