#include "calllog/info_rendering.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/rendered.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::RenderInfoValue;

template <typename Value>
using Examples = std::vector<std::pair<Value, std::string_view>>;

// Each example, at every alignment.
template <typename Value>
void ExpectRendered(INFO_DATATYPE type, const Examples<Value>& examples) {
  for (const auto& [value, text] : examples) {
    for (std::size_t offset = 0; offset < kAlignments; ++offset) {
      const Shifted<Value> shifted(value, offset);
      EXPECT_EQ(Whole(RenderInfoValue(type, shifted.address(), sizeof value)), WithNul(text))
          << "type " << type << ", offset " << offset;
    }
  }
}

// A buffer with room for nothing more than `size` bytes, all of them 0xff, behind which nothing
// can be read.
std::string RenderedFromTheFirstBytes(INFO_DATATYPE type, std::size_t size) {
  GuardedMemory memory(size);
  const std::vector<std::uint8_t> bytes(size, 0xFF);
  return Whole(RenderInfoValue(type, memory.PutAtEnd(bytes), size));
}

TEST(RenderInfoValue, ShowsAStringInSingleQuotes) {
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "abc", 4)), WithNul("'abc'"));
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "", 1)), WithNul("''"));
}

TEST(RenderInfoValue, ShowsAStringUpToItsFirstNulWhateverTheSize) {
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "ab\0cd", 6)), WithNul("'ab'"));
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "abcdef", 2)), WithNul("'abcdef'"));
}

TEST(RenderInfoValue, ShowsLongStringsWhole) {
  for (std::size_t size = 0; size < 300; ++size) {
    const std::string text(size, 'x');
    ASSERT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, text.c_str(), size + 1)),
              WithNul("'" + text + "'"));
  }
  const std::string text(100'000, 'y');
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, text.c_str(), text.size())),
            WithNul("'" + text + "'"));
}

TEST(RenderInfoValue, ReadsNothingBehindTheNulOfAString) {
  GuardedMemory memory(64);
  const std::array<std::uint8_t, 4> bytes = {'a', 'b', 'c', 0};
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, memory.PutAtEnd(bytes), 4)),
            WithNul("'abc'"));
}

TEST(RenderInfoValue, NeverExpandsAStringList) {
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRINGLIST, "a\0b\0", 5)), WithNul("STRINGLIST"));
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRINGLIST, nullptr, 0)), WithNul("STRINGLIST"));
}

TEST(RenderInfoValue, DoesNotReadAStringList) {
  const GuardedMemory memory(1);
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRINGLIST, memory.forbidden(), 8)),
            WithNul("STRINGLIST"));
}

TEST(RenderInfoValue, ShowsInt16AsASignedDecimal) {
  ExpectRendered<std::int16_t>(
      INFO_DATATYPE_INT16,
      {{0, "0"}, {1, "1"}, {-1, "-1"}, {32767, "32767"}, {-32767 - 1, "-32768"}});
}

TEST(RenderInfoValue, ShowsUint16AsAnUnsignedDecimal) {
  ExpectRendered<std::uint16_t>(INFO_DATATYPE_UINT16,
                                {{0, "0"}, {1, "1"}, {32768, "32768"}, {65535, "65535"}});
}

TEST(RenderInfoValue, ShowsInt32AsASignedDecimal) {
  ExpectRendered<std::int32_t>(
      INFO_DATATYPE_INT32,
      {{0, "0"}, {-1, "-1"}, {2147483647, "2147483647"}, {-2147483647 - 1, "-2147483648"}});
}

TEST(RenderInfoValue, ShowsUint32AsAnUnsignedDecimal) {
  ExpectRendered<std::uint32_t>(
      INFO_DATATYPE_UINT32, {{0U, "0"}, {2147483648U, "2147483648"}, {4294967295U, "4294967295"}});
}

TEST(RenderInfoValue, ShowsOnlyTheLow32BitsOfInt64AsASignedNumber) {
  ExpectRendered<std::int64_t>(INFO_DATATYPE_INT64, {{0x100000005, "5"},
                                                     {-1, "-1"},
                                                     {0, "0"},
                                                     {0x80000000, "-2147483648"},
                                                     {0x7FFFFFFF00000000, "0"},
                                                     {0x123456787FFFFFFF, "2147483647"}});
}

TEST(RenderInfoValue, ShowsOnlyTheLow32BitsOfUint64AsAnUnsignedNumber) {
  ExpectRendered<std::uint64_t>(INFO_DATATYPE_UINT64, {{0xFFFFFFFFFFFFFFFF, "4294967295"},
                                                       {0x100000005, "5"},
                                                       {0xFFFFFFFF00000000, "0"},
                                                       {0x80000000, "2147483648"}});
}

TEST(RenderInfoValue, ShowsFloat64WithSixSignificantDigits) {
  ExpectRendered<double>(INFO_DATATYPE_FLOAT64, {{0.0, "0"},
                                                 {-0.0, "-0"},
                                                 {1.0, "1"},
                                                 {-2.5, "-2.5"},
                                                 {3.14159265358979, "3.14159"},
                                                 {123456.0, "123456"},
                                                 {1234567.0, "1.23457e+06"},
                                                 {0.0001, "0.0001"},
                                                 {0.00001, "1e-05"},
                                                 {1e100, "1e+100"}});
}

TEST(RenderInfoValue, ShowsAFloat64ThatIsNoNumber) {
  ExpectRendered<double>(INFO_DATATYPE_FLOAT64,
                         {{std::numeric_limits<double>::infinity(), "inf"},
                          {-std::numeric_limits<double>::infinity(), "-inf"},
                          {std::numeric_limits<double>::quiet_NaN(), "nan"}});
}

TEST(RenderInfoValue, ShowsBool8AsOneOrZero) {
  ExpectRendered<std::uint8_t>(INFO_DATATYPE_BOOL8, {{1, "1"}, {0, "0"}});
}

TEST(RenderInfoValue, ShowsABool8OfAnyOtherValueAsOne) {
  for (unsigned byte = 2; byte < 256; ++byte) {
    const auto value = static_cast<std::uint8_t>(byte);
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_BOOL8, &value, 1)), WithNul("1")) << byte;
  }
}

TEST(RenderInfoValue, ShowsSizetWithAll64Bits) {
  ExpectRendered<std::uint64_t>(INFO_DATATYPE_SIZET,
                                {{0, "0"},
                                 {0x100000005, "4294967301"},
                                 {0x8000000000000000, "9223372036854775808"},
                                 {0xFFFFFFFFFFFFFFFF, "18446744073709551615"}});
}

TEST(RenderInfoValue, ShowsTheNamelessType14AsAnUnsigned32BitNumber) {
  ExpectRendered<std::uint32_t>(14, {{0U, "0"}, {7U, "7"}, {4294967295U, "4294967295"}});
}

TEST(RenderInfoValue, ShowsWhereABufferOfUnknownTypeLiesAndDoesNotReadIt) {
  const GuardedMemory memory(1);
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_UNKNOWN, memory.forbidden(), 8)),
            WithNul("0x" + Hex16(memory.forbidden())));
}

TEST(RenderInfoValue, ShowsWhereABufferWithAPointerLiesAndDoesNotReadIt) {
  const GuardedMemory memory(1);
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_PTR, memory.forbidden(), 8)),
            WithNul("0x" + Hex16(memory.forbidden())));
  const void* stored = Handle(0x1234);
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_PTR, &stored, sizeof stored)),
            WithNul("0x" + Hex16(static_cast<const void*>(&stored))));
}

TEST(RenderInfoValue, ShowsABufferAsRenderBufferValueDoes) {
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_BUFFER, "abc", 4)), WithNul("0xabc->(a)"));
}

TEST(RenderInfoValue, ShowsNullForANullBufferOfEveryTypeButAStringList) {
  for (INFO_DATATYPE type = 0; type <= 14; ++type) {
    EXPECT_EQ(Whole(RenderInfoValue(type, nullptr, 8)),
              WithNul(type == INFO_DATATYPE_STRINGLIST ? "STRINGLIST" : "NULL"))
        << type;
  }
}

TEST(RenderInfoValue, ShowsTheNumberOfAnUnknownType) {
  const std::vector<std::pair<INFO_DATATYPE, std::string_view>> examples = {
      {15, "(Unknown INFO_DATATYPE: 15)"},
      {1000, "(Unknown INFO_DATATYPE: 1000)"},
      {1001, "(Unknown INFO_DATATYPE: 1001)"},
      {-1, "(Unknown INFO_DATATYPE: -1)"},
      {std::numeric_limits<INFO_DATATYPE>::max(), "(Unknown INFO_DATATYPE: 2147483647)"},
      {std::numeric_limits<INFO_DATATYPE>::min(), "(Unknown INFO_DATATYPE: -2147483648)"}};
  const GuardedMemory memory(1);
  for (const auto& [type, text] : examples) {
    EXPECT_EQ(Whole(RenderInfoValue(type, nullptr, 0)), WithNul(text));
    EXPECT_EQ(Whole(RenderInfoValue(type, memory.forbidden(), 8)), WithNul(text));
  }
}

TEST(RenderInfoValue, ReadsAsManyBytesAsTheTypeNames) {
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_INT16, 2), WithNul("-1"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_UINT16, 2), WithNul("65535"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_INT32, 4), WithNul("-1"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_UINT32, 4), WithNul("4294967295"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_BOOL8, 1), WithNul("1"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_SIZET, 8), WithNul("18446744073709551615"));
  EXPECT_EQ(RenderedFromTheFirstBytes(14, 4), WithNul("4294967295"));
}

TEST(RenderInfoValue, ReadsOnlyTheFirstFourBytesOfThe64BitIntegers) {
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_INT64, 4), WithNul("-1"));
  EXPECT_EQ(RenderedFromTheFirstBytes(INFO_DATATYPE_UINT64, 4), WithNul("4294967295"));
}

TEST(RenderInfoValue, ReadsEightBytesOfAFloat64) {
  GuardedMemory memory(8);
  const auto bytes = std::bit_cast<std::array<std::uint8_t, 8>>(0.25);
  EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_FLOAT64, memory.PutAtEnd(bytes), 8)),
            WithNul("0.25"));
}

TEST(RenderInfoValue, IgnoresTheSize) {
  const std::uint64_t value = 0x100000005;
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, std::size_t{8}, std::numeric_limits<std::size_t>::max()}) {
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_SIZET, &value, size)), WithNul("4294967301"));
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_UINT16, &value, size)), WithNul("5"));
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_STRING, "abc", size)), WithNul("'abc'"));
    EXPECT_EQ(Whole(RenderInfoValue(INFO_DATATYPE_INT32, nullptr, size)), WithNul("NULL"));
  }
}

TEST(RenderInfoValue, ChangesNothingInTheBuffer) {
  std::array<char, 16> buffer = {'1', '2', '3', '4', '5', '6', '7', '8', '\0', 'x'};
  const std::array<char, 16> before = buffer;
  for (INFO_DATATYPE type = -1; type <= 15; ++type) {
    EXPECT_FALSE(RenderInfoValue(type, buffer.data(), buffer.size()).view().empty());
    EXPECT_EQ(buffer, before) << type;
  }
}

}  // namespace
}  // namespace vextrel_test
