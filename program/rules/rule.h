// SPDX-License-Identifier: MIT
// What a rule is called and what it means: the one source of `vextrel rules` and docs/rules.md.
#ifndef VEXTREL_PROGRAM_RULES_RULE_H
#define VEXTREL_PROGRAM_RULES_RULE_H

#include <cstdint>
#include <span>
#include <string_view>

namespace vextrel::program {

enum class Severity : std::uint8_t { Info, Warning, Error };

// "error", "warning" or "info"
[[nodiscard]] std::string_view SeverityName(Severity severity) noexcept;

struct Rule {
  std::string_view id;
  Severity severity = Severity::Info;  // at most; a finding may say less
  std::string_view sentence;           // what is wrong if it's found
  std::string_view explanation;        // what exactly is looked for, and why it matters
  std::string_view remedy;
  std::string_view section;   // of the GenTL standard 1.6
  std::string_view harmless;  // when a finding means nothing
  std::string_view needs;     // what the log must have beside the calls, "" if nothing
  // Whether what the rule concludes depends on all calls being those of one process.
  bool needsOneProcess = true;
};

// Every rule, family by family.
[[nodiscard]] std::span<const Rule* const> AllRules();
// Null if no rule is called so. Small letters do, too.
[[nodiscard]] const Rule* FindRule(std::string_view id);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_RULE_H
