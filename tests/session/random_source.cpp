// SPDX-License-Identifier: MIT
#include "session/random_source.h"

#include <cstring>
#include <limits>

namespace vextrel_test::session {

std::uint64_t RandomSource::Number() {
  switch (Below(5)) {
    case 0:
      return Below(100);
    case 1:
      return 0 - Below(100);
    case 2:
      return 0xFFFFFFF0U + Below(0x20);
    case 3:
      return 0x7FFFFFF0U + Below(0x20);
    default:
      return Bits() >> Below(64);
  }
}

std::int32_t RandomSource::Command(std::int32_t last) {
  switch (Below(16)) {
    case 0:
      return 1000;
    case 1:
      return Pick({999, 1001, -1000, 0x10000});
    case 2:
      return static_cast<std::int32_t>(Bits());
    default:
      return static_cast<std::int32_t>(Below(static_cast<std::uint64_t>(last) + 3)) - 1;
  }
}

std::string RandomSource::Text() {
  std::string text;
  for (std::uint64_t count = Below(6); count > 0; --count) {
    text += Pick({"camera", "%s",
                  "%n",     "%p%p",
                  "100 %",  "%",
                  "%%",     "%lu",
                  "'",      "\"",
                  "\\",     "\\n",
                  " ",      "\t",
                  "\n",     "\r",
                  "\x1A",   "\xC3\xA4",
                  "\xFF",   ")",
                  "->(",    ", ",
                  "0x",     "NULL",
                  "(null)", "GC_ERR_SUCCESS",
                  "\x01",   "$(PATH)",
                  ";"});
  }
  if (OneIn(40)) {
    text += std::string(Below(3000), static_cast<char>('a' + Below(26)));
  }
  return text;
}

std::string RandomSource::Fraction() {
  if (OneIn(3)) {
    return BytesOf(Bits());
  }
  const double digits = Pick(
      {0.0, -0.0, 1.0, -1.5, 3.14159265, 29.97, 123456.0, 1234567.0, 1e5, 1e6, 1e-4, 1e-5, 1e99,
       1e100, 1e-100, std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
       std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()});
  return BytesOf(digits);
}

std::string RandomSource::Bytes(std::size_t size) {
  std::string bytes;
  switch (Below(6)) {
    case 0:
      break;
    case 1:
      bytes.assign(size, static_cast<char>(Below(256)));
      break;
    case 2:
      bytes = BytesOf(Number());
      break;
    case 3:
      bytes = Fraction();
      break;
    case 4:
      for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(Below(256));
      }
      break;
    default:
      bytes = Text();
      break;
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace vextrel_test::session
