// SPDX-License-Identifier: MIT
#include "commands/show_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string Show(const std::string& text, std::vector<std::string> options = {}) {
  const ScratchFile log(text);
  options.insert(options.begin(), "show");
  options.push_back(log.Path());
  const ProgramResult result = RunVextrel(options);
  EXPECT_EQ(result.status, 0) << result.errors;
  return result.output;
}

std::ptrdiff_t Lines(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

TEST(Show, HasOneLineForEachRecord) {
  const std::string shown = Show(SmallSession());
  EXPECT_EQ(Lines(shown), 36);
  EXPECT_THAT(shown, HasSubstr("       1 12:00:00.000   +0.000 T1  INFO Loading GenTL Producer "
                               "'/opt/camera.cti'\n"));
  EXPECT_THAT(shown, HasSubstr("       4 12:00:00.001   +0.000 T1  TLOpen() -> TL1\n"));
  EXPECT_THAT(shown, HasSubstr("TLOpenInterface(TL1, sInterfaceName=If, (0)) -> IF1\n"));
}

TEST(Show, NamesHandlesThatTheLogShowsInPieces) {
  const std::string shown = Show(SmallSession());
  EXPECT_THAT(shown, HasSubstr("IFOpenDevice(IF1, sDevName=Cam2, "
                               "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE) -> DEV1\n"));
  EXPECT_THAT(shown, HasSubstr("DevOpenDataStream(DEV1, pID=Stream0) -> DS1\n"));
  EXPECT_THAT(shown, HasSubstr("      16 12:00:00.110   +0.100 T1  EventGetData(EV1 NEW_BUFFER of "
                               "DS1, iTimeout=500) -> BUF1\n"));
  EXPECT_THAT(shown, HasSubstr("ERROR Buffer with handle 0x0000000000000B02 (BUF2) on DataStream "
                               "0x0000000000000D50 (DS1) was not revoked"));
}

TEST(Show, ShowsResultsOfFailedCallsAndNewerNames) {
  const std::string shown = Show(SmallSession());
  EXPECT_THAT(shown, HasSubstr("IFOpenDevice(IF1, sDevName=Cam1, "
                               "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE) GC_ERR_ACCESS_DENIED\n"));
  EXPECT_THAT(shown, HasSubstr("DSGetBufferInfo(DS1, BUF1, iCommand=BUFFER_INFO_DATA_SIZE) -> "
                               "Buffer=64\n"));
  EXPECT_THAT(shown,
              HasSubstr("GCGetLastError() -> ErrorText=somebody else uses Cam1, iSize=24\n"));
}

TEST(Show, FiltersByErrorsReportsFunctionsAndHandles) {
  EXPECT_EQ(Lines(Show(SmallSession(), {"--errors"})), 4);  // 2 calls, 2 reports
  EXPECT_EQ(Lines(Show(SmallSession(), {"--reports"})), 4);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--function", "DSQueueBuffer"})), 4);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--function", "DSQueueBuffer", "--function", "TLOpen"})),
            5);
  // Announced, queued, delivered, three times asked, queued, delivered, revoked.
  EXPECT_EQ(Lines(Show(SmallSession(), {"--handle", "BUF1"})), 9);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--handle", "buf1"})), 9);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--handle", "0xb01"})), 9);
}

TEST(Show, FiltersByTimeThreadAndSession) {
  EXPECT_EQ(Lines(Show(SmallSession(), {"--from", "12:00:01.012"})), 7);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--from", "+0.210", "--to", "+0.216"})), 4);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--thread", "T1"})), 36);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--thread", "7"})), 36);
  EXPECT_EQ(Lines(Show(SmallSession(), {"--thread", "T2"})), 0);
  EXPECT_EQ(Lines(Show(SmallSession() + SmallSession(), {"--session", "2"})), 36);
}

TEST(Show, ShowsRepeatedPollsOnce) {
  std::string text = SmallSession();
  const std::size_t begin = text.find("2026-11-21 12:00:00.710");
  const std::string poll = text.substr(begin, text.find('\n', begin) + 1 - begin);
  text.insert(begin, poll + poll);
  const std::string shown = Show(text);
  EXPECT_EQ(Lines(shown), 37);
  EXPECT_THAT(shown, HasSubstr("GC_ERR_TIMEOUT\n         ... 2 more like this one, until "
                               "12:00:00.710\n"));
  EXPECT_EQ(Lines(Show(text, {"--all"})), 38);
}

TEST(Show, PutsTheLogsLineBelow) {
  EXPECT_THAT(Show(SmallSession(), {"--raw", "--function", "GCInitLib"}),
              HasSubstr("GCInitLib()\n           2026-11-21 12:00:00.001 [7] INFO  "
                        "GC_ERR_SUCCESS=GCInitLib(void)\n"));
}

TEST(Show, ColorsErrorsIfAsked) {
  EXPECT_THAT(Show(SmallSession(), {"--errors", "--color", "always"}),
              HasSubstr("\x1b[31mIFOpenDevice("));
  EXPECT_THAT(Show(SmallSession(), {"--errors"}), Not(HasSubstr("\x1b")));
}

TEST(Show, ShowsWhatItCannotReadAndSaysSo) {
  const ScratchFile log("0x01)\n" + SmallSession() + LogLine(1015, "another program's\x1b line") +
                        "2026-11-21 12:00:02.000 [7] INFO  GC_ERR_SUC");
  const ProgramResult result = RunVextrel({"show", log.Path()});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, HasSubstr("? (the beginning is missing) 0x01)\n"));
  EXPECT_THAT(result.output, HasSubstr("| another program's\\x1b line\n"));
  EXPECT_THAT(result.output, HasSubstr("? (the end is missing) GC_ERR_SUC\n"));
  EXPECT_THAT(result.errors, HasSubstr("vextrel: 2 records could not be read; marked with '?'\n"));
  EXPECT_THAT(result.errors,
              HasSubstr("vextrel: 1 line from other programs or categories; marked with '|'\n"));
}

TEST(Show, SaysThatNothingFits) {
  const ScratchFile log(SmallSession());
  const ProgramResult result = RunVextrel({"show", "--handle", "BUF99", log.Path()});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "vextrel: no line of the log fits these options\n");
}

TEST(Show, ShowsDurationsAndCallsThatNeverReturned) {
  const std::string shown = Show(TimedCalls());
  EXPECT_EQ(Lines(shown), 4);
  EXPECT_THAT(shown,
              HasSubstr("       3 12:00:00.001   +0.000 T1     1.204 ms  TLOpen() -> TL1\n"));
  EXPECT_THAT(shown, HasSubstr("       7 12:00:00.002   +0.001 T1     0.850 us  GCGetInfo("));
  EXPECT_THAT(shown, HasSubstr("       4 12:00:00.002          T2  GCReadPort(TL1) entered and "
                               "never returned\n"));
  EXPECT_EQ(Lines(Show(TimedCalls(), {"--thread", "8"})), 1);
  EXPECT_EQ(Lines(Show(TimedCalls(), {"--function", "GCGetInfo"})), 2);
  EXPECT_EQ(Lines(Show(TimedCalls(), {"--handle", "TL1"})), 2);
  EXPECT_EQ(Lines(Show(TimedCalls(), {"--reports"})), 0);
}

TEST(Show, DecodesTheListsOfNewerFunctions) {
  const std::string shown = Show(
      LogLine(0,
              "GC_ERR_SUCCESS=DSGetBufferChunkData(hDS=0x0000000000000D50, "
              "hBuffer=0x0000000000000B01, 0x000000000000F000->(Chunks=Chunk[0]=(ChunkID=0x1001, "
              "ChunkOffset=614400, ChunkLength=8);), 0x000000000000F008->(iNumChunks=1))") +
      LogLine(1,
              "GC_ERR_SUCCESS=DSGetBufferPartInfoStacked(hDS=0x0000000000000D50, "
              "hBuffer=0x0000000000000B01, 0x000000000000F000->(Infos=Info[0]=(iPartIndex=1, "
              "iCmd=BUFFER_PART_INFO_WIDTH, iType=INFO_DATATYPE_SIZET, Buffer=640, iSize=8, "
              "iResult=GC_ERR_SUCCESS, Order=iResult iType);Info[1]=(iPartIndex=1, "
              "iCmd=BUFFER_PART_INFO_REGION_ID, iType=INFO_DATATYPE_UNKNOWN, Buffer=NULL, "
              "iSize=0, iResult=GC_ERR_NOT_AVAILABLE, Order=iResult iType);), iNumInfos=2)") +
      LogLine(2,
              "GC_ERR_SUCCESS=DSAnnounceCompositeBuffer(hDS=0x0000000000000D50, "
              "iNumSegments=2, ppSegments=0x000000000000F000, piSizes=0x000000000000F008, "
              "Segments=Segment[0]=(pBuffer=0x000000000000A000, iSize=4096);Segment[1]=("
              "pBuffer=0x000000000000B000, iSize=64);, pPrivate=0x0000000000000000, "
              "0x000000000000F010->(hBuffer=0x0000000000000B02))") +
      LogLine(3,
              "GC_ERR_SUCCESS=DSGetParentDev(hDS=0x0000000000000D50, "
              "0x000000000000F000->(hDev=0x0000000000000DE0))") +
      LogLine(4,
              "GC_ERR_INVALID_HANDLE=DSGetNumFlows(hDS=0x0000000000000D50, "
              "0x0000000000000000->(iNumFlows=NULL))"));
  EXPECT_THAT(shown, HasSubstr("DSGetBufferChunkData(DS1, BUF1) -> Chunks=[0x1001 at 614400, "
                               "8 bytes], iNumChunks=1\n"));
  EXPECT_THAT(shown, HasSubstr("(DS1, BUF1, iNumInfos=2) -> Infos=[part 1 BUFFER_PART_INFO_WIDTH="
                               "640; part 1 BUFFER_PART_INFO_REGION_ID=GC_ERR_NOT_AVAILABLE]\n"));
  EXPECT_THAT(shown, HasSubstr("DSAnnounceCompositeBuffer(DS1, iNumSegments=2, "
                               "Segments=[4096 bytes; 64 bytes]) -> BUF2\n"));
  // A question for the parent opens nothing.
  EXPECT_THAT(shown, HasSubstr("DSGetParentDev(DS1) -> hDev=0x0000000000000DE0\n"));
  EXPECT_THAT(shown, HasSubstr("DSGetNumFlows(DS1) GC_ERR_INVALID_HANDLE\n"));
}

TEST(Show, SaysWithWhatAHandleWasClosed) {
  const std::string shown = Show(
      SmallSession() + LogLine(1020, "GC_ERR_INVALID_HANDLE=EventKill(hEvent=0x0000000000000E10)"));
  EXPECT_THAT(shown, HasSubstr("EventKill(EV1 NEW_BUFFER of DS1(closed with DS1)) "
                               "GC_ERR_INVALID_HANDLE\n"));
}

TEST(Show, SaysWhatAHandleIsThatWasGivenForAnother) {
  const std::string shown =
      Show(LogLine(0, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
           LogLine(1,
                   "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
                   "0x000000000000F028->(sInterfaceName=If0), "
                   "0x000000000000F030->(hInterface=0000000000000A20))") +
           // Of a device, the log has shown no more than half of the handle.
           LogLine(2,
                   "GC_ERR_SUCCESS=IFOpenDevice(hInterface=0x0000000000000A20, "
                   "0x000000000000F038->(sDevName=Cam0), iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, "
                   "0x000000000000F040->(hDev=0xc0de0))") +
           LogLine(3, "GC_ERR_INVALID_HANDLE=DSClose(hDS=0x00000001000C0DE0)") +
           LogLine(4, "GC_ERR_INVALID_PARAMETER=DevClose(hDev=0x0000000000000A20)") +
           LogLine(5, "GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000D99)") +
           // Another kind may have the same value.
           LogLine(6,
                   "GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x00000001000C0DE0, "
                   "0x000000000000F058->(pID=S0), 0x000000000000F060->(hDS=0x0000000000000A20))") +
           LogLine(7, "GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000A20)"));
  EXPECT_THAT(shown, HasSubstr("DSClose(DEV1 \"Cam0\" (given as a data stream)) "
                               "GC_ERR_INVALID_HANDLE\n"));
  EXPECT_THAT(shown, HasSubstr("DevClose(IF1 \"If0\" (given as a device)) "
                               "GC_ERR_INVALID_PARAMETER\n"));
  EXPECT_THAT(shown, HasSubstr("12:00:00.005   +0.001 T1  DSClose(DS1) GC_ERR_INVALID_HANDLE\n"));
  EXPECT_THAT(shown, HasSubstr("DevOpenDataStream(DEV1, pID=S0) -> DS2\n"));
  EXPECT_THAT(shown, HasSubstr("12:00:00.007   +0.001 T1  DSClose(DS2) GC_ERR_INVALID_HANDLE\n"));
}

TEST(Show, FindsAHandleThatWasGivenForAnother) {
  const std::string shown =
      Show(LogLine(0, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
               LogLine(1, "GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000A10)") +
               LogLine(2, "GC_ERR_INVALID_HANDLE=DSClose(hDS=0x0000000000000D99)"),
           {"--handle", "TL1"});
  EXPECT_EQ(Lines(shown), 2);
}

TEST(Show, ShowsPointersAsTheyWereAnnounced) {
  const auto info = [](std::string_view buffer, std::string_view command, std::string_view value) {
    return LogLine(1, "GC_ERR_SUCCESS=DSGetBufferInfo(hDS=0x0000000000000D50, hBuffer=0x" +
                          std::string(buffer) + ", iCommand=" + std::string(command) +
                          ", 0x000000000000F010->(iType=INFO_DATATYPE_PTR) "
                          "0x000000000000F018->(Buffer=" +
                          std::string(value) + "), 0x000000000000F020->(iSize=8))");
  };
  const std::string shown = Show(
      LogLine(0,
              "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x0000000000000D50, "
              "pBuffer=0x000000000000F100, iSize=64, pPrivate=0x00000000000ABCDE, "
              "0x000000000000F068->(hBuffer=0x0000000000000B01))") +
      LogLine(0,
              "GC_ERR_SUCCESS=DSAllocAndAnnounceBuffer(hDS=0x0000000000000D50, iSize=64, "
              "pPrivate=0x0000000000000000, 0x000000000000F068->(hBuffer=0x0000000000000B02))") +
      info("0000000000000B01", "BUFFER_INFO_BASE", "0x000000000000F018") +
      info("0000000000000B01", "BUFFER_INFO_USER_PTR", "0x000000000000F018") +
      info("0000000000000B02", "BUFFER_INFO_BASE", "0x000000000000F018"));
  EXPECT_THAT(shown, HasSubstr("(DS1, BUF1, iCommand=BUFFER_INFO_BASE) -> "
                               "Buffer=0x000000000000F100\n"));
  EXPECT_THAT(shown, HasSubstr("(DS1, BUF1, iCommand=BUFFER_INFO_USER_PTR) -> "
                               "Buffer=0x00000000000ABCDE\n"));
  EXPECT_THAT(
      Show(LogLine(
          0,
          "GC_ERR_SUCCESS=DSGetInfo(hDS=0x0000000000000D50, iCmd=STREAM_INFO_ID, "
          "0x000000000000F010->(iType=INFO_DATATYPE_UNKNOWN) "
          "0x000000000000F018->(Buffer=0x000000000000F018), 0x000000000000F020->(iSize=8))")),
      HasSubstr("DSGetInfo(DS1, iCmd=STREAM_INFO_ID) -> Buffer=(not in the log)\n"));
  // Where the producer allocated it, nothing says.
  EXPECT_THAT(shown, HasSubstr("(DS1, BUF2, iCommand=BUFFER_INFO_BASE) -> "
                               "Buffer=(not in the log)\n"));
}

TEST(Show, SaysThatItFoundRolledFiles) {
  const std::string whole = SmallSession();
  const std::size_t half = whole.find("2026-11-21 12:00:00.110");
  const ScratchFile log(whole.substr(half));
  const std::string older = log.Beside(whole.substr(0, half), "app.log.1");
  const ProgramResult result = RunVextrel({"show", log.Path()});
  EXPECT_EQ(Lines(result.output), 36);
  EXPECT_THAT(result.errors, HasSubstr("also read, before the log itself: " + older));
}

TEST(Show, RefusesFunctionsAndTimesThatAreNone) {
  const ScratchFile log(SmallSession());
  const ProgramResult function = RunVextrel({"show", "--function", "Queue", log.Path()});
  EXPECT_EQ(function.status, 2);
  EXPECT_THAT(function.errors, HasSubstr("'Queue' is no function"));
  const ProgramResult time = RunVextrel({"show", "--from", "noon", log.Path()});
  EXPECT_EQ(time.status, 2);
  EXPECT_THAT(time.errors, HasSubstr("'noon' is no time"));
}

}  // namespace
}  // namespace vextrel_test
