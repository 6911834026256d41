// SPDX-License-Identifier: MIT
#include "calllog/port_rendering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "calllog/guarded_memory.h"
#include "calllog/rendered.h"
#include "model/rendering.h"

namespace vextrel_test {
namespace {

using Entries = std::vector<PORT_REGISTER_STACK_ENTRY>;

std::string PortData(const PORT_REGISTER_STACK_ENTRY* entries, std::size_t count) {
  return Whole(vextrel::RenderPortData(entries, count));
}
std::string PortData(const Entries& entries) {
  return PortData(entries.data(), entries.size());
}

// Entries without data.
Entries EmptyEntries(std::size_t count) {
  return Entries(count, PORT_REGISTER_STACK_ENTRY{0, nullptr, 0});
}

TEST(RenderPortData, IsEmptyForNoEntriesEvenWithoutAnArray) {
  EXPECT_EQ(PortData(nullptr, 0), WithNul(""));
  EXPECT_EQ(PortData(EmptyEntries(1).data(), 0), WithNul(""));
}

TEST(RenderPortData, ShowsEntriesOneAfterAnother) {
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
  std::uint8_t byte = 1;
  EXPECT_EQ(PortData({{0x2A, nullptr, 0xFFFFFFFFFFFFFFFF}, {0x2A, &byte, 0}}),
            WithNul("Address[0], 0x000000000000002a->(Buffer=''), iSize=ffffffffffffffff;"
                    "Address[1], 0x000000000000002a->(Buffer=''), iSize=0;"));
}

TEST(RenderPortData, ShowsAddressesWithSixteenLowerCaseDigits) {
  EXPECT_EQ(PortData({{0xFFFFFFFFFFFFFFFF, nullptr, 0}}),
            WithNul("Address[0], 0xffffffffffffffff->(Buffer=''), iSize=0;"));
}

TEST(RenderPortData, CountsEveryIndexButTheFirstInHexadecimal) {
  std::string expected;
  for (const char* index : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "a"}) {
    expected += std::string("Address[") + index + "], 0x0000000000000000->(Buffer=''), iSize=0;";
  }
  EXPECT_EQ(PortData(EmptyEntries(11)), WithNul(expected));
}

TEST(RenderPortData, TakesTheLow32BitsOfTheCountAsASignedNumber) {
  const Entries entries = EmptyEntries(2);
  for (const std::size_t count : {std::size_t{0x100000002}, std::size_t{0xFFFFFFFF00000002}}) {
    EXPECT_EQ(PortData(entries.data(), count), PortData(entries));
  }
  for (const std::size_t count : {std::size_t{0x100000000}, std::size_t{0x80000000},
                                  std::size_t{0xFFFFFFFF}, ~std::size_t{0}}) {
    EXPECT_EQ(PortData(nullptr, count), WithNul(""));
  }
}

TEST(RenderPortData, ReadsNothingPastTheLastEntryAndItsData) {
  GuardedMemory data(64);
  GuardedMemory array(64);
  const Bytes bytes = CountedBytes(3);
  const PORT_REGISTER_STACK_ENTRY entry = {1, const_cast<void*>(data.PutAtEnd(bytes)), 3};
  const auto* begin = reinterpret_cast<const std::uint8_t*>(&entry);
  const void* entries = array.PutAtEnd({begin, sizeof entry});
  EXPECT_EQ(PortData(static_cast<const PORT_REGISTER_STACK_ENTRY*>(entries), 1),
            WithNul("Address[0], 0x0000000000000001->(Buffer='0x00,0x01,0x02'), iSize=3;"));
}

// Every seventh entry has a size but no data.
TEST(RenderPortData, AgreesWithTheModelForEveryNumberOfEntriesAndEverySizeOfOne) {
  std::mt19937_64 random(1);  // NOLINT: the same values in every run
  std::vector<Bytes> data;
  Entries entries;
  for (std::size_t count = 0; count <= 300; ++count) {
    ASSERT_EQ(PortData(entries), WithNul(model::RenderPortData(entries.data(), entries.size())));
    const auto size = static_cast<std::size_t>(random() % 40);
    data.push_back(RandomBytes(size));
    entries.push_back(
        {random() >> (count % 64), count % 7 == 0 ? nullptr : data.back().data(), size});
    Bytes bytes = RandomBytes(count);
    const PORT_REGISTER_STACK_ENTRY entry = {count, bytes.data(), count};
    ASSERT_EQ(PortData(&entry, 1), WithNul(model::RenderPortData(&entry, 1)));
    ASSERT_EQ(bytes, RandomBytes(count));
  }
}

// Text that fits the room is written there; longer text is allocated.
TEST(RenderPortData, UsesTheRoomItIsGivenIfThatIsLargeEnough) {
  constexpr char untouched = '\x7F';
  vextrel::RoomForPortData room;
  Bytes eight = CountedBytes(8);
  Bytes two = CountedBytes(2);
  for (const std::size_t count : {1U, 4U, 16U, 17U, 30U}) {
    for (Bytes* bytes : {&eight, &two}) {
      const Entries entries(count, {0x1000, bytes->data(), bytes->size()});
      for (const std::size_t size : {room.size(), room.size() / 2, std::size_t{17}}) {
        room.fill(untouched);
        const vextrel::RenderedText text =
            vextrel::RenderPortData(entries.data(), count, {room.data(), size});
        EXPECT_EQ(Whole(text), WithNul(model::RenderPortData(entries.data(), count)));
        EXPECT_TRUE(std::all_of(room.begin() + static_cast<std::ptrdiff_t>(size), room.end(),
                                [](char character) { return character == untouched; }));
        if (size == room.size() && count <= 16) {
          EXPECT_EQ(text.c_str(), room.data()) << count;
        }
        if (text.view().size() > size) {
          EXPECT_EQ(std::count(room.begin(), room.end(), untouched), std::ssize(room)) << count;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vextrel_test
