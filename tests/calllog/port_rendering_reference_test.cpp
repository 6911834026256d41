// The renderers of port data against plain stream output, over many sizes, values and places.
#include "calllog/port_rendering_reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/port_rendering.h"
#include "calllog/rendered.h"

namespace vextrel_test {
namespace {

using vextrel::ByteDump;
using vextrel::RenderPortData;

constexpr std::size_t kLengths = 300;

TEST(RenderByteDumpAgainstStreams, AgreesForEveryByteValueAtEveryPlaceOfALine) {
  for (unsigned value = 0; value < 256; ++value) {
    for (const std::size_t length : {std::size_t{1}, std::size_t{17}, std::size_t{65}}) {
      const Bytes bytes(length, static_cast<std::uint8_t>(value));
      ASSERT_EQ(DumpOf(bytes.data(), length), ReferenceByteDump(bytes.data(), length)) << value;
    }
  }
  const Bytes all = CountedBytes(256);
  EXPECT_EQ(DumpOf(all.data(), all.size()), ReferenceByteDump(all.data(), all.size()));
}

TEST(RenderByteDumpAgainstStreams, AgreesForEveryLengthAtEveryAlignment) {
  const Bytes source = RandomBytes(kLengths + kAlignments);
  alignas(kAlignments) std::array<std::uint8_t, kLengths + kAlignments> bytes{};
  for (std::size_t length = 0; length <= kLengths; ++length) {
    const std::string expected = ReferenceByteDump(source.data(), length);
    for (std::size_t offset = 0; offset < kAlignments; ++offset) {
      std::copy_n(source.begin(), length, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
      ASSERT_EQ(DumpOf(bytes.data() + offset, length), expected)
          << length << " bytes, offset " << offset;
    }
  }
}

TEST(RenderByteDumpAgainstStreams, ReadsNothingBesideTheBytes) {
  GuardedMemory memory(kLengths);
  for (std::size_t length = 0; length <= kLengths; ++length) {
    const Bytes bytes = RandomBytes(length);
    const std::string expected = ReferenceByteDump(bytes.data(), length);
    ASSERT_EQ(DumpOf(memory.PutAtEnd(bytes), length), expected) << length;
    ASSERT_EQ(DumpOf(memory.PutAtBegin(bytes), length), expected) << length;
  }
}

TEST(RenderByteDumpAgainstStreams, StaysInsideAHeapBlockOfExactSize) {
  for (std::size_t length = 1; length <= kLengths; ++length) {
    const Bytes bytes = RandomBytes(length);
    const auto block = std::make_unique<std::uint8_t[]>(length);
    std::copy(bytes.begin(), bytes.end(), block.get());
    ASSERT_EQ(DumpOf(block.get(), length), ReferenceByteDump(bytes.data(), length));
  }
}

TEST(RenderByteDumpAgainstStreams, AgreesForLargeData) {
  for (const std::size_t length :
       {std::size_t{4095}, std::size_t{4096}, std::size_t{50'000}, std::size_t{65'535},
        std::size_t{65'536}, std::size_t{65'537}, std::size_t{1'048'577}}) {
    const Bytes bytes = RandomBytes(length);
    ASSERT_TRUE(DumpOf(bytes.data(), length) == ReferenceByteDump(bytes.data(), length)) << length;
  }
}

// Around the sizes at which a longer dump is written in more than one go.
TEST(RenderByteDumpAgainstStreams, AgreesWhereOnePartEndsAndTheNextBegins) {
  for (std::size_t parts = 1; parts <= 4; ++parts) {
    for (std::size_t length = parts * 3200 - 33; length <= parts * 3200 + 33; ++length) {
      const Bytes bytes = RandomBytes(length);
      ASSERT_TRUE(DumpOf(bytes.data(), length) == ReferenceByteDump(bytes.data(), length))
          << length;
    }
  }
}

TEST(ByteDump, WritesWhatItHasMeasuredAndNothingBehind) {
  for (std::size_t length = 0; length <= kLengths; ++length) {
    const Bytes bytes = RandomBytes(length);
    const ByteDump dump{bytes.data(), length};
    std::string expected = ReferenceByteDump(bytes.data(), length);
    expected.pop_back();  // the NUL
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

TEST(RenderPortDataAgainstStreams, AgreesForEveryNumberOfEntries) {
  std::mt19937_64 random(1);
  std::vector<Bytes> data;
  std::vector<PORT_REGISTER_STACK_ENTRY> entries;
  for (std::size_t count = 0; count <= kLengths; ++count) {
    ASSERT_EQ(RenderPortData(entries.data(), count), ReferencePortData(entries.data(), count))
        << count;
    // Every seventh entry has no data, but a size.
    const auto size = static_cast<std::size_t>(random() % 40);
    data.push_back(RandomBytes(size));
    entries.push_back(
        {random() >> (count % 64), count % 7 == 0 ? nullptr : data.back().data(), size});
  }
}

TEST(RenderPortDataAgainstStreams, AgreesForEveryLengthOfOneEntry) {
  for (std::size_t length = 0; length <= kLengths; ++length) {
    Bytes bytes = RandomBytes(length);
    const PORT_REGISTER_STACK_ENTRY entry = {length, bytes.data(), length};
    ASSERT_EQ(RenderPortData(&entry, 1), ReferencePortData(&entry, 1)) << length;
  }
}

}  // namespace
}  // namespace vextrel_test
