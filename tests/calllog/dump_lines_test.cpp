#include "calllog/dump_lines.h"

#include <array>
#include <cstdint>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "gtest/gtest.h"

namespace vextrel {
namespace {

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

TEST(DumpLines, ShowEveryByteValue) {
  std::array<std::uint8_t, 256> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i);
  }
  const std::string expected = Reference(bytes.data(), 16);
  EXPECT_EQ(Written(WriteDumpLines, bytes.data(), 16), expected);
  EXPECT_EQ(Written(WriteDumpLinesPlainly, bytes.data(), 16), expected);
}

TEST(DumpLines, AreTheSameInBothWaysAtEveryAlignment) {
  std::mt19937 random(1);  // NOLINT: the same bytes in every run
  std::vector<std::uint8_t> bytes(16 * 70 + 16);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  for (std::size_t offset = 0; offset < 16; ++offset) {
    for (std::size_t lines = 0; lines <= 70; ++lines) {
      const std::string expected = Reference(bytes.data() + offset, lines);
      ASSERT_EQ(Written(WriteDumpLines, bytes.data() + offset, lines), expected) << lines;
      ASSERT_EQ(Written(WriteDumpLinesPlainly, bytes.data() + offset, lines), expected) << lines;
    }
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
