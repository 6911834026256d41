// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "page/page_json.h"

namespace vextrel_test {
namespace {

using vextrel::program::FitData;
using vextrel::program::WithoutMarkup;

TEST(PageText, HasNoCharacterThatMarkupNeeds) {
  EXPECT_EQ(WithoutMarkup(R"({"a":"<b>&"})"), R"({"a":"\u003cb\u003e\u0026"})");
}

TEST(PageText, LeavesOutWhatIsNeededLeast) {
  const std::string big(1'000, '<');
  const vextrel::program::PageJson data = {
      {"handles", {{"all", {big}}, {"count", 1}}}, {"rows", {big}}, {"failures", {"small"}}};
  // A character of markup takes six.
  EXPECT_EQ(nlohmann::json::parse(FitData(data, 20'000))["leftOut"], nlohmann::json::array());
  const nlohmann::json fitted = nlohmann::json::parse(FitData(data, 7'000));
  EXPECT_EQ(fitted["leftOut"], nlohmann::json::array({"handles"}));
  EXPECT_EQ(fitted["handles"]["all"], nlohmann::json::array());
  EXPECT_EQ(fitted["handles"]["count"], 1);
  EXPECT_EQ(fitted["rows"][0], big);
  EXPECT_LE(FitData(data, 1'000).size(), 1'000U);
}

}  // namespace
}  // namespace vextrel_test
