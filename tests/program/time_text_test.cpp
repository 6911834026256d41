// SPDX-License-Identifier: MIT
#include "views/time_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

constexpr std::int64_t kTime = 1'795'287'308'786'000;

TEST(TimeText, ShowsWhatTheLayoutHas) {
  EXPECT_EQ(TimeText(kTime, TimeKind::Date, 1'000), "2026-11-21 18:55:08.786");
  EXPECT_EQ(TimeText(kTime, TimeKind::Date, 1'000'000), "2026-11-21 18:55:08");
  EXPECT_EQ(TimeText(68'108'786'000, TimeKind::TimeOfDay, 1'000), "18:55:08.786");
  EXPECT_EQ(TimeText(1'234'000, TimeKind::SinceStart, 1'000), "1.234 s");
  EXPECT_EQ(TimeText(-1'000, TimeKind::Date, 1'000), "1969-12-31 23:59:59.999");
  EXPECT_EQ(TimeText(951'782'400'000'000, TimeKind::Date, 1'000), "2000-02-29 00:00:00.000");
}

TEST(TimeText, ShowsMilliseconds) {
  EXPECT_EQ(Milliseconds(1'234'567), "1234.567");
}

TEST(TimeLimit, ComparesDatesTimesOfDayAndSecondsSinceTheStart) {
  EXPECT_EQ(TimeLimit("2026-11-21 18:55:08.786").Compare(kTime, 0), 0);
  EXPECT_LT(TimeLimit("2026-11-21 18:55:09").Compare(kTime, 0), 0);
  EXPECT_GT(TimeLimit("18:55").Compare(kTime, 0), 0);
  EXPECT_EQ(TimeLimit("18:55:08.786").Compare(kTime, 0), 0);
  EXPECT_EQ(TimeLimit("+0.5").Compare(kTime + 500'000, kTime), 0);
  EXPECT_LT(TimeLimit("+1").Compare(kTime + 500'000, kTime), 0);
}

TEST(TimeLimit, RefusesOtherTexts) {
  EXPECT_THROW(TimeLimit("yesterday"), std::invalid_argument);
  EXPECT_THROW(TimeLimit("18"), std::invalid_argument);
  EXPECT_THROW(TimeLimit("+"), std::invalid_argument);
  EXPECT_THROW(TimeLimit("+1x"), std::invalid_argument);
  EXPECT_THROW(TimeLimit("18:55:08.786 "), std::invalid_argument);
}

}  // namespace
}  // namespace vextrel_test
