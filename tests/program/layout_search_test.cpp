// SPDX-License-Identifier: MIT
#include "reading/layout_search.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using vextrel::program::FindLayout;

constexpr std::string_view kCall = "GC_ERR_SUCCESS=GCInitLib(void)";

std::string LayoutOf(const std::string& front) {
  const auto layout = FindLayout(front + std::string(kCall) + "\n");
  return layout.has_value() ? layout->Name() : "none";
}

TEST(LayoutSearch, FindsThoseOfTheConfigurations) {
  EXPECT_EQ(LayoutOf("2026-11-21 18:55:08.786 [1] INFO  "),
            "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n");
  EXPECT_EQ(LayoutOf("18:55:08.786 INFO  "), "%d{%H:%M:%S.%l} %-5p %m%n");
  EXPECT_EQ(LayoutOf("0 [1] INFO "), "%r [%t] %p %m%n");
}

TEST(LayoutSearch, FindsThoseOfLog4cpp) {
  EXPECT_EQ(LayoutOf("1795287308 INFO Vextrel : "), "%R %p %c %x: %m%n");
  EXPECT_EQ(LayoutOf("INFO    : "), "SimpleLayout");
  EXPECT_EQ(LayoutOf(""), "%m%n");
}

TEST(LayoutSearch, TellsMessagesThatAreGluedTogether) {
  const auto layout = FindLayout(std::string(kCall) + std::string(kCall));
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->Name(), "PassThroughLayout");
}

TEST(LayoutSearch, LooksBehindTheRestOfACutDump) {
  std::string text;
  for (int i = 0; i < 10'000; ++i) {
    text += "0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f,\n";
  }
  EXPECT_EQ(LayoutOf(text + "18:55:08.786 INFO  "), "%d{%H:%M:%S.%l} %-5p %m%n");
}

TEST(LayoutSearch, FindsNoneInOtherTexts) {
  EXPECT_EQ(LayoutOf("2026-11-21 18:55:08.786 some other program says "), "none");
  EXPECT_FALSE(FindLayout("").has_value());
  EXPECT_FALSE(FindLayout("2026-11-21 18:55:08.786 [1] INFO  hello\n").has_value());
}

}  // namespace
}  // namespace vextrel_test
