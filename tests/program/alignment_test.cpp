// SPDX-License-Identifier: MIT
#include "model/alignment.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

ComparableCall Call(char what) {
  ComparableCall call;
  call.what = static_cast<std::uint64_t>(what);
  call.text = what;
  return call;
}

std::string Texts(const std::vector<ComparableCall>& calls) {
  std::string texts;
  for (const ComparableCall& each : calls) {
    texts += each.text;
  }
  return texts;
}

// The equal calls as they are, what differs as [left|right].
std::string Aligned(std::string_view left, std::string_view right) {
  std::string found;
  Alignment alignment({[&found](const ComparableCall& first, const ComparableCall& second) {
                         EXPECT_EQ(first.what, second.what);
                         found += first.text;
                       },
                       [&found](const std::vector<ComparableCall>& first,
                                const std::vector<ComparableCall>& second) {
                         found += "[" + Texts(first) + "|" + Texts(second) + "]";
                       }});
  for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
    if (i < left.size()) {
      alignment.Add(Alignment::Side::Left, Call(left[i]));
    }
    if (i < right.size()) {
      alignment.Add(Alignment::Side::Right, Call(right[i]));
    }
  }
  alignment.Finish();
  return found;
}

TEST(Alignment, PutsEqualCallsBesideEachOther) {
  EXPECT_EQ(Aligned("abc", "abc"), "abc");
  EXPECT_EQ(Aligned("", ""), "");
}

TEST(Alignment, FindsWhatOnlyOneSideHas) {
  EXPECT_EQ(Aligned("abcdef", "abdef"), "ab[c|]def");
  EXPECT_EQ(Aligned("abdef", "abcdef"), "ab[|c]def");
  EXPECT_EQ(Aligned("abc", "abcde"), "abc[|de]");
  EXPECT_EQ(Aligned("abc", ""), "[abc|]");
}

TEST(Alignment, FindsWhatStandsInAnothersPlace) {
  EXPECT_EQ(Aligned("abXYcde", "abZcde"), "ab[XY|Z]cde");
  EXPECT_EQ(Aligned("abX", "abZ"), "ab[X|Z]");
}

TEST(Alignment, KeepsNoMoreThanItsWindow) {
  std::size_t different = 0;
  Alignment alignment({[](const ComparableCall&, const ComparableCall&) {},
                       [&different](const std::vector<ComparableCall>& left,
                                    const std::vector<ComparableCall>& right) {
                         different += left.size() + right.size();
                       }});
  for (std::uint64_t i = 0; i < 20'000; ++i) {
    ComparableCall call;
    call.what = 2 * i;
    alignment.Add(Alignment::Side::Left, call);
    EXPECT_LE(alignment.Waiting(Alignment::Side::Left), 4 * Alignment::kWindow);
  }
  alignment.Finish();
  EXPECT_EQ(different, 20'000U);
}

}  // namespace
}  // namespace vextrel_test
