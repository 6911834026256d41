// SPDX-License-Identifier: MIT
#include "calllog/dump_lines.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "calllog/rendered.h"
#include "model/rendering.h"

namespace vextrel_test {
namespace {

using vextrel::kDumpLineSize;

// Lines with others after them: every item has its comma.
std::string Expected(const Bytes& bytes) {
  Bytes followed = bytes;
  followed.push_back(0);
  const std::string dump = model::RenderDump(followed.data(), followed.size());
  return dump.substr(0, dump.size() - 4);
}

using Write = char*(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept;

void ExpectLines(Write* write, const std::uint8_t* bytes, std::size_t lines,
                 const std::string& expected) {
  // Room for one more, to see that nothing is written past the end.
  std::string text(lines * kDumpLineSize + 1, '~');
  const char* end = write(bytes, lines, text.data());
  ASSERT_EQ(end, text.data() + lines * kDumpLineSize);
  ASSERT_EQ(text, expected + "~");
}

TEST(DumpLines, ShowEveryByteValueAtEveryPlace) {
  for (unsigned value = 0; value < 256; ++value) {
    const Bytes bytes(4 * 16, static_cast<std::uint8_t>(value));
    ASSERT_NO_FATAL_FAILURE(ExpectLines(vextrel::WriteDumpLines, bytes.data(), 4, Expected(bytes)));
    ASSERT_NO_FATAL_FAILURE(
        ExpectLines(vextrel::WriteDumpLinesPlainly, bytes.data(), 4, Expected(bytes)));
  }
}

TEST(DumpLines, AreTheSameInBothWaysAtEveryAlignment) {
  alignas(kAlignments) std::array<std::uint8_t, 16 * 70 + kAlignments> memory{};
  for (std::size_t lines = 0; lines <= 70; ++lines) {
    const Bytes bytes = RandomBytes(16 * lines);
    const std::string expected = Expected(bytes);
    for (std::size_t offset = 0; offset < kAlignments; ++offset) {
      std::uint8_t* begin = memory.data() + offset;
      std::copy(bytes.begin(), bytes.end(), begin);
      ASSERT_NO_FATAL_FAILURE(ExpectLines(vextrel::WriteDumpLines, begin, lines, expected));
      ASSERT_NO_FATAL_FAILURE(ExpectLines(vextrel::WriteDumpLinesPlainly, begin, lines, expected));
    }
  }
}

TEST(DumpLines, AreTheSameWhereverTheyAreWritten) {
  constexpr std::size_t kLines = 5;
  const Bytes bytes = RandomBytes(16 * kLines);
  const std::string expected = Expected(bytes);
  alignas(kAlignments) std::array<char, kLines * kDumpLineSize + kAlignments> text{};
  for (std::size_t offset = 0; offset < kAlignments; ++offset) {
    vextrel::WriteDumpLines(bytes.data(), kLines, text.data() + offset);
    ASSERT_EQ(std::string(text.data() + offset, expected.size()), expected) << offset;
  }
}

TEST(DumpItems, CarryTheirCommaEachButForTheLast) {
  const std::array<std::uint8_t, 3> bytes = {0x00, 0x7F, 0xFF};
  std::string text(24, '~');
  EXPECT_EQ(vextrel::WriteDumpItems(bytes.data(), 3, text.data()), text.data() + 15);
  EXPECT_EQ(text.substr(0, 15), "0x00,0x7f,0xff,");
  EXPECT_EQ(text.substr(18), "~~~~~~");
  EXPECT_EQ(vextrel::WriteLastDumpItem(0x9B, text.data() + 18), text.data() + 22);
  EXPECT_EQ(text.substr(18), "0x9b~~");
}

}  // namespace
}  // namespace vextrel_test
