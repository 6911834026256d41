#include "calllog/line_format.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "calllog/guarded_memory.h"
#include "calllog/info_rendering.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace std::string_literals;
using vextrel::FormatLine;
using vextrel::noValue;
using vextrel::RenderedText;

constexpr std::uint32_t kMax32 = 0xFFFFFFFF;
constexpr std::uint64_t kMax64 = 0xFFFFFFFFFFFFFFFF;

TEST(FormatText, ShowsTextsOfEveryKind) {
  const char* constant = "constant";
  std::array<char, 4> array = {'a', 'b', 'c', '\0'};
  char* variable = array.data();
  EXPECT_EQ(FormatLine("%s", constant), "constant");
  EXPECT_EQ(FormatLine("%s", variable), "abc");
  EXPECT_EQ(FormatLine("%s", std::string("string")), "string");
  EXPECT_EQ(FormatLine("%s", RenderedText{"rendered"}), "rendered");
}

TEST(FormatText, ShowsEmptyTexts) {
  const char* constant = "";
  EXPECT_EQ(FormatLine("'%s'", constant), "''");
  EXPECT_EQ(FormatLine("'%s'", std::string()), "''");
  EXPECT_EQ(FormatLine("'%s'", RenderedText{}), "''");
}

TEST(FormatText, ShowsNullTextsInBrackets) {
  const char* constant = nullptr;
  char* variable = nullptr;
  EXPECT_EQ(FormatLine("%s", constant), "(null)");
  EXPECT_EQ(FormatLine("<%s>", variable), "<(null)>");
}

TEST(FormatText, EndsAtTheFirstNul) {
  const char* constant = "ab\0cd";
  EXPECT_EQ(FormatLine("<%s>", constant), "<ab>");
  EXPECT_EQ(FormatLine("<%s>", "ab\0cd"s), "<ab>");
  EXPECT_EQ(FormatLine("<%s>", "\0cd"s), "<>");
  EXPECT_EQ(FormatLine("<%s>", vextrel::RenderBufferValue("\0")), "<0x->(>");
}

TEST(FormatText, ShowsLongTextsWhole) {
  const std::string text(200'000, 'z');
  EXPECT_EQ(FormatLine("%s", text), text);
  EXPECT_EQ(FormatLine("<%s|%s>", text, text.c_str()), "<" + text + "|" + text + ">");
}

TEST(FormatText, KeepsPercentSignsInTexts) {
  const char* text = "%s%n%d 100%";
  EXPECT_EQ(FormatLine("%s", text), "%s%n%d 100%");
  EXPECT_EQ(FormatLine("%s%s", std::string("%"), std::string("s")), "%s");
}

TEST(FormatText, ReadsNothingBehindTheNul) {
  GuardedMemory memory(8);
  const std::array<std::uint8_t, 3> bytes = {'o', 'k', 0};
  const auto* text = static_cast<const char*>(memory.PutAtEnd(bytes));
  EXPECT_EQ(FormatLine("%s", text), "ok");
}

TEST(FormatPointer, ShowsSixteenUpperCaseDigitsWithoutPrefix) {
  EXPECT_EQ(FormatLine("%p", Handle(0x12FF40)), "000000000012FF40");
  EXPECT_EQ(FormatLine("0x%p", Handle(0xFEDCBA9876543210)), "0xFEDCBA9876543210");
  EXPECT_EQ(FormatLine("%p", Handle(0xFFFFFFFFFFFFFFFF)), "FFFFFFFFFFFFFFFF");
}

TEST(FormatPointer, ShowsZerosForANullPointer) {
  EXPECT_EQ(FormatLine("0x%p", Handle(0)), "0x0000000000000000");
}

TEST(FormatPointer, TakesPointersOfEveryKind) {
  const std::uint32_t constant = 1;
  std::size_t variable = 2;
  void* slot = &variable;
  EXPECT_EQ(FormatLine("%p", &constant), Hex16(&constant));
  EXPECT_EQ(FormatLine("%p", &variable), Hex16(&variable));
  EXPECT_EQ(FormatLine("%p", &slot), Hex16(static_cast<const void*>(&slot)));
}

TEST(FormatPointer, ShowsWhereACharacterBufferLiesAndDoesNotReadIt) {
  const GuardedMemory memory(1);
  const auto* buffer = static_cast<const char*>(memory.forbidden());
  EXPECT_EQ(FormatLine("0x%p", buffer), "0x" + Hex16(memory.forbidden()));
}

TEST(FormatUnsigned, ShowsTheLimitsOf32Bits) {
  EXPECT_EQ(FormatLine("%u", 0U), "0");
  EXPECT_EQ(FormatLine("%u", kMax32), "4294967295");
  EXPECT_EQ(FormatLine("%lu", 0U), "0");
  EXPECT_EQ(FormatLine("%lu", kMax32), "4294967295");
}

TEST(FormatUnsigned, ShowsTheLow32BitsOfLongerValues) {
  EXPECT_EQ(FormatLine("%u", std::uint64_t{0x100000000}), "0");
  EXPECT_EQ(FormatLine("%u", std::uint64_t{0x100000005}), "5");
  EXPECT_EQ(FormatLine("%u", kMax64), "4294967295");
  EXPECT_EQ(FormatLine("%lu", std::uint64_t{0x100000000}), "0");
  EXPECT_EQ(FormatLine("%lu", std::uint64_t{0x1234567800000007}), "7");
  EXPECT_EQ(FormatLine("%lu", kMax64), "4294967295");
}

TEST(FormatUnsigned, ShowsNegativeNumbersAsTheir32Bits) {
  EXPECT_EQ(FormatLine("%u", -1), "4294967295");
  EXPECT_EQ(FormatLine("%lu", std::numeric_limits<std::int32_t>::min()), "2147483648");
}

TEST(FormatUnsigned, TakesShorterNumbers) {
  EXPECT_EQ(FormatLine("%u", std::uint8_t{255}), "255");
  EXPECT_EQ(FormatLine("%u", std::uint16_t{65535}), "65535");
  EXPECT_EQ(FormatLine("%u%u", true, false), "10");
}

TEST(FormatUnsigned, ShowsADecimalNumberBehindAHexadecimalPrefix) {
  EXPECT_EQ(FormatLine("0x%u", 255U), "0x255");
}

TEST(FormatSigned, ShowsTheLimitsOf32Bits) {
  EXPECT_EQ(FormatLine("%d", 0), "0");
  EXPECT_EQ(FormatLine("%d", -1), "-1");
  EXPECT_EQ(FormatLine("%d", std::numeric_limits<std::int32_t>::max()), "2147483647");
  EXPECT_EQ(FormatLine("%d", std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(FormatSigned, ShowsTheLow32BitsOfLongerValues) {
  EXPECT_EQ(FormatLine("%d", std::uint64_t{0x100000005}), "5");
  EXPECT_EQ(FormatLine("%d", kMax64), "-1");
  EXPECT_EQ(FormatLine("%d", kMax32), "-1");
  EXPECT_EQ(FormatLine("%d", std::numeric_limits<std::int64_t>::min()), "0");
}

TEST(FormatHex, ShowsLowerCaseDigitsWithoutPrefixOrFill) {
  EXPECT_EQ(FormatLine("%x", 0U), "0");
  EXPECT_EQ(FormatLine("%x", 0xABCU), "abc");
  EXPECT_EQ(FormatLine("0x%x", kMax32), "0xffffffff");
  EXPECT_EQ(FormatLine("%x", -1), "ffffffff");
}

TEST(FormatHex, ShowsTheLow32BitsOfLongerValues) {
  EXPECT_EQ(FormatLine("%x", std::uint64_t{0xABCDEF0012345678}), "12345678");
  EXPECT_EQ(FormatLine("%x", std::uint64_t{0x100000000}), "0");
  EXPECT_EQ(FormatLine("%x", kMax64), "ffffffff");
}

TEST(FormatLongHex, Shows64Bits) {
  EXPECT_EQ(FormatLine("%llx", std::uint64_t{0}), "0");
  EXPECT_EQ(FormatLine("%llx", std::uint64_t{0xABCDEF0012345678}), "abcdef0012345678");
  EXPECT_EQ(FormatLine("%llx", std::uint64_t{0x100000000}), "100000000");
  EXPECT_EQ(FormatLine("0x%llx", kMax64), "0xffffffffffffffff");
}

TEST(FormatLiterals, StandAsTheyAre) {
  EXPECT_EQ(FormatLine(""), "");
  EXPECT_EQ(FormatLine("The Transport Layer has not been successfully opened!"),
            "The Transport Layer has not been successfully opened!");
}

TEST(FormatLiterals, StandBetweenAndAroundConversions) {
  EXPECT_EQ(FormatLine("a%ub%uc", 1U, 2U), "a1b2c");
  EXPECT_EQ(FormatLine("a%u", 1U), "a1");
  EXPECT_EQ(FormatLine("%ua", 1U), "1a");
}

TEST(FormatConversions, MayStandAtBothEnds) {
  EXPECT_EQ(FormatLine("%u-%u", 1U, 2U), "1-2");
  EXPECT_EQ(FormatLine("%s=%s", std::string("left"), std::string("right")), "left=right");
}

TEST(FormatConversions, MayStandSideBySide) {
  EXPECT_EQ(FormatLine("%u%u%u", 1U, 2U, 3U), "123");
  EXPECT_EQ(FormatLine("%s%p%u%lu%d%x%llx", std::string("t"), Handle(0xAB), 1U, 2U, -3, 0xCU,
                       std::uint64_t{0xD}),
            "t00000000000000AB12-3cd");
}

TEST(FormatConversions, EndWithTheirLetterSoThatTextMayFollowAtOnce) {
  EXPECT_EQ(FormatLine("%ss", std::string("a")), "as");
  EXPECT_EQ(FormatLine("%ul%lul%xx%llxx%dd%pp", 1U, 2U, 3U, std::uint64_t{4}, 5, Handle(6)),
            "1l2l3x4x5d0000000000000006p");
}

TEST(FormatConversions, TakeManyValuesInTheirOrder) {
  EXPECT_EQ(FormatLine("%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u", 1U, 2U, 3U, 4U, 5U, 6U,
                       7U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U),
            "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16");
}

TEST(FormatNoValue, ShowsZeroUnderEveryConversion) {
  EXPECT_EQ(FormatLine("%p", noValue), "0000000000000000");
  EXPECT_EQ(FormatLine("%u", noValue), "0");
  EXPECT_EQ(FormatLine("%lu", noValue), "0");
  EXPECT_EQ(FormatLine("%d", noValue), "0");
  EXPECT_EQ(FormatLine("%x", noValue), "0");
  EXPECT_EQ(FormatLine("%llx", noValue), "0");
  EXPECT_EQ(FormatLine("%s", noValue), "(null)");
}

}  // namespace
}  // namespace vextrel_test
