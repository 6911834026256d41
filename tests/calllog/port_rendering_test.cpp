#include "calllog/port_rendering.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/port_rendering_reference.h"
#include "calllog/rendered.h"

namespace vextrel_test {
namespace {

using vextrel::RenderPortData;

using Entries = std::vector<PORT_REGISTER_STACK_ENTRY>;

std::string PortData(const Entries& entries) {
  return RenderPortData(entries.data(), entries.size());
}

// Entries without data.
Entries EmptyEntries(std::size_t count) {
  return Entries(count, PORT_REGISTER_STACK_ENTRY{0, nullptr, 0});
}

TEST(RenderByteDump, IsEmptyForNoBytes) {
  EXPECT_EQ(DumpOf("abc", 0), WithNul(""));
}

TEST(RenderByteDump, IsEmptyForANullPointerWhateverTheSize) {
  EXPECT_EQ(DumpOf(nullptr, 0), WithNul(""));
  EXPECT_EQ(DumpOf(nullptr, 16), WithNul(""));
  EXPECT_EQ(DumpOf(nullptr, std::numeric_limits<std::size_t>::max()), WithNul(""));
}

TEST(RenderByteDump, ShowsOneByteWithoutCommaOrLineFeed) {
  EXPECT_EQ(DumpOf("\x7f", 1), WithNul("0x7f"));
}

TEST(RenderByteDump, ShowsTwoLowerCaseDigitsPerByte) {
  const std::array<std::uint8_t, 6> bytes = {0x0A, 0xFF, 0x00, 0x10, 0x9B, 0xC0};
  EXPECT_EQ(DumpOf(bytes.data(), bytes.size()), WithNul("0x0a,0xff,0x00,0x10,0x9b,0xc0"));
}

TEST(RenderByteDump, EndsAFullLineWithALineFeedAndWithoutAComma) {
  const Bytes bytes = CountedBytes(16);
  EXPECT_EQ(DumpOf(bytes.data(), bytes.size()),
            WithNul("0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                    "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f\n"));
}

TEST(RenderByteDump, BreaksTheLineBehindTheCommaOfTheSixteenthByte) {
  const Bytes bytes = CountedBytes(17);
  EXPECT_EQ(DumpOf(bytes.data(), bytes.size()),
            WithNul("0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                    "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f,\n0x10"));
}

TEST(RenderByteDump, EndsTheSecondFullLineWithALineFeed) {
  const Bytes bytes = CountedBytes(32);
  EXPECT_EQ(DumpOf(bytes.data(), bytes.size()),
            WithNul("0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                    "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f,\n"
                    "0x10,0x11,0x12,0x13,0x14,0x15,0x16,0x17,"
                    "0x18,0x19,0x1a,0x1b,0x1c,0x1d,0x1e,0x1f\n"));
}

TEST(RenderPortData, IsEmptyForNoEntriesEvenWithoutAnArray) {
  EXPECT_EQ(RenderPortData(nullptr, 0), WithNul(""));
  const Entries entries = EmptyEntries(1);
  EXPECT_EQ(RenderPortData(entries.data(), 0), WithNul(""));
}

TEST(RenderPortData, ShowsEntriesOneBehindTheOther) {
  std::array<std::uint8_t, 4> four = {1, 2, 3, 4};
  std::array<std::uint8_t, 2> two = {0, 0};
  EXPECT_EQ(PortData({{0x1000, four.data(), 4}, {0x2004, two.data(), 2}}),
            WithNul("Address[0], 0x0000000000001000->(Buffer='0x01,0x02,0x03,0x04'), iSize=4;"
                    "Address[1], 0x0000000000002004->(Buffer='0x00,0x00'), iSize=2;"));
}

TEST(RenderPortData, ShowsSizesInHexadecimalWithoutAPrefix) {
  Bytes bytes = CountedBytes(16);
  EXPECT_EQ(PortData({{0x10, bytes.data(), 16}}),
            WithNul("Address[0], 0x0000000000000010->(Buffer='"
                    "0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                    "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f\n'), iSize=10;"));
}

TEST(RenderPortData, ShowsAnEmptyBufferForAnEntryWithoutData) {
  EXPECT_EQ(PortData({{0x2A, nullptr, 0xABCDEF}}),
            WithNul("Address[0], 0x000000000000002a->(Buffer=''), iSize=abcdef;"));
  EXPECT_EQ(PortData({{0x2A, nullptr, 0xFFFFFFFFFFFFFFFF}}),
            WithNul("Address[0], 0x000000000000002a->(Buffer=''), iSize=ffffffffffffffff;"));
  std::uint8_t byte = 1;
  EXPECT_EQ(PortData({{0x2A, &byte, 0}}),
            WithNul("Address[0], 0x000000000000002a->(Buffer=''), iSize=0;"));
}

TEST(RenderPortData, ShowsAddressesWithSixteenLowerCaseDigits) {
  EXPECT_EQ(PortData({{0xFFFFFFFFFFFFFFFF, nullptr, 0}}),
            WithNul("Address[0], 0xffffffffffffffff->(Buffer=''), iSize=0;"));
  EXPECT_EQ(PortData({{0, nullptr, 0}}),
            WithNul("Address[0], 0x0000000000000000->(Buffer=''), iSize=0;"));
  EXPECT_EQ(PortData({{0xFEDCBA9876543210, nullptr, 0}}),
            WithNul("Address[0], 0xfedcba9876543210->(Buffer=''), iSize=0;"));
}

TEST(RenderPortData, CountsEveryIndexButTheFirstInHexadecimal) {
  std::string expected;
  for (const char* index : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "a"}) {
    expected += std::string("Address[") + index + "], 0x0000000000000000->(Buffer=''), iSize=0;";
  }
  EXPECT_EQ(PortData(EmptyEntries(11)), WithNul(expected));
}

TEST(RenderPortData, KeepsIndicesInHexadecimalWithoutFill) {
  const std::string text = PortData(EmptyEntries(257));
  EXPECT_NE(text.find(";Address[f], "), std::string::npos);
  EXPECT_NE(text.find(";Address[10], "), std::string::npos);
  EXPECT_NE(text.find(";Address[ff], "), std::string::npos);
  EXPECT_NE(text.find(";Address[100], "), std::string::npos);
  EXPECT_EQ(text.find("Address[101]"), std::string::npos);
}

TEST(RenderPortData, TakesTheLow32BitsOfTheCountAsASignedNumber) {
  const Entries entries = EmptyEntries(2);
  const std::string two = PortData(entries);
  EXPECT_EQ(RenderPortData(entries.data(), 0x100000002), two);
  EXPECT_EQ(RenderPortData(entries.data(), 0xFFFFFFFF00000002), two);
  EXPECT_EQ(RenderPortData(nullptr, 0x100000000), WithNul(""));
  EXPECT_EQ(RenderPortData(nullptr, 0x80000000), WithNul(""));
  EXPECT_EQ(RenderPortData(nullptr, 0xFFFFFFFF), WithNul(""));
  EXPECT_EQ(RenderPortData(nullptr, std::numeric_limits<std::size_t>::max()), WithNul(""));
}

TEST(RenderPortData, ReadsNothingBehindTheLastEntryAndItsData) {
  GuardedMemory data(64);
  GuardedMemory array(64);
  const Bytes bytes = CountedBytes(3);
  const PORT_REGISTER_STACK_ENTRY entry = {1, const_cast<void*>(data.PutAtEnd(bytes)), 3};
  const auto* begin = reinterpret_cast<const std::uint8_t*>(&entry);
  const void* entries = array.PutAtEnd({begin, sizeof entry});
  EXPECT_EQ(RenderPortData(static_cast<const PORT_REGISTER_STACK_ENTRY*>(entries), 1),
            WithNul("Address[0], 0x0000000000000001->(Buffer='0x00,0x01,0x02'), iSize=3;"));
}

TEST(RenderPortData, ChangesNeitherEntriesNorData) {
  Bytes bytes = CountedBytes(40);
  const Bytes before = bytes;
  const Entries entries = {{5, bytes.data(), 40}, {6, nullptr, 7}};
  EXPECT_EQ(PortData(entries), ReferencePortData(entries.data(), entries.size()));
  EXPECT_EQ(bytes, before);
  EXPECT_EQ(entries[0].Address, 5U);
  EXPECT_EQ(entries[0].pBuffer, bytes.data());
  EXPECT_EQ(entries[0].Size, 40U);
  EXPECT_EQ(entries[1].pBuffer, nullptr);
  EXPECT_EQ(entries[1].Size, 7U);
}

}  // namespace
}  // namespace vextrel_test
