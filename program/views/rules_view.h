// SPDX-License-Identifier: MIT
// The rules themselves: for people, and as docs/rules.md.
#ifndef VEXTREL_PROGRAM_VIEWS_RULES_VIEW_H
#define VEXTREL_PROGRAM_VIEWS_RULES_VIEW_H

#include "rules/rule.h"
#include "views/output.h"

namespace vextrel::program {

// A line for each.
void WriteRules(Output& output);
// All there is to say of one.
void WriteRule(const Rule& rule, Output& output);
// docs/rules.md, as a whole.
void WriteRulesAsMarkdown(Output& output);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_RULES_VIEW_H
