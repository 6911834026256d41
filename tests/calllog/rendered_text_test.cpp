// SPDX-License-Identifier: MIT
#include "calllog/rendered_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "calllog/guarded_memory.h"
#include "calllog/rendered.h"

namespace vextrel_test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using vextrel::RenderedText;

TEST(RenderedText, JoinsItsParts) {
  EXPECT_EQ(Whole(RenderedText{"a", "", "bc", "def"}), WithNul("abcdef"));
}

TEST(RenderedText, HoldsOnlyTheNulWithoutAnyText) {
  EXPECT_EQ(Whole(RenderedText{}), WithNul(""));
  EXPECT_EQ(Whole(RenderedText{""}), WithNul(""));
  EXPECT_EQ(Whole(RenderedText{"", "", ""}), WithNul(""));
}

TEST(RenderedText, HoldsTextsOfEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    std::string text(length, ' ');
    for (std::size_t i = 0; i < length; ++i) {
      text[i] = static_cast<char>('a' + i % 26);
    }
    const RenderedText rendered{text};
    ASSERT_EQ(Whole(rendered), WithNul(text));
    ASSERT_EQ(std::strlen(rendered.c_str()), length);
    ASSERT_EQ(rendered.view().data(), rendered.c_str());
  }
}

TEST(RenderedText, WritesNothingPastItself) {
  GuardedMemory memory(sizeof(RenderedText));
  const std::array<std::uint8_t, sizeof(RenderedText)> room{};
  void* const place = const_cast<void*>(memory.PutAtEnd(room));
  for (std::size_t length = 0; length <= 100; ++length) {
    const std::string text(length, 't');
    const auto* rendered = new (place) RenderedText{text};
    ASSERT_EQ(Whole(*rendered), WithNul(text));
    std::destroy_at(rendered);
  }
}

TEST(RenderedText, JoinsPartsWherever64CharactersAreReached) {
  const std::string part(61, 'x');
  EXPECT_EQ(Whole(RenderedText{part, "y"}), WithNul(part + "y"));
  EXPECT_EQ(Whole(RenderedText{part, "yy"}), WithNul(part + "yy"));
  EXPECT_EQ(Whole(RenderedText{part, "yyy"}), WithNul(part + "yyy"));
  EXPECT_EQ(Whole(RenderedText{"(", part, "yyy", ")"}), WithNul("(" + part + "yyy)"));
}

TEST(RenderedText, CopiesItsParts) {
  std::string part = "before";
  const RenderedText rendered{part};
  part = "after";
  EXPECT_STREQ(rendered.c_str(), "before");
}

TEST(RenderedText, KeepsNulsInsideTheText) {
  const RenderedText rendered{"0x", "", "->(", "\0"sv, ")"};
  EXPECT_EQ(Whole(rendered), "0x->(\0)\0"s);
  EXPECT_STREQ(rendered.c_str(), "0x->(");
}

TEST(RenderedText, RefersToANameInsteadOfCopyingIt) {
  static constexpr std::string_view kName = "GC_ERR_SUCCESS";
  const RenderedText rendered = RenderedText::Name(kName);
  EXPECT_EQ(Whole(rendered), WithNul("GC_ERR_SUCCESS"));
  EXPECT_EQ(rendered.c_str(), kName.data());
  EXPECT_EQ(rendered.Shown(), "GC_ERR_SUCCESS");
}

TEST(RenderedText, HoldsWhatIsWrittenIntoIt) {
  for (const std::size_t length : {0U, 1U, 62U, 63U, 64U, 65U, 5000U}) {
    const RenderedText rendered(
        length, [length](char* text) { std::fill_n(text, length, static_cast<char>('w')); });
    ASSERT_EQ(Whole(rendered), WithNul(std::string(length, 'w')));
    ASSERT_EQ(rendered.Shown(), std::string(length, 'w'));
  }
}

TEST(RenderedText, HoldsTheDigitsOfANumber) {
  const RenderedText number = RenderedText::Number([](char* text) {
    return vextrel::WriteDecimal(std::numeric_limits<std::int64_t>::min(), text);
  });
  EXPECT_EQ(Whole(number), WithNul("-9223372036854775808"));
  EXPECT_EQ(number.Shown(), "-9223372036854775808");
  const RenderedText address = RenderedText::Number(
      [](char* text) { return vextrel::WriteUpperHex16(0xFEDCBA9876543210, text); });
  EXPECT_EQ(Whole(address), WithNul("FEDCBA9876543210"));
}

TEST(RenderedText, ShowsWhatStandsBeforeTheFirstNul) {
  EXPECT_EQ((RenderedText{"a", "b"}.Shown()), "ab");
  EXPECT_EQ((RenderedText{"ab\0cd"sv, "e"}.Shown()), "ab");
  EXPECT_EQ((RenderedText{"\0cd"sv}.Shown()), "");
  EXPECT_EQ(RenderedText{}.Shown(), "");
}

}  // namespace
}  // namespace vextrel_test
