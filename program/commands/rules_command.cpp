// SPDX-License-Identifier: MIT
#include "commands/rules_command.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "commands/command_line.h"
#include "rules/rule.h"
#include "views/rules_view.h"

namespace vextrel::program {
namespace {

struct RulesArguments {
  std::string id;
  bool markdown = false;
};

int Rules(const RulesArguments& arguments, Output& output) {
  if (arguments.markdown) {
    WriteRulesAsMarkdown(output);
  } else if (arguments.id.empty()) {
    WriteRules(output);
  } else if (const Rule* rule = FindRule(arguments.id)) {
    WriteRule(*rule, output);
  } else {
    throw std::runtime_error("'" + arguments.id +
                             "' is no rule: 'vextrel rules' lists all there are");
  }
  return kExitEqual;
}

}  // namespace

void AddRulesCommand(CLI::App& program, Output& output, Output& /*errors*/,
                     std::function<int()>& action) {
  const auto arguments = std::make_shared<RulesArguments>();
  CLI::App* command = program.add_subcommand("rules", "What check looks for, and what to do then");
  command->footer(
      "Examples:\n"
      "  vextrel rules\n"
      "  vextrel rules BUF-STARVE");
  auto* id = command->add_option("ID", arguments->id, "All there is to say of this rule");
  command->add_flag("--markdown", arguments->markdown, "All rules, as in docs/rules.md")
      ->excludes(id);
  command->callback([arguments, &output, &action] {
    action = [arguments, &output] { return Rules(*arguments, output); };
  });
}

}  // namespace vextrel::program
