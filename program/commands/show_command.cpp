// SPDX-License-Identifier: MIT
#include "commands/show_command.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "commands/command_line.h"
#include "commands/log_options.h"
#include "commands/read_log.h"
#include "views/counted.h"
#include "views/show_view.h"

namespace vextrel::program {
namespace {

struct ShowArguments {
  LogOptions log;
  ShowOptions show;
  std::string from;
  std::string to;
  std::string color = "auto";
  bool follow = false;
};

bool WantsColors(const std::string& color) {
  return color == "always" ||
         (color == "auto" && IsTerminal(false) && std::getenv("NO_COLOR") == nullptr);
}

void CheckFunctions(const std::vector<std::string>& functions) {
  for (const std::string& name : functions) {
    if (FindCallShape(name) == kNoPlace) {
      throw std::runtime_error("'" + name +
                               "' is no function of GenTL that the log knows: write it as in the "
                               "log, 'DSQueueBuffer' for example");
    }
  }
}

int Show(ShowArguments& arguments, Output& output, Output& errors) {
  CheckFunctions(arguments.show.functions);
  if (!arguments.from.empty()) {
    arguments.show.from = TimeLimit(arguments.from);
  }
  if (!arguments.to.empty()) {
    arguments.show.to = TimeLimit(arguments.to);
  }
  arguments.show.colors = WantsColors(arguments.color);
  ReadingOptions toRead = arguments.log.ToRead(errors);
  toRead.follow = arguments.follow;
  if (arguments.follow) {
    // Asked whenever the reader waits: what was read has to be visible by then.
    toRead.stop = [&output] {
      output.Flush();
      return false;
    };
  }
  RecordReader reader(std::move(toRead));
  SessionModel model(reader.UsedLayout());
  ShowView view(model, arguments.show, output);
  ReadLog(reader, model,
          [&view](const Record& record, const Message& message, const Context& context) {
            view.Take(record, message, context);
          });
  view.Finish();
  if (!view.HasShown()) {
    errors.Text() += "vextrel: no line of the log fits these options\n";
  }
  if (model.Unreadable() > 0) {
    errors.Text() += "vextrel: " + Counted(model.Unreadable(), "record") +
                     " could not be read; marked with '?'\n";
  }
  if (model.OtherLines() > 0) {
    errors.Text() += "vextrel: " + Counted(model.OtherLines(), "line") +
                     " from other programs or categories; marked with '|'\n";
  }
  return kExitEqual;
}

}  // namespace

void AddShowCommand(CLI::App& program, Output& output, Output& errors,
                    std::function<int()>& action) {
  const auto arguments = std::make_shared<ShowArguments>();
  CLI::App* command = program.add_subcommand("show", "One readable line for each call");
  command->footer(
      "Each line has the line's number in the log, the time, the seconds since the line before,\n"
      "the thread, the call with the names of its handles, and the result of a failed call.\n"
      "\n"
      "Examples:\n"
      "  vextrel show app.log | less\n"
      "  vextrel show --errors app.log              what went wrong\n"
      "  vextrel show --handle DS1 --from 18:55:09 app.log\n"
      "  vextrel show --function IFOpenDevice --raw app.log\n"
      "  vextrel show --follow app.log              while the application runs");
  arguments->log.AddFilesTo(*command);
  ShowOptions& show = arguments->show;
  command->add_flag("--errors", show.errors, "Only failed calls, and reports of errors");
  command->add_flag("--reports", show.reports,
                    "Only what Vextrel reports itself: start-up and misuse of handles");
  command->add_option("--function", show.functions, "Only calls of this function; repeatable");
  command->add_option("--handle", show.handles,
                      "Only lines with this handle, 'DEV1' or its value; repeatable");
  command->add_option("--thread", show.threads,
                      "Only lines of this thread, 'T1' or as in the log; repeatable");
  command->add_option("--from", arguments->from,
                      "Only lines from this time on: '18:55:09', with a date, or '+1.5'");
  command->add_option("--to", arguments->to, "Only lines up to this time");
  command->add_option("--session", show.session, "Only this session, counted from 1");
  command->add_flag("--all", show.all, "Show repeated polls one by one");
  command->add_flag("--raw", show.raw, "Show the log's own line below each");
  command->add_option("--color", arguments->color, "'auto', 'always' or 'never'")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  command->add_flag("--follow", arguments->follow,
                    "Go on while the log grows, until the program is stopped");
  command->callback([arguments, &output, &errors, &action] {
    action = [arguments, &output, &errors] { return Show(*arguments, output, errors); };
  });
}

}  // namespace vextrel::program
