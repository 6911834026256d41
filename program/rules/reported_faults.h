// SPDX-License-Identifier: MIT
// Faults that users reported in public, and the rules that name them.
#ifndef VEXTREL_PROGRAM_RULES_REPORTED_FAULTS_H
#define VEXTREL_PROGRAM_RULES_REPORTED_FAULTS_H

#include <span>
#include <string_view>

namespace vextrel::program {

struct ReportedFault {
  std::string_view links;  // in Markdown
  std::string_view seen;
  std::string_view rules;  // ids with a blank in between
};

[[nodiscard]] std::span<const ReportedFault> ReportedFaults();

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_REPORTED_FAULTS_H
