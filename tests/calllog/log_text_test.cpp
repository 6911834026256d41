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

// What stands between the two.
std::string_view Between(std::string_view begin, std::string_view end, std::string_view text) {
  const std::size_t from = text.find(begin);
  return from == std::string_view::npos
             ? std::string_view()
             : text.substr(from + begin.size(), text.find(end, from) - from - begin.size());
}

// The constants that stand behind these words.
std::set<std::string> NamesBehind(std::string_view words, std::string_view text) {
  std::set<std::string> names;
  for (std::size_t at = text.find(words); at != std::string_view::npos; at = text.find(words, at)) {
    at += words.size();
    names.emplace(text.substr(at, text.find_first_of(" ,)\n", at) - at));
  }
  return names;
}

TEST(LogText, ListsEveryTextThatItDefines) {
  const std::string home = ReadFile(kSourceFolder / "calllog" / "log_text.h");
  std::size_t defined = 0;
  const auto expectList = [&](const std::string& space, const std::string& list) {
    const std::set<std::string> texts =
        NamesBehind("inline constexpr auto ",
                    Between("namespace " + space + " {", "}  // namespace " + space, home));
    const std::set<std::string> listed =
        NamesBehind(space + "::", Between(list + " = TextsOf(", ";", home));
    for (const std::string& text : texts) {
      EXPECT_TRUE(listed.contains(text)) << list << " lacks " << space << "::" << text;
    }
    defined += texts.size();
    return listed.size();
  };
  EXPECT_EQ(expectList("line", "kCallLines"), kCallLines.size());
  EXPECT_EQ(expectList("report", "kReports"), kReports.size());
  EXPECT_EQ(expectList("timing", "kTimingLines"), kTimingLines.size());
  EXPECT_EQ(CountOf("\"_line;", home), defined);
}

TEST(LogText, HasEachTextOnce) {
  std::set<std::string_view> texts(kCallLines.begin(), kCallLines.end());
  texts.insert(kReports.begin(), kReports.end());
  texts.insert(kTimingLines.begin(), kTimingLines.end());
  EXPECT_EQ(texts.size(), kCallLines.size() + kReports.size() + kTimingLines.size());
}

TEST(LogText, HasALineForEveryFunction) {
  std::vector<std::string> missing;
  for (const std::string& name : AllFunctionNames()) {
    const std::string begin = "%s=" + name + "(";
    if (std::ranges::none_of(kCallLines,
                             [&](std::string_view line) { return line.starts_with(begin); })) {
      missing.push_back(name);
    }
  }
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
