// SPDX-License-Identifier: MIT
#include "commands/manual_page.h"

#include <algorithm>

namespace vextrel::program {
namespace {

std::string Escaped(std::string_view text) {
  std::string escaped;
  bool isFirst = true;
  for (const char letter : text) {
    if (isFirst && (letter == '.' || letter == '\'')) {
      escaped += "\\&";
    }
    isFirst = letter == '\n';
    if (letter == '\\') {
      escaped += "\\e";
    } else if (letter == '-') {
      escaped += "\\-";
    } else {
      escaped += letter;
    }
  }
  return escaped;
}

// Examples, which begin with a blank, stay as they are; the lines of a paragraph are filled.
void AppendText(std::string& page, std::string_view text) {
  bool isFirst = true;
  bool wasExample = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    const bool isExample = line.starts_with(' ');
    if (line.empty()) {
      page += ".PP";
    } else {
      page += !isFirst && (isExample || wasExample) ? ".br\n" : "";
      page += Escaped(line);
    }
    page += '\n';
    isFirst = false;
    wasExample = isExample;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void AppendOptions(std::string& page, const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_group().empty()) {
      continue;
    }
    page += ".TP\n.B " + Escaped(option->get_name(false, true));
    if (option->get_type_size() != 0 && !option->get_positional()) {
      page += " " + Escaped(option->get_type_name());
    }
    page += "\n" + Escaped(option->get_description()) + "\n";
  }
}

std::string ManualPage(const CLI::App& program) {
  std::string page = ".TH VEXTREL 1 \"\" \"vextrel " VEXTREL_VERSION
                     "\" \"User Commands\"\n"
                     ".SH NAME\nvextrel \\- trace camera applications and read their call logs\n"
                     ".SH SYNOPSIS\n.B vextrel\nCOMMAND [OPTIONS]\n.SH DESCRIPTION\n" +
                     Escaped(program.get_description()) + ".\n";
  const auto isShown = [](const CLI::App* each) { return !each->get_group().empty(); };
  for (const CLI::App* command : program.get_subcommands(isShown)) {
    page += ".SH VEXTREL " + Escaped(command->get_name()) + "\n";
    AppendText(page, command->get_description());
    AppendOptions(page, *command);
    page += ".PP\n";
    AppendText(page, command->get_footer());
  }
  return page;
}

}  // namespace

void AddManualPageCommand(CLI::App& program, Output& output, std::function<int()>& action) {
  CLI::App* command = program.add_subcommand("manual-page")->group("");
  command->callback([&program, &output, &action] {
    action = [&program, &output] {
      output.Text() += ManualPage(program);
      return 0;
    };
  });
}

}  // namespace vextrel::program
