// SPDX-License-Identifier: MIT
#include "commands/rules_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "program/small_log.h"
#include "rules/reported_faults.h"
#include "rules/rule.h"

namespace vextrel_test {
namespace {

using testing::HasSubstr;
using vextrel::program::AllRules;
using vextrel::program::FindRule;
using vextrel::program::Rule;

TEST(Rules, AreExplained) {
  std::set<std::string_view> ids;
  for (const Rule* rule : AllRules()) {
    EXPECT_TRUE(ids.insert(rule->id).second) << rule->id;
    EXPECT_FALSE(rule->sentence.empty() || rule->explanation.empty() || rule->remedy.empty())
        << rule->id;
    EXPECT_EQ(FindRule(rule->id), rule);
  }
  for (const auto& fault : vextrel::program::ReportedFaults()) {
    std::istringstream names{std::string(fault.rules)};
    for (std::string id; names >> id;) {
      EXPECT_TRUE(ids.contains(id)) << id << " of " << fault.links;
    }
  }
  const ProgramResult list = RunVextrel({"rules"});
  EXPECT_EQ(list.status, 0);
  EXPECT_THAT(list.output, HasSubstr("BUF-STARVE       error    A stream ran out of buffers\n"));
  const ProgramResult one = RunVextrel({"rules", "BUF-STARVE"});
  EXPECT_EQ(one.status, 0);
  EXPECT_THAT(one.output, HasSubstr("What to do:\n  Queue each buffer again with DSQueueBuffer"));
  EXPECT_EQ(RunVextrel({"rules", "buf-starve"}).output, one.output);
  EXPECT_EQ(RunVextrel({"rules", "NO-RULE"}).status, 2);
}

TEST(Rules, AreInTheirDocument) {
  std::ifstream file(VEXTREL_DOCS_FOLDER "/rules.md", std::ios::binary);
  ASSERT_TRUE(file.is_open());
  const std::string document{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(document, RunVextrel({"rules", "--markdown"}).output)
      << "make it again: vextrel rules --markdown > docs/rules.md";
}

}  // namespace
}  // namespace vextrel_test
