// SPDX-License-Identifier: MIT
#include "views/safe_text.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

std::string Safe(std::string_view text, std::size_t limit = SIZE_MAX) {
  std::string out;
  AppendSafe(out, text, limit);
  return out;
}

TEST(SafeText, LetsTextThrough) {
  EXPECT_EQ(Safe("plain 'text'"), "plain 'text'");
  EXPECT_EQ(Safe("K\xC3\xA4mera \xF0\x9F\x93\xB7"), "K\xC3\xA4mera \xF0\x9F\x93\xB7");
}

TEST(SafeText, LetsNoControlCharacterThrough) {
  EXPECT_EQ(Safe("\x1b[31m\n\r\x7F"), "\\x1b[31m\\n\\x0d\\x7f");
  EXPECT_EQ(Safe(std::string_view("\0", 1)), "\\x00");
  EXPECT_EQ(Safe("\xC2\x9B"), "\\xc2\\x9b");           // one of the upper control characters
  EXPECT_EQ(Safe("\xE2\x80\xAE"), "\\xe2\\x80\\xae");  // writes from right to left
}

TEST(SafeText, EscapesWhatIsNoUtf8) {
  EXPECT_EQ(Safe("\xFF\xC3"), "\\xff\\xc3");
  EXPECT_EQ(Safe("\xC0\xAF"), "\\xc0\\xaf");           // too long for its character
  EXPECT_EQ(Safe("\xED\xA0\x80"), "\\xed\\xa0\\x80");  // half a pair
  EXPECT_EQ(Utf8("a\xFF\n"), "a\\xff\n");
}

TEST(SafeText, CutsLongTexts) {
  EXPECT_EQ(Safe("abcdef", 3), "abc...");
  EXPECT_EQ(Safe("abc", 3), "abc");
}

}  // namespace
}  // namespace vextrel_test
