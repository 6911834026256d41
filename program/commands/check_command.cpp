// SPDX-License-Identifier: MIT
#include "commands/check_command.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#include "commands/checked_log.h"
#include "commands/command_line.h"
#include "commands/log_options.h"
#include "views/findings_view.h"

namespace vextrel::program {
namespace {

struct CheckArguments {
  LogOptions log;
  RuleFilter filter;
  std::string failOn = "error";
  std::string junit;
  bool json = false;
};

void DemandRules(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    RuleFilter only;
    only.only = {name};
    const auto rules = AllRules();
    if (std::none_of(rules.begin(), rules.end(),
                     [&only](const Rule* rule) { return only.Has(*rule); })) {
      throw std::runtime_error("'" + name + "' is no rule: 'vextrel rules' lists all there are");
    }
  }
}

int Check(const CheckArguments& arguments, Output& output, Output& errors) {
  DemandRules(arguments.filter.only);
  DemandRules(arguments.filter.ignore);
  const Severity failOn = arguments.failOn == "error"     ? Severity::Error
                          : arguments.failOn == "warning" ? Severity::Warning
                                                          : Severity::Info;
  const CheckedLog checked(arguments.log.ToRead(errors));
  const Findings& findings = checked.Found();
  if (!arguments.junit.empty()) {
    Output junit;
    WriteFindingsAsJunit(checked.Log(), checked.Model(), findings, arguments.filter, failOn, junit);
    WriteTextFile(arguments.junit, junit.Text());
  }
  if (arguments.json) {
    WriteFindingsAsJson(checked.Log(), checked.Model(), findings, arguments.filter, output);
  } else {
    WriteFindings(checked.Log(), checked.Model(), findings, arguments.filter, output);
  }
  const SeverityCounts counts = CountFindings(findings, arguments.filter);
  for (auto i = static_cast<std::size_t>(failOn); i < counts.size(); ++i) {
    if (counts[i] != 0) {
      return kExitDifferent;
    }
  }
  return kExitEqual;
}

}  // namespace

void AddCheckCommand(CLI::App& program, Output& output, Output& errors,
                     std::function<int()>& action) {
  const auto arguments = std::make_shared<CheckArguments>();
  CLI::App* command =
      program.add_subcommand("check", "What went wrong, with the lines that prove it");
  command->footer(
      "Examples:\n"
      "  vextrel check app.log\n"
      "  vextrel check --fail-on warning --junit check.xml app.log\n"
      "  vextrel check --only BUF,HND-AFTER app.log\n"
      "  vextrel check --json app.log | jq .findings\n"
      "The exit status is 0 without findings of --fail-on or above, 1 with some, and 2 if the log "
      "can't be used.\n'vextrel rules' lists the rules.");
  arguments->log.AddFilesTo(*command);
  command->add_flag("--json", arguments->json, "As JSON, in a form that stays");
  command->add_option("--junit", arguments->junit,
                      "Also write JUnit's XML to this file: one test case a rule");
  command
      ->add_option("--only", arguments->filter.only,
                   "These rules only: ids, or what stands in front of the '-' for a family")
      ->delimiter(',')
      ->take_all();
  command->add_option("--ignore", arguments->filter.ignore, "All rules but these")
      ->delimiter(',')
      ->take_all();
  command->add_option("--fail-on", arguments->failOn, "From which severity on the exit status is 1")
      ->check(CLI::IsMember({"error", "warning", "info"}))
      ->capture_default_str();
  command->callback([arguments, &output, &errors, &action] {
    action = [arguments, &output, &errors] { return Check(*arguments, output, errors); };
  });
}

}  // namespace vextrel::program
