// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "rules/family.h"

namespace vextrel::program {

std::span<const FamilyEntry> Families() {
  static const std::array families = {
      LibraryFamily(), ModuleFamily(),    HandleFamily(),       ListFamily(),
      DeviceFamily(),  BufferFamily(),    BufferMemoryFamily(), IncompleteFamily(),
      StarveFamily(),  QueueFamily(),     AcquisitionFamily(),  EventFamily(),
      WaitFamily(),    CloseWaitFamily(), InfoFamily(),         PortFamily(),
      TimeFamily(),    LagFamily(),       SerialFamily(),       ErrorFamily(),
      LogFamily(),
  };
  return families;
}

std::span<const Rule* const> AllRules() {
  static const std::vector<const Rule*> all = [] {
    std::vector<const Rule*> rules;
    for (const FamilyEntry& family : Families()) {
      rules.insert(rules.end(), family.rules.begin(), family.rules.end());
    }
    return rules;
  }();
  return all;
}

const Rule* FindRule(std::string_view id) {
  std::string upper(id);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char each) {
    return static_cast<char>(each >= 'a' && each <= 'z' ? each - 'a' + 'A' : each);
  });
  for (const Rule* rule : AllRules()) {
    if (rule->id == upper) {
      return rule;
    }
  }
  return nullptr;
}

bool EndsInTheMiddle(const SessionModel& model, const LogKnowledge& log, std::string_view rule,
                     Findings& findings) {
  const bool isBusy = !model.Timings().InTarget().empty();
  if (isBusy || log.isCut) {
    findings.AddUnknown(std::string(rule),
                        isBusy ? "the session ends while a call is in the producer, so what is "
                                 "open then may have been closed later"
                               : "the log ends in the middle of a line, so what is open then may "
                                 "have been closed later");
  }
  return isBusy || log.isCut;
}

std::string_view SeverityName(Severity severity) noexcept {
  switch (severity) {
    case Severity::Info:
      return "info";
    case Severity::Warning:
      return "warning";
    case Severity::Error:
      return "error";
  }
  return "info";
}

}  // namespace vextrel::program
