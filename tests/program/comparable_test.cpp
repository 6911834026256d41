// SPDX-License-Identifier: MIT
#include "views/comparable.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

ComparableCall Comparable(const std::string& line) {
  Message message;
  ParseMessage(line, message);
  EXPECT_TRUE(IsComparable(Record(), message)) << line;
  return MakeComparable(Record(), message, Context(), Handles());
}

std::string Info(const std::string& command, const std::string& value,
                 const std::string& result = "GC_ERR_SUCCESS", const std::string& at = "F010") {
  return result + "=DSGetBufferInfo(hDS=0x0000000000000D50, hBuffer=0x0000000000000B01, iCommand=" +
         command + ", 0x000000000000" + at + "->(iType=INFO_DATATYPE_UINT64) 0x000000000000F018->" +
         "(Buffer=" + value + "), 0x000000000000F020->(iSize=8))";
}

TEST(Comparable, HasCommandsResultsAndValuesApart) {
  const ComparableCall call = Comparable(Info("BUFFER_INFO_WIDTH", "640"));
  EXPECT_EQ(call.what, Comparable(Info("BUFFER_INFO_WIDTH", "641")).what);
  EXPECT_NE(call.values, Comparable(Info("BUFFER_INFO_WIDTH", "641")).values);
  EXPECT_NE(call.what, Comparable(Info("BUFFER_INFO_HEIGHT", "640")).what);
  const ComparableCall failed = Comparable(Info("BUFFER_INFO_WIDTH", "640", "GC_ERR_NO_DATA"));
  EXPECT_EQ(call.what, failed.what);
  EXPECT_NE(call.result, failed.result);
}

// Addresses, times, line ends of a platform, and which name a version of GenTL has for a command.
TEST(Comparable, LeavesOutWhatBelongsToARun) {
  const auto equal = [](const std::string& left, const std::string& right) {
    const ComparableCall one = Comparable(left);
    const ComparableCall other = Comparable(right);
    return one.what == other.what && one.values == other.values && one.result == other.result;
  };
  EXPECT_TRUE(equal(Info("BUFFER_INFO_WIDTH", "640"),
                    Info("BUFFER_INFO_WIDTH", "640", "GC_ERR_SUCCESS", "A010")));
  EXPECT_TRUE(equal(Info("BUFFER_INFO_BASE", "0x0000000000001000"),
                    Info("BUFFER_INFO_BASE", "0x0000000000002000")));
  EXPECT_TRUE(equal(Info("BUFFER_INFO_TIMESTAMP", "1"), Info("BUFFER_INFO_TIMESTAMP", "2")));
  EXPECT_TRUE(equal(Info("(Unknown BUFFER_INFO_CMD: 28)", "1"),
                    Info("(Unknown BUFFER_INFO_CMD: 28)", "2")));
  EXPECT_TRUE(
      equal(Info("(Unknown BUFFER_INFO_CMD: 27)", "1"), Info("BUFFER_INFO_DATA_SIZE", "1")));
  EXPECT_TRUE(equal(Info("BUFFER_INFO_WIDTH", "a\r\nb"), Info("BUFFER_INFO_WIDTH", "a\nb")));
  const std::string head =
      "GC_ERR_SUCCESS=DSAnnounceCompositeBuffer(hDS=0x0000000000000D50, "
      "iNumSegments=1, ppSegments=0x000000000000F000, "
      "piSizes=0x000000000000F008, Segments=Segment[0]=(pBuffer=0x";
  const std::string tail =
      ");, pPrivate=0x0000000000000000, "
      "0x000000000000F010->(hBuffer=0x0000000000000B02))";
  EXPECT_TRUE(
      equal(head + "000000000000A000, iSize=4" + tail, head + "000000000000B000, iSize=4" + tail));
  EXPECT_FALSE(
      equal(head + "000000000000A000, iSize=4" + tail, head + "000000000000A000, iSize=5" + tail));
}

TEST(Comparable, AreCallsAndReportsOfMisuseOnly) {
  const auto isComparable = [](const std::string& line) {
    Message message;
    ParseMessage(line, message);
    return IsComparable(Record(), message);
  };
  EXPECT_TRUE(isComparable("GC_ERR_SUCCESS=GCInitLib(void)"));
  EXPECT_TRUE(isComparable("GCInitLib has not been called yet!"));
  EXPECT_FALSE(isComparable("Loading GenTL Producer 'x'"));
  EXPECT_FALSE(isComparable("Call 1 enters GCInitLib()"));
  EXPECT_FALSE(isComparable("hello"));
}

}  // namespace
}  // namespace vextrel_test
