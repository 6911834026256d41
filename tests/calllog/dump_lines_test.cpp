#include "calllog/dump_lines.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "calllog/rendered.h"
#include "gtest/gtest.h"

namespace vextrel {
namespace {

using vextrel_test::kAlignments;

std::string Reference(const std::uint8_t* bytes, std::size_t lines) {
  std::ostringstream text;
  for (std::size_t i = 0; i < lines * 16; ++i) {
    text << "0x" << std::hex << std::setw(2) << std::setfill('0') << unsigned{bytes[i]} << ','
         << (i % 16 == 15 ? "\n" : "");
  }
  return text.str();
}

template <typename Write>
std::string Written(Write write, const std::uint8_t* bytes, std::size_t lines) {
  // One more than fits, to see that nothing is written behind the end.
  std::vector<char> text(lines * kDumpLineSize + 1, '~');
  const char* end = write(bytes, lines, text.data());
  EXPECT_EQ(end, text.data() + lines * kDumpLineSize);
  EXPECT_EQ(text.back(), '~');
  return {text.data(), lines * kDumpLineSize};
}

TEST(DumpLines, ShowEveryByteValueAtEveryPlace) {
  for (unsigned value = 0; value < 256; ++value) {
    const std::vector<std::uint8_t> bytes(4 * 16, static_cast<std::uint8_t>(value));
    const std::string expected = Reference(bytes.data(), 4);
    ASSERT_EQ(Written(WriteDumpLines, bytes.data(), 4), expected);
    ASSERT_EQ(Written(WriteDumpLinesPlainly, bytes.data(), 4), expected);
  }
}

TEST(DumpLines, AreTheSameInBothWaysAtEveryAlignment) {
  std::mt19937 random(1);  // NOLINT: the same bytes in every run
  alignas(kAlignments) std::array<std::uint8_t, 16 * 70 + kAlignments> bytes{};
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  for (std::size_t offset = 0; offset < kAlignments; ++offset) {
    for (std::size_t lines = 0; lines <= 70; ++lines) {
      const std::string expected = Reference(bytes.data() + offset, lines);
      ASSERT_EQ(Written(WriteDumpLines, bytes.data() + offset, lines), expected) << lines;
      ASSERT_EQ(Written(WriteDumpLinesPlainly, bytes.data() + offset, lines), expected) << lines;
    }
  }
}

TEST(DumpLines, AreTheSameWhereverTheyAreWritten) {
  constexpr std::size_t kLines = 5;
  std::array<std::uint8_t, 16 * kLines> bytes{};
  std::mt19937 random(2);  // NOLINT: the same bytes in every run
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  const std::string expected = Reference(bytes.data(), kLines);
  alignas(kAlignments) std::array<char, kLines * kDumpLineSize + kAlignments> text{};
  for (std::size_t offset = 0; offset < kAlignments; ++offset) {
    WriteDumpLines(bytes.data(), kLines, text.data() + offset);
    ASSERT_EQ(std::string(text.data() + offset, expected.size()), expected) << offset;
  }
}

TEST(DumpItems, CarryTheirCommaEach) {
  const std::array<std::uint8_t, 3> bytes = {0x00, 0x7F, 0xFF};
  std::array<char, 20> text{};
  text.fill('~');
  EXPECT_EQ(WriteDumpItems(bytes.data(), 3, text.data()), text.data() + 15);
  EXPECT_EQ(std::string(text.data(), 15), "0x00,0x7f,0xff,");
  EXPECT_EQ(std::string(text.data() + 18, 2), "~~");
}

TEST(DumpItems, EndWithOneWithoutAComma) {
  std::array<char, 6> text{};
  text.fill('~');
  EXPECT_EQ(WriteLastDumpItem(0x9B, text.data()), text.data() + 4);
  EXPECT_EQ(std::string(text.data(), text.size()), "0x9b~~");
}

}  // namespace
}  // namespace vextrel
