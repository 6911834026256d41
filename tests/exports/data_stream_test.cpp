// SPDX-License-Identifier: MIT
// The lines of the data streams' functions.
#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class DataStreamLines : public ExportsTest {
 protected:
  const DS_HANDLE dataStream = Handle(0x4000);
  const BUFFER_HANDLE buffer = Handle(0x5000);
  InfoQuery query;
};

TEST_F(DataStreamLines, DSAnnounceBuffer) {
  BUFFER_HANDLE handle = nullptr;
  std::array<char, 4> memory{};
  ExpectLine({.target = [&] { handle = Handle(0x5000); },
              .line = "DSAnnounceBuffer(hDS=0x0000000000004000, pBuffer=0x{2}, iSize=4, "
                      "pPrivate=0x0000000000000000, 0x{5}->(hBuffer=0x0000000000005000))",
              .after = {kNotOpened}},
             &Functions::DSAnnounceBuffer, dataStream, memory.data(), memory.size(), nullptr,
             &handle);
}

TEST_F(DataStreamLines, DSAnnounceBufferOfASizeAbove32Bits) {
  BUFFER_HANDLE handle = nullptr;
  ExpectLine({.line = "DSAnnounceBuffer(hDS=0x0000000000004000, "
                      "pBuffer=0x0000000000000000, iSize=4294967295, "
                      "pPrivate=0xFEDCBA9876543210, 0x{5}->(hBuffer=0x0000000000000000))",
              .after = {kNotOpened}},
             &Functions::DSAnnounceBuffer, dataStream, nullptr, 0x1FFFFFFFFU,
             Handle(0xFEDCBA9876543210), &handle);
}

TEST_F(DataStreamLines, DSAllocAndAnnounceBuffer) {
  BUFFER_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x5000); },
              .line = "DSAllocAndAnnounceBuffer(hDS=0x0000000000004000, iSize=300000, "
                      "pPrivate=0x0000000000000077, 0x{4}->(hBuffer=0x0000000000005000))",
              .after = {kNotOpened}},
             &Functions::DSAllocAndAnnounceBuffer, dataStream, 300000U, Handle(0x77), &handle);
}

TEST_F(DataStreamLines, DSAllocAndAnnounceBufferOfASizeAbove32Bits) {
  BUFFER_HANDLE handle = nullptr;
  ExpectLine({.line = "DSAllocAndAnnounceBuffer(hDS=0x0000000000004000, iSize=1, "
                      "pPrivate=0x0000000000000000, 0x{4}->(hBuffer=0x0000000000000000))",
              .after = {kNotOpened}},
             &Functions::DSAllocAndAnnounceBuffer, dataStream, 0x100000001U, nullptr, &handle);
}

TEST_F(DataStreamLines, DSFlushQueue) {
  ExpectLine({.line = "DSFlushQueue(hDS=0x0000000000004000, QueueType=ACQ_QUEUE_ALL_DISCARD)",
              .after = {kNotOpened}},
             &Functions::DSFlushQueue, dataStream, 4);
  ExpectLine({.line = "DSFlushQueue(hDS=0x0000000000004000, "
                      "QueueType=(Unknown ACQ_QUEUE_TYPE: 5))",
              .after = {kNotOpened}},
             &Functions::DSFlushQueue, dataStream, 5);
}

TEST_F(DataStreamLines, DSStartAcquisition) {
  ExpectLine({.line = "DSStartAcquisition(hDS=0x0000000000004000, "
                      "Flags=ACQ_START_FLAGS_DEFAULT, iNumFramesToAcquire=10)"},
             &Functions::DSStartAcquisition, dataStream, 0, 10U);
  ExpectLine({.line = "DSStartAcquisition(hDS=0x0000000000004000, "
                      "Flags=(Unknown ACQ_START_FLAGS: 1), iNumFramesToAcquire=4294967295)"},
             &Functions::DSStartAcquisition, dataStream, 1, 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(DataStreamLines, DSStopAcquisition) {
  ExpectLine({.line = "DSStopAcquisition(hDS=0x0000000000004000, Flags=ACQ_STOP_FLAG_KILL)"},
             &Functions::DSStopAcquisition, dataStream, 1);
  ExpectLine({.line = "DSStopAcquisition(hDS=0x0000000000004000, "
                      "Flags=(Unknown ACQ_STOP_FLAGS: -1))"},
             &Functions::DSStopAcquisition, dataStream, -1);
}

TEST_F(DataStreamLines, DSGetInfo) {
  ExpectLine({.target = [&] { query.AnswerText("s-0"); },
              .line = "DSGetInfo(hDS=0x0000000000004000, iCmd=STREAM_INFO_ID, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING) 0x{4}->(Buffer='s-0'), "
                      "0x{5}->(iSize=4))"},
             &Functions::DSGetInfo, dataStream, 0, &query.type, query.buffer.data(), &query.size);
}

TEST_F(DataStreamLines, DSGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(12, 0x100000008); },
              .line = "DSGetInfo(hDS=0x0000000000004000, iCmd=STREAM_INFO_PAYLOAD_SIZE, "
                      "0x{3}->(iType=INFO_DATATYPE_SIZET) 0x0000000000000000->(Buffer=NULL), "
                      "0x{5}->(iSize=8))"},
             &Functions::DSGetInfo, dataStream, 7, &query.type, nullptr, &query.size);
}

TEST_F(DataStreamLines, DSGetBufferID) {
  BUFFER_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x5000); },
              .line = "DSGetBufferID(hDS=0x0000000000004000, iIndex=4294967295, "
                      "0x{3}->(hBuffer=0x0000000000005000))"},
             &Functions::DSGetBufferID, dataStream, 0xFFFFFFFFU, &handle);
}

TEST_F(DataStreamLines, DSClose) {
  ExpectLine({.line = "DSClose(hDS=0x0000000000004000)", .after = {kNotOpened}},
             &Functions::DSClose, dataStream);
}

TEST_F(DataStreamLines, DSRevokeBufferShowsBothSlotsAndWhatTheyHold) {
  void* memory = nullptr;
  void* userPointer = nullptr;
  const auto target = [&] {
    memory = Handle(0xFEDCBA9876543210);
    userPointer = Handle(0x77);
  };
  ExpectLine({.target = target,
              .line = "DSRevokeBuffer(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "pBuffer=0x{3} (0xFEDCBA9876543210), "
                      "pPrivate=0x{4} (0x0000000000000077))",
              .after = {kNotOpened}},
             &Functions::DSRevokeBuffer, dataStream, buffer, &memory, &userPointer);
}

TEST_F(DataStreamLines, DSRevokeBufferOfNullSlotsShowsNULL) {
  ExpectLine({.line = "DSRevokeBuffer(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "pBuffer=NULL, pPrivate=NULL)",
              .after = {kNotOpened}},
             &Functions::DSRevokeBuffer, dataStream, buffer, nullptr, nullptr);
}

TEST_F(DataStreamLines, DSRevokeBufferShowsASlotThatHoldsNullWithoutABlank) {
  void* memory = Handle(1);
  ExpectLine({.target = [&] { memory = nullptr; },
              .line = "DSRevokeBuffer(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "pBuffer=0x{3}(NULL), pPrivate=NULL)",
              .after = {kNotOpened}},
             &Functions::DSRevokeBuffer, dataStream, buffer, &memory, nullptr);
}

TEST_F(DataStreamLines, DSQueueBuffer) {
  ExpectLine({.line = "DSQueueBuffer(hDS=0x0000000000004000, hB=0x0000000000005000)",
              .after = {kNotOpened}},
             &Functions::DSQueueBuffer, dataStream, buffer);
}

TEST_F(DataStreamLines, DSGetBufferInfo) {
  ExpectLine({.target = [&] { query.AnswerText("GEV"); },
              .line = "DSGetBufferInfo(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "iCommand=BUFFER_INFO_TLTYPE, 0x{4}->(iType=INFO_DATATYPE_STRING) "
                      "0x{5}->(Buffer='GEV'), 0x{6}->(iSize=4))"},
             &Functions::DSGetBufferInfo, dataStream, buffer, 8, &query.type, query.buffer.data(),
             &query.size);
}

TEST_F(DataStreamLines, DSGetBufferInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(10, 0x100000008); },
              .line = "DSGetBufferInfo(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "iCommand=(Unknown BUFFER_INFO_CMD: 26), "
                      "0x{4}->(iType=INFO_DATATYPE_PTR) "
                      "0x0000000000000000->(Buffer=NULL), 0x{6}->(iSize=8))"},
             &Functions::DSGetBufferInfo, dataStream, buffer, 26, &query.type, nullptr,
             &query.size);
}

TEST_F(DataStreamLines, DSGetBufferInfoWithoutATypeShowsNULLAndAValueOfUnknownType) {
  std::uint64_t value = 5;
  std::size_t size = 0x100000008;
  ExpectLine({.line = "DSGetBufferInfo(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "iCommand=BUFFER_INFO_SIZE, 0x0000000000000000->(iType=NULL) "
                      "0x{5}->(Buffer=0x{5}), 0x{6}->(iSize=8))"},
             &Functions::DSGetBufferInfo, dataStream, buffer, 1, nullptr, &value, &size);
}

TEST_F(DataStreamLines, DSGetBufferInfoWithoutATypeAndABuffer) {
  std::size_t size = 8;
  ExpectLine({.line = "DSGetBufferInfo(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
                      "iCommand=BUFFER_INFO_BASE, 0x0000000000000000->(iType=NULL) "
                      "0x0000000000000000->(Buffer=NULL), 0x{6}->(iSize=8))"},
             &Functions::DSGetBufferInfo, dataStream, buffer, 0, nullptr, nullptr, &size);
}

}  // namespace
}  // namespace vextrel_test
