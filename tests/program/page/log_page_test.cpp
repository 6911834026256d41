// SPDX-License-Identifier: MIT
#include "page/log_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "program/page/page_data.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;
using testing::Not;
using vextrel::program::kMostOfAPage;

constexpr std::string_view kMarkup =
    "</script><script>alert(1)</script><img src=x onerror=alert(2)>";

std::string OpenDevice(int time, std::string_view name, std::string_view thread = "7") {
  return LogLine(time,
                 "GC_ERR_ACCESS_DENIED=IFOpenDevice(hInterface=0x0000000000000A20, "
                 "0x000000000000F038->(sDevName=" +
                     std::string(name) +
                     "), iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x000000000000F040->(hDev=0x0))",
                 "INFO", thread);
}

TEST(LogPage, ForbidsEveryRequest) {
  EXPECT_THAT(PageOf(SmallSession()),
              HasSubstr("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none';"));
}

TEST(LogPage, HasNoMarkupOfTheLog) {
  const std::string page =
      PageOf(SmallSession() + OpenDevice(1'020, kMarkup) + LogLine(1'021, kMarkup, "ERROR"));
  const std::string plain = PageOf(SmallSession());
  EXPECT_EQ(std::count(page.begin(), page.end(), '<'), std::count(plain.begin(), plain.end(), '<'));
  EXPECT_THAT(page, Not(HasSubstr(kMarkup)));
  const nlohmann::json findings = DataOf(page)["findings"]["all"];
  EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [](const nlohmann::json& each) {
    return each["message"].get<std::string>().find(kMarkup) != std::string::npos;
  })) << findings;
}

TEST(LogPage, EscapesWhatScriptsTripOver) {
  // A line separator, and a byte that is no UTF-8.
  const std::string page = PageOf(OpenDevice(0, "a\xE2\x80\xA8z\xFF"));
  ASSERT_FALSE(page.empty());
  EXPECT_THAT(page, Not(HasSubstr("\xE2\x80\xA8")));
  EXPECT_THAT(page, Not(HasSubstr("\xFF")));
  EXPECT_NO_THROW(static_cast<void>(DataOf(page)));
}

TEST(LogPage, IsNoBiggerThanItMayBe) {
  // Everything that a page has room for, with the characters that take most of it.
  const std::string name(300, '<');
  std::string log;
  for (int i = 0; i < 36'000; ++i) {
    const std::string handle = std::to_string(1'000'000 + i % 3'000);
    const std::string thread = std::to_string(i % 50) + name.substr(0, 60);
    log += i % 3 == 0 ? OpenDevice(i, std::to_string(i) + name, thread)
           : i % 3 == 1
               ? LogLine(i,
                         "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
                         "0x000000000000F028->(sInterfaceName=" +
                             name + "), 0x000000000000F030->(hInterface=000000000" + handle + "))",
                         "INFO", thread)
               : LogLine(i, "GC_ERR_INVALID_HANDLE=IFClose(hInterface=0x000000000" + handle + ")",
                         "INFO", thread);
  }
  const std::string page = PageOf(log);
  EXPECT_GT(page.size(), kMostOfAPage / 4) << "the log doesn't try the limit";
  EXPECT_LE(page.size(), kMostOfAPage);
  EXPECT_NO_THROW(static_cast<void>(DataOf(page)));
}

TEST(LogPage, SaysThatALogHasNoTimes) {
  const nlohmann::json data =
      DataOf(PageOf("INFO GC_ERR_SUCCESS=GCInitLib(void)\nINFO "
                    "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))\n"));
  EXPECT_EQ(data["timeKind"], "none");
  EXPECT_EQ(data["firstMs"], nullptr);
  EXPECT_EQ(data["handles"]["count"], 1);
}

}  // namespace
}  // namespace vextrel_test
