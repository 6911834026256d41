// SPDX-License-Identifier: MIT
#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>

#include "commands/check_command.h"
#include "commands/diff_command.h"
#include "commands/doctor_command.h"
#include "commands/export_command.h"
#include "commands/manual_page.h"
#include "commands/report_command.h"
#include "commands/rules_command.h"
#include "commands/show_command.h"
#include "commands/trace_command.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

// A sentence of ours or of a library's, in one line.
int Refuse(std::string_view sentence, Output& errors) {
  errors.Text() += "vextrel: ";
  AppendSafe(errors.Text(), sentence);
  errors.Text() += '\n';
  errors.Flush();
  return kExitUnusable;
}

// Cuts off what follows "--" on the command line of trace: it belongs to the application.
std::vector<std::string> TakeApplication(std::vector<std::string>& arguments) {
  const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
  if (arguments.empty() || arguments.front() != "trace" || dashes == arguments.end()) {
    return {};
  }
  std::vector<std::string> application(dashes + 1, arguments.end());
  arguments.erase(dashes, arguments.end());
  return application;
}

// A sentence: what CLI11 says of it, or what says more.
std::string WhyNotParsed(const CLI::App& program, const std::vector<std::string>& own,
                         const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = program.get_subcommands();
  if (commands.empty() && !own.empty() && !own.front().starts_with('-')) {
    return "there's no command '" + own.front() + "': see 'vextrel --help'";
  }
  if (!commands.empty() && commands.front()->get_name() == "trace") {
    const std::vector<std::string> unexpected = commands.front()->remaining();
    if (!unexpected.empty() && !unexpected.front().starts_with('-')) {
      return "trace doesn't know '" + unexpected.front() +
             "': put the application and its arguments after '--', as in 'vextrel trace -- " +
             unexpected.front() + "'";
    }
  }
  return std::string(error.what()) + ": see 'vextrel --help'";
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, Output& output, Output& errors) {
  std::function<int()> action;
  std::vector<std::string> own = arguments;
  const std::vector<std::string> application = TakeApplication(own);
  CLI::App program(
      "Traces applications, and checks, shows, measures, compares and exports call logs",
      "vextrel");
  // A path may begin with a slash, on Windows, too.
  program.allow_windows_style_options(false);
  program.set_version_flag("--version", "vextrel " VEXTREL_VERSION);
  program.require_subcommand(1);
  program.footer("'vextrel COMMAND --help' has examples.");
  AddTraceCommand(program, errors, application, action);
  AddDoctorCommand(program, output, action);
  AddCheckCommand(program, output, errors, action);
  AddReportCommand(program, output, errors, action);
  AddShowCommand(program, output, errors, action);
  AddDiffCommand(program, output, errors, action);
  AddExportCommand(program, output, errors, action);
  AddRulesCommand(program, output, errors, action);
  AddManualPageCommand(program, output, action);
  try {
    std::vector<std::string> reversed(own.rbegin(), own.rend());
    program.parse(std::move(reversed));
    const int status = action();
    output.Flush();
    errors.Flush();
    return status;
  } catch (const CLI::CallForHelp&) {
    output.Text() += program.help();
  } catch (const CLI::CallForVersion& version) {
    output.Text() += std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    return Refuse(WhyNotParsed(program, own, error), errors);
  } catch (const std::exception& error) {
    output.Flush();
    return Refuse(error.what(), errors);
  }
  output.Flush();
  return kExitEqual;
}

}  // namespace vextrel::program
