// SPDX-License-Identifier: MIT
#include "calllog/line_format.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/info_rendering.h"
#include "calllog/rendered.h"
#include "calllog/value_names.h"
#include "model/windows_printf.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace std::string_literals;
using model::Print;
using vextrel::FormatLine;
using vextrel::kNoValue;
using vextrel::Misplaced;
using vextrel::RenderedText;
using vextrel::ValueAt;

constexpr std::uint32_t kMax32 = 0xFFFFFFFF;
constexpr std::uint64_t kMax64 = 0xFFFFFFFFFFFFFFFF;

// Expects each line to equal the text next to it.
void Expect(const std::vector<std::pair<std::string, std::string>>& lines) {
  for (const auto& [line, expected] : lines) {
    EXPECT_EQ(line, expected);
  }
}

TEST(FormatText, ShowsTextsOfEveryKindAlsoEmptyOnes) {
  const char* constant = "constant";
  std::array<char, 4> array = {'a', 'b', 'c', '\0'};
  char* variable = array.data();
  const char* empty = "";
  Expect({{FormatLine("%s", constant), "constant"},
          {FormatLine("%s", variable), "abc"},
          {FormatLine("%s", "string"s), "string"},
          {FormatLine("%s", RenderedText{"rendered"}), "rendered"},
          {FormatLine("'%s'", empty), "''"},
          {FormatLine("'%s'", std::string()), "''"},
          {FormatLine("'%s'", RenderedText{}), "''"}});
}

TEST(FormatText, ShowsNullTextsInBrackets) {
  const char* constant = nullptr;
  char* variable = nullptr;
  Expect({{FormatLine("%s", constant), "(null)"}, {FormatLine("<%s>", variable), "<(null)>"}});
}

TEST(FormatText, EndsAtTheFirstNul) {
  const char* constant = "ab\0cd";
  Expect({{FormatLine("<%s>", constant), "<ab>"},
          {FormatLine("<%s>", "ab\0cd"s), "<ab>"},
          {FormatLine("<%s>", "\0cd"s), "<>"},
          {FormatLine("<%s>", vextrel::RenderBufferValue("\0")), "<0x->(>"}});
  GuardedMemory memory(8);
  EXPECT_EQ(FormatLine("%s", static_cast<const char*>(memory.PutAtEnd(Bytes{'o', 'k', 0}))), "ok");
}

TEST(FormatText, ShowsLongTextsWholeAndPercentSignsAsTheyAre) {
  const std::string text(200'000, 'z');
  const char* percent = "%s%n%d 100%";
  Expect({{FormatLine("<%s|%s>", text, text.c_str()), "<" + text + "|" + text + ">"},
          {FormatLine("%s", percent), "%s%n%d 100%"},
          {FormatLine("%s%s", "%"s, "s"s), "%s"}});
}

TEST(FormatPointer, ShowsSixteenUpperCaseDigitsWithoutPrefix) {
  const GuardedMemory memory(1);
  const auto* unreadable = static_cast<const char*>(memory.Forbidden());
  const std::uint32_t constant = 1;
  void* slot = nullptr;
  Expect({{FormatLine("%p", Handle(0x12FF40)), "000000000012FF40"},
          {FormatLine("0x%p", Handle(0xFEDCBA9876543210)), "0xFEDCBA9876543210"},
          {FormatLine("0x%p", Handle(0)), "0x0000000000000000"},
          {FormatLine("%p", &constant), Hex16(&constant)},
          {FormatLine("%p", &slot), Hex16(static_cast<const void*>(&slot))},
          {FormatLine("0x%p", unreadable), "0x" + Hex16(memory.Forbidden())}});
}

TEST(FormatUnsigned, ShowsTheLow32Bits) {
  Expect({{FormatLine("%u %lu", 0U, 0U), "0 0"},
          {FormatLine("%u %lu", kMax32, kMax32), "4294967295 4294967295"},
          {FormatLine("%u", std::uint64_t{0x100000000}), "0"},
          {FormatLine("%u", std::uint64_t{0x100000005}), "5"},
          {FormatLine("%lu", std::uint64_t{0x1234567800000007}), "7"},
          {FormatLine("%u %lu", kMax64, kMax64), "4294967295 4294967295"},
          {FormatLine("%u", -1), "4294967295"},
          {FormatLine("%lu", std::numeric_limits<std::int32_t>::min()), "2147483648"},
          {FormatLine("%u %u", std::uint8_t{255}, std::uint16_t{65535}), "255 65535"},
          {FormatLine("%u%u", true, false), "10"},
          {FormatLine("0x%u", 255U), "0x255"}});
}

TEST(FormatSigned, ShowsTheLow32Bits) {
  Expect({{FormatLine("%d %d", 0, -1), "0 -1"},
          {FormatLine("%d", std::numeric_limits<std::int32_t>::max()), "2147483647"},
          {FormatLine("%d", std::numeric_limits<std::int32_t>::min()), "-2147483648"},
          {FormatLine("%d", std::uint64_t{0x100000005}), "5"},
          {FormatLine("%d %d", kMax64, kMax32), "-1 -1"},
          {FormatLine("%d", std::numeric_limits<std::int64_t>::min()), "0"}});
}

TEST(FormatHex, ShowsLowerCaseDigitsOf32Or64BitsWithoutPrefixOrFill) {
  Expect({{FormatLine("%x %x", 0U, 0xABCU), "0 abc"},
          {FormatLine("0x%x %x", kMax32, -1), "0xffffffff ffffffff"},
          {FormatLine("%x", std::uint64_t{0xABCDEF0012345678}), "12345678"},
          {FormatLine("%x", std::uint64_t{0x100000000}), "0"},
          {FormatLine("%x", kMax64), "ffffffff"},
          {FormatLine("%llx", std::uint64_t{0}), "0"},
          {FormatLine("%llx", std::uint64_t{0xABCDEF0012345678}), "abcdef0012345678"},
          {FormatLine("%llx", std::uint64_t{0x100000000}), "100000000"},
          {FormatLine("0x%llx", kMax64), "0xffffffffffffffff"},
          {FormatLine("%llu", std::uint64_t{0}), "0"},
          {FormatLine("%llu", std::uint64_t{4294967296}), "4294967296"},
          {FormatLine("%llu", kMax64), "18446744073709551615"}});
}

TEST(FormatLiterals, StandAsTheyAreBetweenAndAroundConversions) {
  Expect({{FormatLine(""), ""},
          {FormatLine("no conversion!"), "no conversion!"},
          {FormatLine("a%ub%uc", 1U, 2U), "a1b2c"},
          {FormatLine("a%u", 1U), "a1"},
          {FormatLine("%ua", 1U), "1a"},
          {FormatLine("%s=%s", "left"s, "right"s), "left=right"}});
}

TEST(FormatConversions, StandSideBySideAndEndWithTheirLetter) {
  Expect(
      {{FormatLine("%s%p%u%lu%d%x%llx", "t"s, Handle(0xAB), 1U, 2U, -3, 0xCU, std::uint64_t{0xD}),
        "t00000000000000AB12-3cd"},
       {FormatLine("%ss", "a"s), "as"},
       {FormatLine("%ul%lul%xx%llxx%dd%pp", 1U, 2U, 3U, std::uint64_t{4}, 5, Handle(6)),
        "1l2l3x4x5d0000000000000006p"}});
}

TEST(FormatConversions, TakeManyValuesInTheirOrder) {
  EXPECT_EQ(FormatLine("%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u,%u", 1U, 2U, 3U, 4U, 5U, 6U,
                       7U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U),
            "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16");
}

TEST(FormatNoValue, ShowsZeroUnderEveryConversion) {
  EXPECT_EQ(FormatLine("%p %u %lu %d %x %llx %s", kNoValue, kNoValue, kNoValue, kNoValue, kNoValue,
                       kNoValue, kNoValue),
            "0000000000000000 0 0 0 0 0 (null)");
}

TEST(FormatValueAt, ShowsWhatThePointerPointsTo) {
  const std::size_t size = 0x100000004;
  void* const handle = Handle(0xAB);
  const std::uint8_t flag = 7;
  EXPECT_EQ(FormatLine("%u %p %d", ValueAt(&size), ValueAt(&handle), ValueAt(&flag)),
            "4 00000000000000AB 7");
}

// --- Values under conversions that are not meant for them ---------------------------------------

TEST(MisplacedNumber, ShowsInDecimalAsATextAndIsNeverFollowed) {
  EXPECT_EQ(FormatLine("<%s>", Misplaced(std::size_t{0})), "<0>");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::size_t{1})), "1");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::uint64_t{0xFFFFFFFFFFFFFFFF})), "18446744073709551615");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::uint32_t{4294967295})), "4294967295");
}

TEST(MisplacedNumber, ShowsAll64BitsAsAPointer) {
  EXPECT_EQ(FormatLine("0x%p", Misplaced(std::size_t{16})), "0x0000000000000010");
  EXPECT_EQ(FormatLine("%p", Misplaced(std::uint64_t{0xFEDCBA9876543210})), "FEDCBA9876543210");
}

TEST(MisplacedAddress, ShowsTheBytesThatLieThereAsAText) {
  const std::size_t sizes[] = {0x0000000000434241, 0};
  const std::size_t* none = nullptr;
  EXPECT_EQ(FormatLine("<%s>", Misplaced(&sizes[0])), "<ABC>");
  EXPECT_EQ(FormatLine("<%s>", Misplaced(&sizes[1])), "<>");
  EXPECT_EQ(FormatLine("%s", Misplaced(none)), "(null)");
}

TEST(MisplacedAddress, ShowsItsBitsAsANumber) {
  const void* address = Handle(0xFEDCBA9876543210);
  EXPECT_EQ(FormatLine("%u %lu %d %x %llx", Misplaced(address), Misplaced(address),
                       Misplaced(address), Misplaced(address), Misplaced(address)),
            "1985229328 1985229328 1985229328 76543210 fedcba9876543210");
}

// Also of one that cannot be read.
TEST(MisplacedText, ShowsWhereItLies) {
  const GuardedMemory memory(1);
  const RenderedText name = vextrel::GcErrorName(0);
  const std::string data = "of the heap or inline";
  const auto* text = static_cast<const char*>(memory.Forbidden());
  const auto expected = [](const void* address) {
    return Print("%p %u %llx", {address, address, address}).Text();
  };
  EXPECT_EQ(FormatLine("%p %u %llx", Misplaced(name), Misplaced(name), Misplaced(name)),
            expected(name.c_str()));
  EXPECT_EQ(FormatLine("%p %u %llx", Misplaced(data), Misplaced(data), Misplaced(data)),
            expected(data.data()));
  EXPECT_EQ(FormatLine("%p %u %llx", Misplaced(text), Misplaced(text), Misplaced(text)),
            expected(text));
}

TEST(MisplacedText, StillShowsItselfAsAText) {
  const char* text = "in place";
  const std::string longText = "also in place";
  EXPECT_EQ(FormatLine("%s %s", Misplaced(text), Misplaced(longText)), "in place also in place");
}

}  // namespace
}  // namespace vextrel_test
