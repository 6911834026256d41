// SPDX-License-Identifier: MIT
#include "views/call_text.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

std::string TextOf(const std::string& line, HandleId first = kNoHandle,
                   const Handles& handles = {}) {
  Message message;
  ParseMessage(line, message);
  Context context;
  context.handles[0] = first;
  std::string text;
  if (message.IsCall()) {
    AppendCall(text, Record(), message, context, handles);
  } else {
    AppendReport(text, message, context, handles);
  }
  return text;
}

TEST(CallText, HasInputsAndOutputsWithoutAddresses) {
  Handles handles;
  const HandleId dataStream = handles.Open(HandleKind::DataStream, 0xD50, kNoHandle);
  EXPECT_EQ(TextOf("GC_ERR_SUCCESS=DSGetInfo(hDS=0x0000000000000D50, "
                   "iCmd=STREAM_INFO_NUM_QUEUED, 0x000000000000F000->(iType=INFO_DATATYPE_SIZET) "
                   "0x000000000000F008->(Buffer=4), 0x000000000000F010->(iSize=8))",
                   dataStream, handles),
            "DSGetInfo(DS1, iCmd=STREAM_INFO_NUM_QUEUED) -> Buffer=4");
  // The size is what a question without a buffer is for.
  EXPECT_EQ(TextOf("GC_ERR_SUCCESS=GCGetInfo(iInfoCmd=TL_INFO_VENDOR, "
                   "0x000000000000F000->(iType=INFO_DATATYPE_STRING), Buffer=NULL, "
                   "0x000000000000F008->(iSize=8))"),
            "GCGetInfo(iInfoCmd=TL_INFO_VENDOR, Buffer=NULL) -> iSize=8");
  // Outputs of a failed call hold nothing.
  EXPECT_EQ(TextOf("GC_ERR_ERROR=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))"),
            "TLOpen()");
}

TEST(CallText, ShowsHandlesThatNobodyOpened) {
  EXPECT_EQ(TextOf("GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000000)"), "DSClose(hDS=NULL)");
  EXPECT_EQ(TextOf("GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000D50)"),
            "DSClose(hDS=0x0000000000000D50)");
}

TEST(CallText, NamesTheHandlesOfReports) {
  Handles handles;
  const HandleId device = handles.Open(HandleKind::Device, 0xDE0, kNoHandle);
  EXPECT_EQ(TextOf("Device with handle 0x0000000000000DE0 on interface 0x0000000000000A20 was not "
                   "closed properly using DevClose()",
                   device, handles),
            "Device with handle 0x0000000000000DE0 (DEV1) on interface 0x0000000000000A20 was not "
            "closed properly using DevClose()");
}

TEST(CallText, ShortensDumps) {
  std::string text;
  AppendDump(text, "0x01,0x02,0x03", 2);
  EXPECT_EQ(text, "01 02 ... (3 bytes)");
  text.clear();
  AppendDump(text, "0x01,0x02", 2);
  EXPECT_EQ(text, "01 02");
}

TEST(CallText, ShortensLists) {
  std::string list;
  for (int i = 0; i < 20; ++i) {
    list += "Segment[" + std::to_string(i) + "]=(pBuffer=0x0000000000001000, iSize=1);";
  }
  std::string text;
  AppendEntries(text, list + " (and 5 more)");
  EXPECT_TRUE(text.starts_with("[1 bytes; 1 bytes; ")) << text;
  EXPECT_TRUE(text.ends_with("; 1 bytes ... (25 entries)]")) << text;
  text.clear();
  AppendEntries(text, "NULL");
  EXPECT_EQ(text, "NULL");
}

TEST(CallText, ShowsTheFirstArgumentOfACallWithoutItsOwnLine) {
  Handles handles;
  EnteredCall call;
  call.function = CallShapes()[FindCallShape("DSClose")].functionIndex;
  std::string text;
  AppendEntered(text, call, handles);
  call.argumentKind = EnteredCall::Argument::Pointer;
  call.argument = 0xD50;
  AppendEntered(text, call, handles);
  call.handle = handles.Open(HandleKind::DataStream, 0xD50, kNoHandle);
  AppendEntered(text, call, handles);
  call.handle = kNoHandle;
  call.argumentKind = EnteredCall::Argument::Number;
  call.argument = static_cast<std::uint64_t>(-5);
  AppendEntered(text, call, handles);
  EXPECT_EQ(text, "DSClose()DSClose(0x0000000000000D50)DSClose(DS1)DSClose(-5)");
}

}  // namespace
}  // namespace vextrel_test
