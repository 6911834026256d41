#include "calllog/hex_digits.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>

namespace vextrel_test {
namespace {

using vextrel::kHex16Size;
using vextrel::WriteHex16;
using vextrel::WriteHex16Plainly;

using Write = void(std::uint64_t, char, char*) noexcept;

// With one character more on either side, to see that nothing is written there.
std::string Written(Write* write, std::uint64_t value, char ten) {
  std::array<char, kHex16Size + 2> text{};
  text.fill('~');
  write(value, ten, text.data() + 1);
  return {text.data(), text.size()};
}

std::string Streamed(std::uint64_t value, char ten) {
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0');
  text << (ten == 'A' ? &std::uppercase : &std::nouppercase) << value;
  return "~" + text.str() + "~";
}

TEST(HexDigits, AreSixteenWithLeadingZeros) {
  EXPECT_EQ(Written(WriteHex16, 0, 'A'), "~0000000000000000~");
  EXPECT_EQ(Written(WriteHex16, 0x12FF40, 'A'), "~000000000012FF40~");
  EXPECT_EQ(Written(WriteHex16, 0xFEDCBA9876543210, 'A'), "~FEDCBA9876543210~");
  EXPECT_EQ(Written(WriteHex16, 0x0123456789ABCDEF, 'a'), "~0123456789abcdef~");
  EXPECT_EQ(Written(WriteHex16Plainly, 0xFEDCBA9876543210, 'A'), "~FEDCBA9876543210~");
  EXPECT_EQ(Written(WriteHex16Plainly, 0x0123456789ABCDEF, 'a'), "~0123456789abcdef~");
}

TEST(HexDigits, AreThoseOfAStreamInBothWays) {
  std::mt19937_64 random(1);  // NOLINT: the same numbers in every run
  for (int i = 0; i < 20'000; ++i) {
    const std::uint64_t value = random() >> (i % 64);
    for (const char ten : {'A', 'a'}) {
      const std::string expected = Streamed(value, ten);
      ASSERT_EQ(Written(WriteHex16, value, ten), expected);
      ASSERT_EQ(Written(WriteHex16Plainly, value, ten), expected);
    }
  }
}

TEST(HexDigits, ShowEveryDigitAtEveryPlace) {
  for (unsigned place = 0; place < 16; ++place) {
    for (std::uint64_t digit = 0; digit < 16; ++digit) {
      const std::uint64_t value = digit << (4 * place);
      ASSERT_EQ(Written(WriteHex16, value, 'A'), Streamed(value, 'A'));
      ASSERT_EQ(Written(WriteHex16Plainly, value, 'A'), Streamed(value, 'A'));
    }
  }
}

}  // namespace
}  // namespace vextrel_test
