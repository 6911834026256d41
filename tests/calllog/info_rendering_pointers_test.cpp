#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "calllog/guarded_memory.h"
#include "calllog/info_rendering.h"
#include "calllog/rendered.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace std::string_literals;
using vextrel::RenderAddress;
using vextrel::RenderBufferValue;
using vextrel::RenderPointerSlot;
using vextrel::TextOrNull;

TEST(RenderAddress, ShowsSixteenUpperCaseDigitsBehindAPrefix) {
  EXPECT_EQ(Whole(RenderAddress(Handle(0x12FF40))), WithNul("0x000000000012FF40"));
  EXPECT_EQ(Whole(RenderAddress(Handle(1))), WithNul("0x0000000000000001"));
  EXPECT_EQ(Whole(RenderAddress(Handle(0xFEDCBA9876543210))), WithNul("0xFEDCBA9876543210"));
  EXPECT_EQ(Whole(RenderAddress(Handle(0xFFFFFFFFFFFFFFFF))), WithNul("0xFFFFFFFFFFFFFFFF"));
}

TEST(RenderAddress, ShowsNullForANullPointer) {
  EXPECT_EQ(Whole(RenderAddress(nullptr)), WithNul("NULL"));
}

TEST(RenderPointerSlot, ShowsNullForNoSlot) {
  EXPECT_EQ(Whole(RenderPointerSlot(nullptr)), WithNul("NULL"));
}

TEST(RenderPointerSlot, ShowsTheSlotAndWithABlankTheStoredPointer) {
  const void* slot = Handle(0xABCDEF);
  EXPECT_EQ(Whole(RenderPointerSlot(&slot)),
            WithNul("0x" + Hex16(static_cast<const void*>(&slot)) + " (0x0000000000ABCDEF)"));
}

TEST(RenderPointerSlot, ShowsAnEmptySlotWithoutABlank) {
  const void* slot = nullptr;
  EXPECT_EQ(Whole(RenderPointerSlot(&slot)),
            WithNul("0x" + Hex16(static_cast<const void*>(&slot)) + "(NULL)"));
}

TEST(RenderPointerSlot, ReadsTheSlotButNotWhatItPointsTo) {
  const GuardedMemory memory(1);
  const void* slot = memory.forbidden();
  EXPECT_EQ(Whole(RenderPointerSlot(&slot)), WithNul("0x" + Hex16(static_cast<const void*>(&slot)) +
                                                     " (0x" + Hex16(memory.forbidden()) + ")"));
}

TEST(RenderBufferValue, ShowsNullForANullPointer) {
  EXPECT_EQ(Whole(RenderBufferValue(nullptr)), WithNul("NULL"));
}

TEST(RenderBufferValue, ShowsTheContentAsTextAndItsFirstCharacter) {
  EXPECT_EQ(Whole(RenderBufferValue("abc")), WithNul("0xabc->(a)"));
  EXPECT_EQ(Whole(RenderBufferValue("Z")), WithNul("0xZ->(Z)"));
  EXPECT_EQ(Whole(RenderBufferValue("ab\0cd")), WithNul("0xab->(a)"));
}

TEST(RenderBufferValue, KeepsTheNulOfABufferThatStartsWithOne) {
  EXPECT_EQ(Whole(RenderBufferValue("\0abc")), "0x->(\0)\0"s);
  EXPECT_STREQ(RenderBufferValue("\0abc").c_str(), "0x->(");
}

TEST(RenderBufferValue, ShowsBytesThatAreNoAsciiAsTheyAre) {
  EXPECT_EQ(Whole(RenderBufferValue("\xff\x80%s")), WithNul("0x\xff\x80%s->(\xff)"));
}

TEST(RenderBufferValue, ReadsNothingBehindTheNul) {
  GuardedMemory memory(8);
  const std::array<std::uint8_t, 3> bytes = {'h', 'i', 0};
  EXPECT_EQ(Whole(RenderBufferValue(memory.PutAtEnd(bytes))), WithNul("0xhi->(h)"));
  const std::array<std::uint8_t, 1> empty = {0};
  EXPECT_EQ(Whole(RenderBufferValue(memory.PutAtEnd(empty))), "0x->(\0)\0"s);
}

TEST(RenderBufferValue, ShowsLongBuffersWhole) {
  const std::string text(50'000, 'q');
  EXPECT_EQ(Whole(RenderBufferValue(text.c_str())), WithNul("0x" + text + "->(q)"));
}

TEST(TextOrNull, GivesTheTextItselfAndNoCopy) {
  const char* text = "interface 1";
  EXPECT_EQ(TextOrNull(text), text);
  const char* empty = "";
  EXPECT_EQ(TextOrNull(empty), empty);
}

TEST(TextOrNull, GivesNullInWordsForANullPointer) {
  EXPECT_STREQ(TextOrNull(nullptr), "NULL");
}

}  // namespace
}  // namespace vextrel_test
