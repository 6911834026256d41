// SPDX-License-Identifier: MIT
#include "calllog/info_rendering.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/rendered.h"
#include "model/rendering.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace std::string_literals;
using model::ShowAddress;
using vextrel::RenderAddress;
using vextrel::RenderBufferValue;
using vextrel::RenderInfoValue;
using vextrel::RenderPointerSlot;
using vextrel::TextOrNull;

// Tries each example at every alignment, and with nothing readable past its `size` bytes.
template <typename Value>
void ExpectRendered(INFO_DATATYPE type, std::size_t size,
                    const std::vector<std::pair<Value, std::string_view>>& examples) {
  GuardedMemory memory(size);
  for (const auto& [value, text] : examples) {
    for (std::size_t offset = 0; offset < kAlignments; ++offset) {
      const Shifted<Value> shifted(value, offset);
      EXPECT_EQ(Whole(RenderInfoValue(type, shifted.Address(), sizeof value)), WithNul(text))
          << "type " << type << ", offset " << offset;
    }
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value);
    EXPECT_EQ(Whole(RenderInfoValue(type, memory.PutAtEnd(std::span(bytes).first(size)), size)),
              WithNul(text))
        << "type " << type;
  }
}

TEST(RenderInfoValue, ShowsIntegersInDecimal) {
  ExpectRendered<std::int16_t>(INFO_DATATYPE_INT16, 2,
                               {{0, "0"}, {-1, "-1"}, {32767, "32767"}, {-32767 - 1, "-32768"}});
  ExpectRendered<std::uint16_t>(INFO_DATATYPE_UINT16, 2,
                                {{0, "0"}, {32768, "32768"}, {65535, "65535"}});
  ExpectRendered<std::int32_t>(
      INFO_DATATYPE_INT32, 4,
      {{0, "0"}, {-1, "-1"}, {2147483647, "2147483647"}, {-2147483647 - 1, "-2147483648"}});
  for (const INFO_DATATYPE type : {INFO_DATATYPE{INFO_DATATYPE_UINT32}, 14}) {  // 14 has no name
    ExpectRendered<std::uint32_t>(
        type, 4, {{0U, "0"}, {7U, "7"}, {2147483648U, "2147483648"}, {4294967295U, "4294967295"}});
  }
  ExpectRendered<std::uint64_t>(INFO_DATATYPE_SIZET, 8,
                                {{0, "0"},
                                 {0x100000005, "4294967301"},
                                 {0x8000000000000000, "9223372036854775808"},
                                 {0xFFFFFFFFFFFFFFFF, "18446744073709551615"}});
}

TEST(RenderInfoValue, ReadsAndShowsOnlyTheLow32BitsOf64BitIntegers) {
  ExpectRendered<std::int64_t>(INFO_DATATYPE_INT64, 4,
                               {{0x100000005, "5"},
                                {-1, "-1"},
                                {0x80000000, "-2147483648"},
                                {0x7FFFFFFF00000000, "0"},
                                {0x123456787FFFFFFF, "2147483647"}});
  ExpectRendered<std::uint64_t>(INFO_DATATYPE_UINT64, 4,
                                {{0xFFFFFFFFFFFFFFFF, "4294967295"},
                                 {0x100000005, "5"},
                                 {0xFFFFFFFF00000000, "0"},
                                 {0x80000000, "2147483648"}});
}

TEST(RenderInfoValue, ShowsFloat64WithSixSignificantDigits) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  ExpectRendered<double>(INFO_DATATYPE_FLOAT64, 8,
                         {{0.0, "0"},
                          {-0.0, "-0"},
                          {-2.5, "-2.5"},
                          {3.14159265358979, "3.14159"},
                          {123456.0, "123456"},
                          {1234567.0, "1.23457e+06"},
                          {0.0001, "0.0001"},
                          {0.00001, "1e-05"},
                          {1e100, "1e+100"},
                          {infinity, "inf"},
                          {-infinity, "-inf"},
                          {std::numeric_limits<double>::quiet_NaN(), "nan"}});
}

TEST(RenderInfoValue, ShowsBool8AsOneUnlessItIsZero) {
  ExpectRendered<std::uint8_t>(INFO_DATATYPE_BOOL8, 1, {{1, "1"}, {0, "0"}});
  for (unsigned byte = 2; byte < 256; ++byte) {
    ExpectRendered<std::uint8_t>(INFO_DATATYPE_BOOL8, 1, {{static_cast<std::uint8_t>(byte), "1"}});
  }
}

TEST(RenderInfoValue, ShowsAStringInSingleQuotesUpToItsFirstNulWhateverTheSize) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{2}, ~std::size_t{0}}) {
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "abc", size)), WithNul("'abc'"));
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "ab\0cd", size)), WithNul("'ab'"));
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "", size)), WithNul("''"));
  }
  GuardedMemory memory(400);
  for (std::size_t size = 0; size < 300; ++size) {
    Bytes bytes(size, 'x');
    bytes.push_back(0);
    ASSERT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, memory.PutAtEnd(bytes), 0)),
              WithNul("'" + std::string(size, 'x') + "'"));
  }
  const std::string text(100'000, 'y');
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, text.c_str(), text.size())),
            WithNul("'" + text + "'"));
}

TEST(RenderInfoValue, NeverReadsOrExpandsAStringList) {
  const GuardedMemory memory(1);
  const void* list = "a\0b\0";
  for (const void* buffer : {list, memory.Forbidden(), static_cast<const void*>(nullptr)}) {
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRINGLIST, buffer, 5)), WithNul("STRINGLIST"));
  }
}

TEST(RenderInfoValue, ShowsWhereABufferOfUnknownOrPointerTypeLiesAndDoesNotReadIt) {
  const GuardedMemory memory(1);
  for (const INFO_DATATYPE type : {INFO_DATATYPE_UNKNOWN, INFO_DATATYPE_PTR}) {
    EXPECT_EQ(Whole(RenderInfoValue(type, memory.Forbidden(), 8)),
              WithNul(ShowAddress(memory.Forbidden())));
  }
}

TEST(RenderInfoValue, ShowsNullForANullBufferOfEveryTypeButAStringList) {
  for (INFO_DATATYPE type = 0; type <= 14; ++type) {
    EXPECT_EQ(Whole(RenderInfoValue(type, nullptr, 8)),
              WithNul(type == INFO_DATATYPE_STRINGLIST ? "STRINGLIST" : "NULL"))
        << type;
  }
}

TEST(RenderInfoValue, ShowsTheNumberOfAnUnknownType) {
  const GuardedMemory memory(1);
  for (const auto& [type, text] : std::vector<std::pair<INFO_DATATYPE, std::string_view>>{
           {15, "(Unknown INFO_DATATYPE: 15)"},
           {1000, "(Unknown INFO_DATATYPE: 1000)"},
           {-1, "(Unknown INFO_DATATYPE: -1)"},
           {std::numeric_limits<INFO_DATATYPE>::max(), "(Unknown INFO_DATATYPE: 2147483647)"},
           {std::numeric_limits<INFO_DATATYPE>::min(), "(Unknown INFO_DATATYPE: -2147483648)"}}) {
    EXPECT_EQ(Whole(RenderInfoValue(type, nullptr, 0)), WithNul(text));
    EXPECT_EQ(Whole(RenderInfoValue(type, memory.Forbidden(), 8)), WithNul(text));
  }
}

TEST(RenderInfoValue, IgnoresTheSizeAndChangesNothingInTheBuffer) {
  const Bytes before = CountedBytes(16);
  Bytes buffer = before;
  for (INFO_DATATYPE type = -1; type <= 15; ++type) {
    const std::string text = Whole(RenderInfoValue(type, buffer.data(), 16));
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, ~std::size_t{0}}) {
      EXPECT_EQ(Whole(RenderInfoValue(type, buffer.data(), size)), text) << type;
    }
    EXPECT_EQ(buffer, before) << type;
  }
}

TEST(RenderAddress, ShowsSixteenUpperCaseDigitsAfterAPrefixOrNull) {
  EXPECT_EQ(Whole(RenderAddress(Handle(0x12FF40))), WithNul("0x000000000012FF40"));
  EXPECT_EQ(Whole(RenderAddress(Handle(0xFEDCBA9876543210))), WithNul("0xFEDCBA9876543210"));
  EXPECT_EQ(Whole(RenderAddress(nullptr)), WithNul("NULL"));
}

TEST(RenderPointerSlot, ShowsTheSlotAndWithABlankTheStoredPointerWhichItDoesNotFollow) {
  const GuardedMemory memory(1);
  const void* slot = memory.Forbidden();
  EXPECT_EQ(Whole(RenderPointerSlot(&slot)),
            WithNul(ShowAddress(&slot) + " (" + ShowAddress(slot) + ")"));
}

TEST(RenderPointerSlot, ShowsAnEmptySlotWithoutABlankAndNullForNoSlot) {
  const void* slot = nullptr;
  EXPECT_EQ(Whole(RenderPointerSlot(&slot)), WithNul(ShowAddress(&slot) + "(NULL)"));
  EXPECT_EQ(Whole(RenderPointerSlot(nullptr)), WithNul("NULL"));
}

TEST(RenderBufferValue, ShowsTheContentAsTextAndItsFirstCharacter) {
  const std::string longText(50'000, 'q');
  for (const auto& [buffer, text] : std::vector<std::pair<const char*, std::string>>{
           {nullptr, WithNul("NULL")},
           {"abc", WithNul("0xabc->(a)")},
           {"ab\0cd", WithNul("0xab->(a)")},
           {"\0abc", "0x->(\0)\0"s},
           {"\xff\x80%s", WithNul("0x\xff\x80%s->(\xff)")},
           {longText.c_str(), WithNul("0x" + longText + "->(q)")}}) {
    EXPECT_EQ(Whole(RenderBufferValue(buffer)), text);
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_BUFFER, buffer, 0)), text);
  }
  EXPECT_STREQ(RenderBufferValue("\0abc").c_str(), "0x->(");
}

TEST(RenderBufferValue, ReadsNothingPastTheNul) {
  GuardedMemory memory(8);
  EXPECT_EQ(Whole(RenderBufferValue(memory.PutAtEnd(Bytes{'h', 'i', 0}))), WithNul("0xhi->(h)"));
  EXPECT_EQ(Whole(RenderBufferValue(memory.PutAtEnd(Bytes{0}))), "0x->(\0)\0"s);
}

TEST(TextOrNull, GivesTheTextItselfAndNoCopyOrNullInWords) {
  for (const char* text : {"interface 1", ""}) {
    EXPECT_EQ(TextOrNull(text), text);
  }
  EXPECT_STREQ(TextOrNull(nullptr), "NULL");
}

}  // namespace
}  // namespace vextrel_test
