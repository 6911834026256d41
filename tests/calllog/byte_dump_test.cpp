// SPDX-License-Identifier: MIT
#include "calllog/byte_dump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "calllog/guarded_memory.h"
#include "calllog/rendered.h"
#include "model/rendering.h"

namespace vextrel_test {
namespace {

using model::RenderDump;
using vextrel::ByteDump;

constexpr std::size_t kSizes = 300;

// The whole dump, the final NUL included.
std::string DumpOf(const void* pBuffer, std::size_t iSize) {
  return Whole(vextrel::RenderByteDump(pBuffer, iSize));
}

TEST(RenderByteDump, IsEmptyForNoBytesAndForANullPointerWhateverTheSize) {
  EXPECT_EQ(DumpOf("abc", 0), WithNul(""));
  for (const std::size_t size : {std::size_t{0}, std::size_t{16}, ~std::size_t{0}}) {
    EXPECT_EQ(DumpOf(nullptr, size), WithNul(""));
  }
}

TEST(RenderByteDump, ShowsOneByteWithoutCommaOrLineFeed) {
  EXPECT_EQ(DumpOf("\x7f", 1), WithNul("0x7f"));
}

TEST(RenderByteDump, ShowsTwoLowerCaseDigitsPerByte) {
  const std::array<std::uint8_t, 6> bytes = {0x0A, 0xFF, 0x00, 0x10, 0x9B, 0xC0};
  EXPECT_EQ(DumpOf(bytes.data(), bytes.size()), WithNul("0x0a,0xff,0x00,0x10,0x9b,0xc0"));
}

TEST(RenderByteDump, EndsSixteenBytesWithALineFeedAndBreaksSeventeenAfterAComma) {
  const Bytes bytes = CountedBytes(17);
  EXPECT_EQ(DumpOf(bytes.data(), 16), WithNul("0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                                              "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f\n"));
  EXPECT_EQ(DumpOf(bytes.data(), 17), WithNul("0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,"
                                              "0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f,\n0x10"));
}

TEST(RenderByteDump, AgreesWithTheModelForEveryByteValueAtEveryPlaceOfALine) {
  for (unsigned value = 0; value < 256; ++value) {
    const Bytes bytes(65, static_cast<std::uint8_t>(value));
    for (const std::size_t size : {std::size_t{1}, std::size_t{17}, bytes.size()}) {
      ASSERT_EQ(DumpOf(bytes.data(), size), WithNul(RenderDump(bytes.data(), size)));
    }
  }
}

TEST(RenderByteDump, AgreesWithTheModelForEverySizeAtEveryAlignment) {
  alignas(kAlignments) std::array<std::uint8_t, kSizes + kAlignments> bytes{};
  for (std::size_t size = 0; size <= kSizes; ++size) {
    const Bytes source = RandomBytes(size);
    const std::string expected = WithNul(RenderDump(source.data(), size));
    for (std::size_t offset = 0; offset < kAlignments; ++offset) {
      std::copy(source.begin(), source.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
      ASSERT_EQ(DumpOf(bytes.data() + offset, size), expected) << size << " at " << offset;
    }
  }
}

TEST(RenderByteDump, ReadsNothingBesideTheBytes) {
  GuardedMemory memory(kSizes);
  for (std::size_t size = 0; size <= kSizes; ++size) {
    const Bytes bytes = RandomBytes(size);
    const std::string expected = WithNul(RenderDump(bytes.data(), size));
    ASSERT_EQ(DumpOf(memory.PutAtEnd(bytes), size), expected) << size;
    ASSERT_EQ(DumpOf(memory.PutAtBegin(bytes), size), expected) << size;
    const auto block = std::make_unique<std::uint8_t[]>(size);
    std::copy(bytes.begin(), bytes.end(), block.get());
    ASSERT_EQ(DumpOf(block.get(), size), expected) << size;
  }
}

// Also around the sizes at which appending a dump takes another go.
TEST(RenderByteDump, AgreesWithTheModelForLargeData) {
  std::vector<std::size_t> sizes = {4095, 4096, 50'000, 65'535, 65'536, 65'537, 1'048'577};
  for (std::size_t parts = 1; parts <= 4; ++parts) {
    for (std::size_t size = parts * 3200 - 33; size <= parts * 3200 + 33; ++size) {
      sizes.push_back(size);
    }
  }
  for (const std::size_t size : sizes) {
    const Bytes bytes = RandomBytes(size);
    const std::string expected = RenderDump(bytes.data(), size);
    ASSERT_TRUE(DumpOf(bytes.data(), size) == WithNul(expected)) << size;
    std::string appended;
    ByteDump{bytes.data(), size}.AppendTo(appended);
    ASSERT_TRUE(appended == expected) << size;
  }
}

TEST(ByteDump, WritesWhatItHasMeasuredAndNothingMore) {
  for (std::size_t size = 0; size <= kSizes; ++size) {
    const Bytes bytes = RandomBytes(size);
    const ByteDump dump{bytes.data(), size};
    const std::string expected = RenderDump(bytes.data(), size);
    ASSERT_EQ(dump.size(), expected.size());
    std::string text(dump.size() + 1, '~');
    ASSERT_EQ(dump.Write(text.data()), text.data() + dump.size());
    ASSERT_EQ(text, expected + "~");
    text = "in front ";
    dump.AppendTo(text);
    ASSERT_EQ(text, "in front " + expected);
  }
}

TEST(ByteDump, IsEmptyForANullPointerWhateverTheSize) {
  const ByteDump dump{nullptr, 16};
  char text = '~';
  std::string appended;
  dump.AppendTo(appended);
  EXPECT_EQ(dump.size(), 0U);
  EXPECT_EQ(dump.Write(&text), &text);
  EXPECT_EQ(text, '~');
  EXPECT_EQ(appended, "");
}

}  // namespace
}  // namespace vextrel_test
