// SPDX-License-Identifier: MIT
#include "calllog/digits.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ios>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::Digits;

template <typename Number>
std::size_t DecimalSize(Number value) {
  return Digits::Decimal(value).view().size();
}

std::string Microseconds(std::int64_t nanoseconds) {
  char text[vextrel::kMaxDigits];
  return {text, vextrel::WriteMicroseconds(nanoseconds, text)};
}

TEST(Digits, ShowMicrosecondsWithThreeDecimals) {
  EXPECT_EQ(Microseconds(0), "0.000");
  EXPECT_EQ(Microseconds(7), "0.007");
  EXPECT_EQ(Microseconds(40), "0.040");
  EXPECT_EQ(Microseconds(999), "0.999");
  EXPECT_EQ(Microseconds(1000), "1.000");
  EXPECT_EQ(Microseconds(123456), "123.456");
  EXPECT_EQ(Microseconds(98765432109), "98765432.109");
  EXPECT_EQ(Microseconds(std::numeric_limits<std::int64_t>::max()), "9223372036854775.807");
}

// What a line's room is measured with: the widest number of each type takes it up exactly.
TEST(Digits, KnowTheMostThatEachTypeNeeds) {
  EXPECT_EQ(DecimalSize(std::numeric_limits<std::int16_t>::min()),
            vextrel::kMaxDecimal<std::int16_t>);
  EXPECT_EQ(DecimalSize(std::numeric_limits<std::uint16_t>::max()),
            vextrel::kMaxDecimal<std::uint16_t>);
  EXPECT_EQ(DecimalSize(std::numeric_limits<std::int32_t>::min()),
            vextrel::kMaxDecimal<std::int32_t>);
  EXPECT_EQ(DecimalSize(std::numeric_limits<std::uint32_t>::max()),
            vextrel::kMaxDecimal<std::uint32_t>);
  EXPECT_EQ(DecimalSize(std::numeric_limits<std::uint64_t>::max()),
            vextrel::kMaxDecimal<std::uint64_t>);
  EXPECT_EQ(Digits::Hex(std::numeric_limits<std::uint64_t>::max()).view().size(),
            vextrel::kMaxHex<std::uint64_t>);
  EXPECT_EQ(vextrel::kMaxHex<std::uint32_t>, 8U);
}

// Numbers of every size, both infinities, zeros, and what lies just beside a change of form or a
// rounding.
std::vector<double> ManyDoubles() {
  std::vector<double> values = {
      0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::max(),
      std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()};
  const auto addWithNeighbors = [&values](double value) {
    for (const double each : {std::nextafter(value, 0.0), value, std::nextafter(value, HUGE_VAL)}) {
      values.push_back(each);
    }
  };
  for (int exponent = -323; exponent <= 308; ++exponent) {
    for (const char* digits : {"1", "1.5", "9.99999", "9.999995", "1.000005", "1.234565", "5"}) {
      std::istringstream stream(std::string(digits) + "e" + std::to_string(exponent));
      double value = 0.0;
      if (stream >> value) {
        addWithNeighbors(value);
      }
    }
  }
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    addWithNeighbors(std::ldexp(1.0, exponent));
  }
  // Ties of six digits that a double holds exactly.
  for (double tie = 100000.5; tie < 1000000.0; tie += 9999.0) {
    addWithNeighbors(tie);
    addWithNeighbors(tie * 10.0);
  }
  std::mt19937_64 random(20);
  for (int i = 0; i < 20'000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isnan(value)) {
      values.push_back(value);
    }
  }
  const std::size_t positive = values.size();
  for (std::size_t i = 0; i < positive; ++i) {
    values.push_back(-values[i]);
  }
  return values;
}

std::string General(double value) {
  return std::string(Digits::General(value).view());
}

std::string WithPrintf(double value) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, "%g", value);
  return {text, static_cast<std::size_t>(length)};
}

std::string WithStream(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

TEST(DigitsDecimal, ShowsTheLimitsOfEveryTypeAndZeroWithoutFill) {
  EXPECT_EQ(Digits::Decimal(0).view(), "0");
  EXPECT_EQ(Digits::Decimal(-7).view(), "-7");
  EXPECT_EQ(Digits::Decimal(1000000).view(), "1000000");
  EXPECT_EQ(Digits::Decimal(std::int8_t{-128}).view(), "-128");
  EXPECT_EQ(Digits::Decimal(std::uint8_t{255}).view(), "255");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::int16_t>::min()).view(), "-32768");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::uint16_t>::max()).view(), "65535");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::int32_t>::min()).view(), "-2147483648");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::int32_t>::max()).view(), "2147483647");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::uint32_t>::max()).view(), "4294967295");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::int64_t>::min()).view(),
            "-9223372036854775808");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::int64_t>::max()).view(),
            "9223372036854775807");
  EXPECT_EQ(Digits::Decimal(std::numeric_limits<std::uint64_t>::max()).view(),
            "18446744073709551615");
}

// Numbers of every size.
std::vector<std::uint64_t> ManyNumbers() {
  std::mt19937_64 random(21);  // NOLINT: the same numbers in every run
  std::vector<std::uint64_t> numbers;
  for (int i = 0; i < 20'000; ++i) {
    numbers.push_back(random() >> (i % 64));
  }
  return numbers;
}

template <typename Number>
std::string Streamed(Number number, std::ios_base& (*base)(std::ios_base&)) {
  std::ostringstream stream;
  stream << base << number;
  return stream.str();
}

TEST(DigitsDecimal, AgreesWithStreams) {
  for (const std::uint64_t number : ManyNumbers()) {
    const auto low32 = static_cast<std::uint32_t>(number);
    const auto signed32 = static_cast<std::int32_t>(low32);
    const auto signed64 = static_cast<std::int64_t>(number);
    ASSERT_EQ(Digits::Decimal(number).view(), Streamed(number, std::dec));
    ASSERT_EQ(Digits::Decimal(low32).view(), Streamed(low32, std::dec));
    ASSERT_EQ(Digits::Decimal(signed32).view(), Streamed(signed32, std::dec));
    ASSERT_EQ(Digits::Decimal(signed64).view(), Streamed(signed64, std::dec));
  }
}

TEST(DigitsHex, AgreesWithStreams) {
  for (const std::uint64_t number : ManyNumbers()) {
    ASSERT_EQ(Digits::Hex(number).view(), Streamed(number, std::hex));
  }
}

TEST(DigitsHex, ShowsLowerCaseDigitsWithoutPrefixOrFill) {
  EXPECT_EQ(Digits::Hex(0).view(), "0");
  EXPECT_EQ(Digits::Hex(0x10).view(), "10");
  EXPECT_EQ(Digits::Hex(0xFEDCBA9876543210).view(), "fedcba9876543210");
}

TEST(DigitsHex16, ShowsExactlySixteenDigits) {
  EXPECT_EQ(Digits::UpperHex16(0xBA9876543210).view(), "0000BA9876543210");
  EXPECT_EQ(Digits::LowerHex16(0x456789ABCDEF).view(), "0000456789abcdef");
}

TEST(DigitsAddress, ShowsAnAddressInUpperCaseWithZeros) {
  EXPECT_EQ(Digits::Address(nullptr).view(), "0x0000000000000000");
  EXPECT_EQ(Digits::Address(Handle(0x12FF40)).view(), "0x000000000012FF40");
  EXPECT_EQ(Digits::Address(Handle(0xFFFFFFFFFFFFFFFF)).view(), "0xFFFFFFFFFFFFFFFF");
}

TEST(DigitsGeneral, ShowsSixSignificantDigits) {
  EXPECT_EQ(General(0.0), "0");
  EXPECT_EQ(General(1.0 / 3.0), "0.333333");
  EXPECT_EQ(General(2.0 / 3.0), "0.666667");
  EXPECT_EQ(General(100000.0), "100000");
  EXPECT_EQ(General(999999.0), "999999");
  EXPECT_EQ(General(1000000.0), "1e+06");
  EXPECT_EQ(General(0.0001), "0.0001");
  EXPECT_EQ(General(0.00001234567), "1.23457e-05");
  EXPECT_EQ(General(12.5), "12.5");
}

TEST(DigitsGeneral, ShowsSignsInfinitiesAndWhatIsNoNumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(General(-0.0), "-0");
  EXPECT_EQ(General(-1.5), "-1.5");
  EXPECT_EQ(General(kInfinity), "inf");
  EXPECT_EQ(General(-kInfinity), "-inf");
  EXPECT_EQ(General(std::copysign(kNan, 1.0)), "nan");
  EXPECT_EQ(General(std::copysign(kNan, -1.0)), "-nan");
  EXPECT_EQ(General(std::numeric_limits<double>::signaling_NaN()), "nan");
  // The sign alone decides, not what else the number carries.
  EXPECT_EQ(General(std::bit_cast<double>(std::uint64_t{0x7FF8000000000001U})), "nan");
  EXPECT_EQ(General(std::bit_cast<double>(std::uint64_t{0x7FFFFFFFFFFFFFFFU})), "nan");
  EXPECT_EQ(General(std::bit_cast<double>(std::uint64_t{0xFFF8000000000001U})), "-nan");
}

TEST(DigitsGeneral, FitsTheLongestTexts) {
  EXPECT_EQ(General(-std::numeric_limits<double>::max()), "-1.79769e+308");
  EXPECT_EQ(General(-std::numeric_limits<double>::denorm_min()), "-4.94066e-324");
  EXPECT_EQ(General(-0.000123456), "-0.000123456");
}

TEST(DigitsGeneral, AgreesWithPrintfAndStreams) {
  for (const double value : ManyDoubles()) {
    ASSERT_EQ(General(value), WithPrintf(value)) << std::hexfloat << value;
    ASSERT_EQ(General(value), WithStream(value)) << std::hexfloat << value;
  }
}

// Some systems know more flags than the standard does: of a denormal operand, for instance.
constexpr int kStandardFlags = FE_DIVBYZERO | FE_INEXACT | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW;

// A signalling NaN is left out: touching one raises FE_INVALID, in printf, too.
TEST(DigitsGeneral, RaisesNoFloatingPointException) {
  std::vector<double> values = ManyDoubles();
  values.push_back(std::numeric_limits<double>::quiet_NaN());
  values.push_back(-std::numeric_limits<double>::quiet_NaN());
  for (const double& value : values) {
    ASSERT_EQ(std::feclearexcept(FE_ALL_EXCEPT), 0);
    const Digits digits = Digits::General(value);
    const int raised = std::fetestexcept(kStandardFlags);
    ASSERT_EQ(raised, 0) << digits.view();
  }
}

TEST(DigitsGeneral, KeepsTheExceptionFlagsThatAreSet) {
  for (const int flag : {FE_DIVBYZERO, FE_INVALID, FE_OVERFLOW, FE_UNDERFLOW, FE_INEXACT}) {
    std::feclearexcept(FE_ALL_EXCEPT);
    std::feraiseexcept(flag);
    const int before = std::fetestexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(Digits::General(0.1).view(), "0.1");
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), before) << flag;
  }
  std::feclearexcept(FE_ALL_EXCEPT);
}

}  // namespace
}  // namespace vextrel_test
