// SPDX-License-Identifier: MIT
#include "commands/diff_command.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "commands/log_options.h"
#include "views/counted.h"
#include "views/diff_view.h"

namespace vextrel::program {
namespace {

struct DiffArguments {
  std::string good;
  std::string bad;
  LogOptions log;
  std::vector<std::string> ignored;
};

// One of the two logs, read record by record.
class ReadRun {
 public:
  ReadRun(const DiffArguments& arguments, const std::string& file, Output& errors)
      : reader_(ToRead(arguments, file, errors)), model_(reader_.UsedLayout()) {}

  // Returns false at the log's end.
  [[nodiscard]] bool Step(Alignment::Side side, DiffView& view) {
    if (atEnd_ || !reader_.Next(record_)) {
      atEnd_ = true;
      return false;
    }
    if (record_.kind == RecordKind::Whole) {
      ParseMessage(record_.message, message_);
    } else {
      message_.kind = MessageKind::Other;
      message_.shape = nullptr;
      message_.result = GC_ERR_SUCCESS;
    }
    any_ = any_ || message_.kind != MessageKind::Other;
    const Context& context = model_.Take(record_, message_);
    view.Take(side, record_, message_, context, model_.AllHandles());
    return true;
  }
  [[nodiscard]] bool IsAtEnd() const noexcept { return atEnd_; }

  // REQUIRES: the log was read to its end.
  void Check(Output& errors) const {
    if (!any_) {
      throw std::runtime_error(
          "'" + reader_.Files().back() + "' has no line of Vextrel's in the layout '" +
          reader_.UsedLayout().Name() + "': give a call log, or the layout that it was written in");
    }
    if (model_.Unreadable() > 0) {
      errors.Text() += "vextrel: " + Counted(model_.Unreadable(), "record") + " of '" +
                       reader_.Files().back() + "' could not be read, and not compared\n";
    }
  }

 private:
  static ReadingOptions ToRead(const DiffArguments& arguments, const std::string& file,
                               Output& errors) {
    LogOptions options = arguments.log;
    options.files = {file};
    return options.ToRead(errors);
  }

  RecordReader reader_;
  SessionModel model_;
  Record record_;
  Message message_;
  bool atEnd_ = false;
  bool any_ = false;
};

int Diff(const DiffArguments& arguments, Output& output, Output& errors) {
  const auto ignores = [&arguments](std::string_view what) {
    return std::find(arguments.ignored.begin(), arguments.ignored.end(), what) !=
           arguments.ignored.end();
  };
  DiffView view({ignores("values"), ignores("results"), ignores("reports"), ignores("timing")},
                output);
  ReadRun good(arguments, arguments.good, errors);
  ReadRun bad(arguments, arguments.bad, errors);
  while (!good.IsAtEnd() || !bad.IsAtEnd()) {
    const bool readsGood =
        bad.IsAtEnd() || (!good.IsAtEnd() && view.Shorter() == Alignment::Side::Left);
    if (readsGood) {
      static_cast<void>(good.Step(Alignment::Side::Left, view));
    } else {
      static_cast<void>(bad.Step(Alignment::Side::Right, view));
    }
  }
  good.Check(errors);
  bad.Check(errors);
  return view.Finish() ? kExitEqual : kExitDifferent;
}

}  // namespace

void AddDiffCommand(CLI::App& program, Output& output, Output& errors,
                    std::function<int()>& action) {
  const auto arguments = std::make_shared<DiffArguments>();
  CLI::App* command = program.add_subcommand("diff", "Where two runs differ first");
  command->footer(
      "The calls of each thread are compared one by one: functions, handles by the order of their\n"
      "opening, commands, results and values. Addresses, times, and how often a wait was repeated\n"
      "are not. The exit status is 0 if the runs are equal, 1 if they differ, 2 if a log can't be\n"
      "read.\n"
      "\n"
      "Examples:\n"
      "  vextrel diff works.log fails.log\n"
      "  vextrel diff --ignore values --ignore timing works.log fails.log");
  command->add_option("GOOD", arguments->good, "The log of the run that worked")->required();
  command->add_option("BAD", arguments->bad, "The log of the run that did not")->required();
  arguments->log.AddLayoutTo(*command);
  command
      ->add_option("--ignore", arguments->ignored,
                   "'values' that calls bring back, 'results', 'reports', or 'timing': that a wait "
                   "timed out; repeatable")
      ->check(CLI::IsMember({"values", "results", "reports", "timing"}));
  command->callback([arguments, &output, &errors, &action] {
    action = [arguments, &output, &errors] { return Diff(*arguments, output, errors); };
  });
}

}  // namespace vextrel::program
