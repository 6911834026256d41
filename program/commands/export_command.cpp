// SPDX-License-Identifier: MIT
#include "commands/export_command.h"

#include <memory>
#include <string>

#include "commands/command_line.h"
#include "commands/log_options.h"
#include "commands/read_log.h"
#include "views/counted.h"
#include "views/exporter.h"

namespace vextrel::program {
namespace {

struct ExportArguments {
  LogOptions log;
  std::string form;
};

int Export(const ExportArguments& arguments, Output& output, Output& errors) {
  RecordReader reader(arguments.log.ToRead(errors));
  SessionModel model(reader.UsedLayout());
  const std::unique_ptr<Exporter> exporter =
      arguments.form == "chrome"
          ? MakeChromeExporter(model, output)
          : (arguments.form == "csv" ? MakeCsvExporter(model, reader.Files(), output)
                                     : MakeJsonLinesExporter(model, reader.Files(), output));
  ReadLog(reader, model,
          [&exporter](const Record& record, const Message& message, const Context& context) {
            exporter->Take(record, message, context);
          });
  exporter->Finish();
  if (model.Unreadable() > 0) {
    errors.Text() +=
        "vextrel: " + Counted(model.Unreadable(), "record") + " could not be read; " +
        (arguments.form == "chrome" ? "not exported\n" : "exported as kind 'unreadable'\n");
  }
  return kExitEqual;
}

}  // namespace

void AddExportCommand(CLI::App& program, Output& output, Output& errors,
                      std::function<int()>& action) {
  const auto arguments = std::make_shared<ExportArguments>();
  CLI::App* command = program.add_subcommand("export", "For trace viewers and databases");
  command->footer(
      "'chrome' is for Perfetto and its like: a track for each thread, a counter for the depth of\n"
      "each stream's queue, a span for each buffer. 'jsonl' and 'csv' have a row for each call.\n"
      "\n"
      "Examples:\n"
      "  vextrel export --to chrome app.log > app.json\n"
      "  vextrel export --to jsonl app.log | jq 'select(.kind == \"call\" and .code != 0)'\n"
      "  vextrel export --to csv app.log > app.csv");
  arguments->log.AddFilesTo(*command);
  command->add_option("--to", arguments->form, "'chrome', 'csv' or 'jsonl'")
      ->required()
      ->check(CLI::IsMember({"chrome", "csv", "jsonl"}));
  command->callback([arguments, &output, &errors, &action] {
    action = [arguments, &output, &errors] { return Export(*arguments, output, errors); };
  });
}

}  // namespace vextrel::program
