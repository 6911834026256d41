// SPDX-License-Identifier: MIT
#include "calllog/hex_digits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "model/windows_printf.h"

namespace vextrel_test {
namespace {

// In both ways, with one character more on either side to see that nothing is written there.
void ExpectDigits(std::uint64_t value, char ten, const std::string& digits) {
  for (auto* write : {&vextrel::WriteHex16, &vextrel::WriteHex16Plainly}) {
    std::string text(vextrel::kHex16Size + 2, '~');
    write(value, ten, text.data() + 1);
    ASSERT_EQ(text, "~" + digits + "~");
  }
}

void ExpectDigitsOfPrintf(std::uint64_t value) {
  ASSERT_NO_FATAL_FAILURE(ExpectDigits(value, 'A', model::Print("%p", {value}).Text()));
  const std::string digits = model::Print("%llx", {value}).Text();
  ASSERT_NO_FATAL_FAILURE(ExpectDigits(value, 'a', std::string(16 - digits.size(), '0') + digits));
}

TEST(HexDigits, AreSixteenWithLeadingZeros) {
  ExpectDigits(0, 'A', "0000000000000000");
  ExpectDigits(0x12FF40, 'A', "000000000012FF40");
  ExpectDigits(0xFEDCBA9876543210, 'A', "FEDCBA9876543210");
  ExpectDigits(0x0123456789ABCDEF, 'a', "0123456789abcdef");
}

TEST(HexDigits, ShowEveryDigitAtEveryPlace) {
  for (unsigned place = 0; place < 16; ++place) {
    for (std::uint64_t digit = 0; digit < 16; ++digit) {
      ASSERT_NO_FATAL_FAILURE(ExpectDigitsOfPrintf(digit << (4 * place)));
    }
  }
}

TEST(HexDigits, AreThoseOfPrintfForNumbersOfEverySize) {
  std::mt19937_64 random(1);  // NOLINT: the same numbers in every run
  for (int i = 0; i < 20'000; ++i) {
    ASSERT_NO_FATAL_FAILURE(ExpectDigitsOfPrintf(random() >> (i % 64)));
  }
}

}  // namespace
}  // namespace vextrel_test
