// SPDX-License-Identifier: MIT
#include "reading/message.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

Message Parsed(std::string_view text) {
  Message message;
  ParseMessage(text, message);
  return message;
}

const PlaceValue& ValueOf(const Message& message, Label label) {
  const std::size_t place = message.shape->Find(label);
  EXPECT_NE(place, kNoPlace) << label.text;
  return message.values[place];
}

TEST(Message, ReadsACallWithoutArguments) {
  const Message message = Parsed("GC_ERR_SUCCESS=GCInitLib(void)");
  ASSERT_TRUE(message.IsCall());
  EXPECT_EQ(message.shape->function, "GCInitLib");
  EXPECT_FALSE(message.Failed());
}

TEST(Message, ReadsResults) {
  EXPECT_EQ(Parsed("GC_ERR_TIMEOUT=EventKill(hEvent=0x0000000000000001)").result, GC_ERR_TIMEOUT);
  EXPECT_EQ(Parsed("GC_ERR_CUSTOM_ID=GCCloseLib(void)").result, GC_ERR_CUSTOM_ID);
  EXPECT_EQ(Parsed("(Unknown GC_ERROR: -1022)=GCCloseLib(void)").result, -1022);
  EXPECT_TRUE(Parsed("(Unknown GC_ERROR: -1022)=GCCloseLib(void)").Failed());
}

TEST(Message, ReadsNumbersAndHandles) {
  const Message message = Parsed(
      "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x00007FD81902F000, pBuffer=0x0000000000000010, "
      "iSize=4294967295, pPrivate=0x0000000000000000, 0x00000000000000FF->(hBuffer="
      "0xFFFFFFFFFFFFFFFE))");
  ASSERT_TRUE(message.IsCall());
  EXPECT_EQ(ValueOf(message, "hDS").number, 0x00007FD81902F000U);
  EXPECT_EQ(ValueOf(message, "iSize").number, 4294967295U);
  EXPECT_EQ(ValueOf(message, "hBuffer").number, 0xFFFFFFFFFFFFFFFEU);
}

TEST(Message, ReadsTextsThatHoldAnything) {
  const Message message = Parsed(
      "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000001, 0x0000000000000002->(sInterfaceName="
      "a), 0x(b=c,\n\"\xFF), 0x0000000000000003->(hInterface=0000000000000004))");
  ASSERT_TRUE(message.IsCall());
  EXPECT_EQ(ValueOf(message, "sInterfaceName").text, "a), 0x(b=c,\n\"\xFF");
  EXPECT_EQ(ValueOf(message, "hInterface").number, 4U);
}

TEST(Message, ReadsADumpBehindTheSameDataAsText) {
  const Message message = Parsed(
      "GC_ERR_SUCCESS=GCReadPort(hPort=0x0000000000000001, iAddress=0xffffffffffffffff, "
      "0x0000000000000002->(Buffer=a,0x,0x61,0x2c,0x30,0x78), 0x0000000000000003->(iSize=4)");
  ASSERT_TRUE(message.IsCall());
  EXPECT_EQ(ValueOf(message, "iAddress").number, 0xFFFFFFFFFFFFFFFFU);
  EXPECT_EQ(message.values[3].text, "a,0x");
  EXPECT_EQ(ValueOf(message, "Buffer").text, "0x61,0x2c,0x30,0x78");
}

TEST(Message, ReadsADumpOfSeveralLinesWithEitherLineBreak) {
  const std::string line =
      "0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,0x08,0x09,0x0a,0x0b,0x0c,0x0d,"
      "0x0e,0x0f,";
  for (const std::string lineBreak : {"\n", "\r\n"}) {
    const std::string dump = line + lineBreak + "0x10";
    const Message message = Parsed(
        "GC_ERR_SUCCESS=GCReadPort(hPort=0x0000000000000001, iAddress=0x0, "
        "0x0000000000000002->(Buffer=," +
        dump + "), 0x0000000000000003->(iSize=17)");
    ASSERT_TRUE(message.IsCall());
    EXPECT_EQ(message.values[3].text, "");
    EXPECT_EQ(ValueOf(message, "Buffer").text, dump);
  }
}

TEST(Message, TellsTheTwoLinesOfAFunctionApart) {
  const Message with = Parsed(
      "GC_ERR_SUCCESS=IFUpdateDeviceList(hInterface=0x0000000000000001, "
      "0x0000000000000002->(bHasChanged=-1), iTimeout=100)");
  const Message without = Parsed(
      "GC_ERR_SUCCESS=IFUpdateDeviceList(hInterface=0x0000000000000001, 0x0000000000000000, "
      "iTimeout=100)");
  ASSERT_TRUE(with.IsCall());
  ASSERT_TRUE(without.IsCall());
  EXPECT_NE(with.line, without.line);
  EXPECT_EQ(static_cast<std::int64_t>(ValueOf(with, "bHasChanged").number), -1);
  EXPECT_EQ(ValueOf(without, "iTimeout").number, 100U);
}

TEST(Message, ReadsReports) {
  const Message message = Parsed(
      "The event 4 on handle 0x0000000000000000 was not previously registered correctly using "
      "GCRegisterEvent()!");
  EXPECT_EQ(message.kind, MessageKind::Report);
  EXPECT_EQ(message.values[0].number, 4U);
  EXPECT_EQ(Parsed("GEventGetData not exported").kind, MessageKind::Report);
  EXPECT_EQ(Parsed("this text is not exported").kind, MessageKind::Other);
}

TEST(Message, LeavesCutAndForeignLinesUnread) {
  const std::string whole =
      "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000001, "
      "hB=0x0000000000000002)";
  ASSERT_TRUE(Parsed(whole).IsCall());
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(Parsed(std::string_view(whole).substr(0, size)).kind, MessageKind::Other) << size;
  }
  EXPECT_EQ(Parsed(whole + ")").kind, MessageKind::Other);
  EXPECT_EQ(Parsed("GC_ERR_NEVER_HEARD_OF=GCCloseLib(void)").kind, MessageKind::Other);
  EXPECT_EQ(Parsed("GC_ERR_SUCCESS=NoSuchFunction(void)").kind, MessageKind::Other);
}

TEST(Message, IsToldByItsFirstWords) {
  EXPECT_TRUE(StartsMessage("GC_ERR_SUCCESS=GCInitLib(void)"));
  EXPECT_TRUE(StartsMessage("(Unknown GC_ERROR: -1022)=GCCloseLib(void)"));
  EXPECT_TRUE(StartsMessage("Loading GenTL Producer 'x'"));
  EXPECT_TRUE(StartsMessage("TLOpen not exported"));
  EXPECT_FALSE(StartsMessage("GC_ERR_SUCCESS="));
  EXPECT_FALSE(StartsMessage("0x00,0x01"));
}

}  // namespace
}  // namespace vextrel_test
