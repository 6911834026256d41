// SPDX-License-Identifier: MIT
#include "reading/entries.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(Entries, AreReadByTheirLabels) {
  Entries entries;
  ASSERT_TRUE(
      ReadEntries("Chunk[0]=(ChunkID=0xa5, ChunkOffset=4294967296, ChunkLength=8);"
                  "Chunk[1]=(ChunkID=0x12, ChunkOffset=-8, ChunkLength=0); (and 3 more)",
                  entries));
  ASSERT_EQ(entries.shown.size(), 2U);
  EXPECT_EQ(entries.more, 3U);
  EXPECT_EQ(entries.shown[0].Find("ChunkID"), "0xa5");
  EXPECT_EQ(entries.shown[0].Find("ChunkOffset"), "4294967296");
  EXPECT_EQ(entries.shown[1].Find("ChunkOffset"), "-8");
  EXPECT_EQ(entries.shown[1].Find("Order"), "");
  ASSERT_TRUE(ReadEntries("Segment[0]=(pBuffer=0x0000000000001000, iSize=4096);", entries));
  EXPECT_EQ(entries.shown[0].Find("iSize"), "4096");
  EXPECT_EQ(entries.more, 0U);
  ASSERT_TRUE(
      ReadEntries("Info[0]=(iPartIndex=1, iCmd=BUFFER_PART_INFO_WIDTH, iType=INFO_DATATYPE_SIZET, "
                  "Buffer=640, iSize=8, iResult=GC_ERR_SUCCESS, Order=iResult iType);",
                  entries));
  EXPECT_EQ(entries.shown[0].Find("Order"), "iResult iType");
}

// A string that looks like the rest of its entry, and like another entry.
TEST(Entries, MayHoldAnyText) {
  const std::string text = "'a, iSize=1, iResult=x);Info[7]=(iCmd=b'";
  Entries entries;
  ASSERT_TRUE(
      ReadEntries("Info[0]=(iCmd=BUFFER_INFO_PIXELFORMAT_NAMESPACE, "
                  "iType=INFO_DATATYPE_STRING, Buffer=" +
                      text +
                      ", iSize=40, iResult=GC_ERR_SUCCESS);Info[1]=(iCmd=BUFFER_INFO_WIDTH, "
                      "iType=INFO_DATATYPE_UNKNOWN, Buffer=NULL, iSize=0, "
                      "iResult=GC_ERR_NOT_AVAILABLE);",
                  entries));
  ASSERT_EQ(entries.shown.size(), 2U);
  EXPECT_EQ(entries.shown[0].Find("Buffer"), text);
  EXPECT_EQ(entries.shown[1].Find("iResult"), "GC_ERR_NOT_AVAILABLE");
}

TEST(Entries, AreNotMadeOfAnythingElse) {
  Entries entries;
  for (const char* text : {"NULL", "Chunk[0]=(ChunkID=0xa5",
                           "Chunk[1]=(ChunkID=1, ChunkOffset=2, "
                           "ChunkLength=3);",
                           "Segment[0]=(pBuffer=1, iSize=2);x", "(and 3 more)"}) {
    EXPECT_FALSE(ReadEntries(text, entries)) << text;
    EXPECT_TRUE(entries.shown.empty()) << text;
  }
  // A query of nothing.
  EXPECT_TRUE(ReadEntries("", entries));
}

}  // namespace
}  // namespace vextrel_test
