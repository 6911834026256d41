// SPDX-License-Identifier: MIT
#include "commands/report_command.h"

#include <memory>

#include "commands/checked_log.h"
#include "commands/command_line.h"
#include "commands/log_options.h"
#include "commands/log_page_file.h"
#include "reading/rolled_files.h"
#include "views/report.h"

namespace vextrel::program {
namespace {

struct ReportArguments {
  LogOptions log;
  ReportOptions report;
  std::string other;
  std::string page;
  bool json = false;
};

int Report(const ReportArguments& arguments, Output& output, Output& errors) {
  if (!arguments.page.empty()) {
    DemandPagePath(WithRolledFiles(arguments.log.files), arguments.page);
  }
  const ReadingOptions toRead = arguments.log.ToRead(errors);
  const CheckedLog log(toRead);
  if (!arguments.page.empty()) {
    WriteLogPage(toRead, log, arguments.page, errors);
  } else if (!arguments.other.empty()) {
    LogOptions options = arguments.log;
    options.files = {arguments.other};
    const CheckedLog other(options.ToRead(errors));
    WriteComparison(log.Log(), log.Model(), other.Log(), other.Model(), output);
  } else if (arguments.json) {
    WriteReportAsJson(log.Log(), log.Model(), log.Found(), output);
  } else {
    WriteReport(log.Log(), log.Model(), log.Found(), arguments.report, output);
  }
  return kExitEqual;
}

}  // namespace

void AddReportCommand(CLI::App& program, Output& output, Output& errors,
                      std::function<int()>& action) {
  const auto arguments = std::make_shared<ReportArguments>();
  CLI::App* command =
      program.add_subcommand("report", "What ran, what failed, how regular the frames were");
  command->footer(
      "Examples:\n"
      "  vextrel report app.log\n"
      "  vextrel report --functions --histogram app.log\n"
      "  vextrel report --compare bad.log good.log   B is bad.log\n"
      "  vextrel report --json app.log | jq .streams\n"
      "  vextrel report --html app.html app.log      opens in any browser");
  arguments->log.AddFilesTo(*command);
  ReportOptions& report = arguments->report;
  command->add_flag("--functions", report.functions, "Every function, and every kind of failure");
  command->add_flag("--handles", report.handles, "Every handle");
  command->add_flag("--histogram", report.histogram, "How the frame intervals are spread");
  command->add_flag("--slowest", report.slowest, "The longest waits, call by call");
  auto* json = command->add_flag("--json", arguments->json, "As JSON, in a form that stays");
  auto* compare = command
                      ->add_option("--compare", arguments->other,
                                   "The figures of another log beside this one's")
                      ->excludes(json);
  command
      ->add_option("--html", arguments->page,
                   "Instead, write all of it to this file, as a page for a browser: with plots, a "
                   "timeline of the calls, and the lines around each finding")
      ->type_name("FILE")
      ->excludes(json)
      ->excludes(compare);
  command->callback([arguments, &output, &errors, &action] {
    action = [arguments, &output, &errors] { return Report(*arguments, output, errors); };
  });
}

}  // namespace vextrel::program
