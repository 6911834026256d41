// SPDX-License-Identifier: MIT
#include "views/rules_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "rules/reported_faults.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kWidth = 100;

// With lines of at most kWidth, each behind `indent` blanks.
void AppendWrapped(std::string& out, std::string_view text, std::size_t indent) {
  std::size_t column = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (column != 0 && column + 1 + end > kWidth) {
      out += '\n';
      column = 0;
    }
    if (column == 0) {
      out.append(indent, ' ');
      column = indent;
    } else {
      out += ' ';
      ++column;
    }
    out += text.substr(0, end);
    column += end;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  out += '\n';
}

void AppendPart(std::string& out, std::string_view what, std::string_view text) {
  if (!text.empty()) {
    out += fmt::format("\n{}:\n", what);
    AppendWrapped(out, text, 2);
  }
}

void AppendMarkdownPart(std::string& out, std::string_view what, std::string_view text) {
  if (!text.empty()) {
    out += '\n';
    AppendWrapped(out, fmt::format("**{}:** {}", what, text), 0);
  }
}

// Linked by nothing but the heading that GitHub makes of the id.
std::string Anchor(std::string_view id) {
  std::string anchor(id);
  std::transform(anchor.begin(), anchor.end(), anchor.begin(), [](char each) {
    return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
  });
  return anchor;
}

void AppendFaults(std::string& out) {
  out +=
      "\n## Reported faults\n\n"
      "Faults that users of GenTL consumers and producers reported, and the rules that would have "
      "named\nthem, had there been a log.\n\n"
      "| report | what was seen | rules |\n|---|---|---|\n";
  for (const ReportedFault& fault : ReportedFaults()) {
    std::string rules;
    for (std::string_view rest = fault.rules; !rest.empty();) {
      const std::size_t end = std::min(rest.find(' '), rest.size());
      const std::string_view id = rest.substr(0, end);
      rules += fmt::format("{}[{}](#{})", rules.empty() ? "" : ", ", id, Anchor(id));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    out += fmt::format("| {} | {} | {} |\n", fault.links, fault.seen, rules);
  }
}

}  // namespace

void WriteRules(Output& output) {
  for (const Rule* rule : AllRules()) {
    output.Text() +=
        fmt::format("{:<16} {:<8} {}\n", rule->id, SeverityName(rule->severity), rule->sentence);
  }
  output.Text() += "\n'vextrel rules ID' says more of one.\n";
  output.Flush();
}

void WriteRule(const Rule& rule, Output& output) {
  std::string& out = output.Text();
  out += fmt::format("{}, {}\n", rule.id, SeverityName(rule.severity));
  AppendWrapped(out, fmt::format("{}.", rule.sentence), 2);
  AppendPart(out, "What it looks for", rule.explanation);
  AppendPart(out, "What to do", rule.remedy);
  AppendPart(out, "When it means nothing", rule.harmless);
  AppendPart(out, "What the log must have", rule.needs);
  AppendPart(out, "GenTL 1.6", rule.section);
  output.Flush();
}

void WriteRulesAsMarkdown(Output& output) {
  std::string& out = output.Text();
  out +=
      "# The rules of `vextrel check`\n\nMade by `vextrel rules --markdown`. Each rule has the "
      "severity that its findings have at most; a\nfinding without full proof says \"likely\", and "
      "is a warning at most.\n\n| rule | severity | what it finds |\n|---|---|---|\n";
  for (const Rule* rule : AllRules()) {
    out += fmt::format("| [{}](#{}) | {} | {} |\n", rule->id, Anchor(rule->id),
                       SeverityName(rule->severity), rule->sentence);
  }
  for (const Rule* rule : AllRules()) {
    out += fmt::format("\n## {}\n\n", rule->id);
    AppendWrapped(out, fmt::format("{}: {}.", SeverityName(rule->severity), rule->sentence), 0);
    out += '\n';
    AppendWrapped(out, rule->explanation, 0);
    AppendMarkdownPart(out, "What to do", rule->remedy);
    AppendMarkdownPart(out, "When it means nothing", rule->harmless);
    AppendMarkdownPart(out, "What the log must have", rule->needs);
    AppendMarkdownPart(out, "GenTL 1.6", rule->section);
  }
  AppendFaults(out);
  output.Flush();
}

}  // namespace vextrel::program
