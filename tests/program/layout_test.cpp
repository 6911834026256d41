// SPDX-License-Identifier: MIT
#include "reading/layout.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

// 2026-11-21 18:55:08.786 is 1795287308.786 s after 1970 began.
constexpr std::int64_t kTime = 1'795'287'308'786'000;
constexpr std::int64_t kTimeOfDay = 68'108'786'000;

RecordHead Head(Layout layout, std::string_view text) {
  RecordHead head;
  EXPECT_TRUE(layout.Match(text, head)) << text;
  return head;
}

bool Matches(Layout layout, std::string_view text) {
  RecordHead head;
  return layout.Match(text, head);
}

TEST(Layout, ReadsThatOfTheFileConfiguration) {
  const std::string_view text = "2026-11-21 18:55:08.786 [140566109555904] INFO  message";
  Layout layout = Layout::OfPattern("%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n");
  const RecordHead head = Head(layout, text);
  EXPECT_EQ(head.time, kTime);
  EXPECT_EQ(head.thread, "140566109555904");
  EXPECT_EQ(head.priority, Priority::Info);
  EXPECT_EQ(text.substr(head.messageBegin), "message");
  EXPECT_EQ(layout.Time(), TimeKind::Date);
  EXPECT_EQ(layout.Resolution(), 1000);
}

TEST(Layout, ReadsDatesThatFollowEachOther) {
  Layout layout = Layout::OfPattern("%d{%Y-%m-%d %H:%M:%S.%l}|%m%n");
  RecordHead head;
  ASSERT_TRUE(layout.Match("2026-11-21 18:55:08.786|", head));
  ASSERT_TRUE(layout.Match("2026-11-21 18:55:09.001|", head));
  EXPECT_EQ(head.time, kTime + 215'000);
  ASSERT_TRUE(layout.Match("2026-11-21 18:56:08.786|", head));
  EXPECT_EQ(head.time, kTime + 60'000'000);
  EXPECT_FALSE(layout.Match("2026-11-21 18:56:08,786|", head));
  EXPECT_FALSE(layout.Match("2026-11-21 18:56:0x.786|", head));
  EXPECT_FALSE(layout.Match("2026-11-21 18:56:08.7", head));
  EXPECT_FALSE(layout.Match("2026-13-21 18:56:08.786|", head));
}

TEST(Layout, ReadsThoseOfTheOtherConfigurations) {
  const RecordHead console =
      Head(Layout::OfPattern("%d{%H:%M:%S.%l} %-5p %m%n"), "18:55:08.786 ERROR x");
  EXPECT_EQ(console.time, kTimeOfDay);
  EXPECT_EQ(console.priority, Priority::Error);
  const RecordHead fast = Head(Layout::OfPattern("%r [%t] %p %m%n"), "1234 [7] WARN x");
  EXPECT_EQ(fast.time, 1'234'000);
  EXPECT_EQ(fast.thread, "7");
  EXPECT_EQ(fast.priority, Priority::Warn);
}

TEST(Layout, ReadsThoseOfLog4cpp) {
  const std::string_view basic = "1795287308 INFO Vextrel : message";
  const RecordHead head = Head(Layout::OfPattern("%R %p %c %x: %m%n"), basic);
  EXPECT_EQ(head.category, "Vextrel");
  EXPECT_EQ(head.time, 1'795'287'308'000'000);
  EXPECT_EQ(basic.substr(head.messageBegin), "message");
  // The root category has no name.
  EXPECT_EQ(Head(Layout::OfPattern("%R %p %c %x: %m%n"), "1795287308 INFO  : message").category,
            "");
  const std::string_view simple = "INFO    : message";
  EXPECT_EQ(simple.substr(Head(Layout::Simple(), simple).messageBegin), "message");
  EXPECT_EQ(Layout::Simple().Time(), TimeKind::None);
}

TEST(Layout, ReadsEveryKindOfDate) {
  EXPECT_EQ(Head(Layout::OfPattern("%d %m%n"), "2026-11-21 18:55:08,786 x").time, kTime);
  EXPECT_EQ(Head(Layout::OfPattern("%d{ABSOLUTE} %m%n"), "18:55:08,786 x").time, kTimeOfDay);
  EXPECT_EQ(Head(Layout::OfPattern("%d{DATE} %m%n"), "21 Nov 2026 18:55:08,786 x").time, kTime);
  EXPECT_EQ(Head(Layout::OfPattern("%d{%d.%m.%y %I:%M:%S %p} %m%n"), "21.11.26 06:55:08 PM x").time,
            kTime - 786'000);
  EXPECT_EQ(Layout::OfPattern("%d{%H:%M:%S}%m%n").Resolution(), 1'000'000);
}

TEST(Layout, ReadsWidths) {
  EXPECT_EQ(Head(Layout::OfPattern("%7p|%m%n"), "   INFO|x").priority, Priority::Info);
  EXPECT_EQ(Head(Layout::OfPattern("%-7p|%m%n"), "INFO   |x").priority, Priority::Info);
  EXPECT_EQ(Head(Layout::OfPattern("%.1p|%m%n"), "E|x").priority, Priority::Error);
  EXPECT_EQ(Head(Layout::OfPattern("%-6t|%m%n"), "12    |x").thread, "12");
  EXPECT_FALSE(Matches(Layout::OfPattern("%-7p|%m%n"), "INFO|x"));
}

TEST(Layout, TakesOffWhatStandsBehindTheMessage) {
  Layout layout = Layout::OfPattern("%p %m (%t) %%%n");
  RecordHead head;
  EXPECT_EQ(layout.WithoutTail("a (b) (12) %", head), "a (b)");
  EXPECT_EQ(head.thread, "12");
  EXPECT_EQ(layout.WithoutTail("no end", head), "no end");
}

TEST(Layout, RefusesPatternsThatCannotBeReadBackward) {
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%d %p%n")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%d %m")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%m%t%n")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%n%m%n")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%q %m%n")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%d{%Y %m%n")), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Layout::OfPattern("%")), std::invalid_argument);
  EXPECT_TRUE(Layout::OfPattern("%m").IsGlued());
}

}  // namespace
}  // namespace vextrel_test
