// SPDX-License-Identifier: MIT
#include "calllog/log_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/gentl_functions.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using ::testing::IsEmpty;
using ::vextrel::kCallLines;
using ::vextrel::kReports;
using ::vextrel::kTimingLines;

const std::filesystem::path kSourceFolder = VEXTREL_SOURCE_FOLDER;

std::size_t CountOf(std::string_view word, std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(word); at != std::string_view::npos;
       at = text.find(word, at + 1)) {
    ++count;
  }
  return count;
}

TEST(LogText, ListsEveryTextThatItDefines) {
  const std::string home = ReadFile(kSourceFolder / "calllog" / "log_text.h");
  EXPECT_EQ(CountOf("\"_line;", home), kCallLines.size() + kReports.size() + kTimingLines.size());
}

TEST(LogText, HasEachTextOnce) {
  std::set<std::string_view> texts(kCallLines.begin(), kCallLines.end());
  texts.insert(kReports.begin(), kReports.end());
  texts.insert(kTimingLines.begin(), kTimingLines.end());
  EXPECT_EQ(texts.size(), kCallLines.size() + kReports.size() + kTimingLines.size());
}

TEST(LogText, HasALineForEveryFunction) {
  std::vector<std::string> missing;
  ForEachFunction([&](std::string_view name, auto /*slot*/) {
    const std::string begin = "%s=" + std::string(name) + "(";
    if (std::ranges::none_of(kCallLines,
                             [&](std::string_view line) { return line.starts_with(begin); })) {
      missing.emplace_back(name);
    }
  });
  EXPECT_THAT(missing, IsEmpty());
}

TEST(LogText, IsTheOnlyPlaceWithTextsOfLines) {
  std::vector<std::string> others;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(kSourceFolder)) {
    const std::string name = entry.path().filename().string();
    if (!entry.is_regular_file() || name == "log_text.h" || name == "checked_format.h") {
      continue;
    }
    if (ReadFile(entry.path()).find("\"_line") != std::string::npos) {
      others.push_back(name);
    }
  }
  EXPECT_THAT(others, IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
