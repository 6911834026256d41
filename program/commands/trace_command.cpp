// SPDX-License-Identifier: MIT
#include "commands/trace_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "commands/checked_log.h"
#include "commands/command_line.h"
#include "commands/log_page_file.h"
#include "commands/trace_plan.h"
#include "commands/trace_summary.h"
#include "doctor/examination.h"
#include "doctor/libraries.h"
#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/log_file.h"
#include "launching/modules.h"
#include "launching/process.h"
#include "launching/system.h"
#include "launching/trace_folder.h"
#include "views/counted.h"
#include "views/findings_view.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

void SayHowItEnded(int status, Output& errors) {
  const auto number = static_cast<std::uint32_t>(status);
  constexpr std::uint32_t firstException = 0xC0000000;
  constexpr std::uint32_t endedByCtrlC = 0xC000013A;
  constexpr int afterSignals = 128;
  constexpr int lastSignal = 64;
  if (number == endedByCtrlC) {
    Say(errors, "the application was ended by Ctrl-C");
  } else if (number >= firstException) {
    Say(errors, fmt::format("the application ended with the exception 0x{:08X}", number));
  } else if (kSystemName == "Linux" && status > afterSignals &&
             status <= afterSignals + lastSignal) {
    Say(errors, fmt::format("the application was ended by signal {}", status - afterSignals));
  }
}

// On Windows, a consumer may look for the target's libraries beside it. The module doesn't.
void AddTargetFolder(const Plan& plan, Variables& variables, Output& errors) {
  const std::vector<MissingLibrary> missing =
      FindMissingLibraries(plan.target, LibrarySearch(variables, plan.application));
  if (kOwnImageKind != ImageKind::Pe ||
      std::none_of(missing.begin(), missing.end(),
                   [](const MissingLibrary& each) { return each.isBesideTheModule; })) {
    return;
  }
  const std::string folder = TextOf(plan.target.parent_path());
  variables.Set("PATH", variables.Find("PATH").value_or("") + kListSeparator + folder);
  Say(errors,
      "the target's libraries lie beside it, so its folder is at the end of the "
      "application's PATH");
}

// What the application left behind.
struct Outcome {
  int status = 0;
  std::optional<TracedLog> log;
  Diagnoses diagnoses;  // if no call succeeded
  bool isFolderInUse = false;
};

bool AnyCallSucceeded(const Outcome& outcome) {
  return outcome.log && outcome.log->checked.Model().Counts().Results().contains(GC_ERR_SUCCESS);
}

Outcome Run(const TraceArguments& arguments, const Plan& plan, Variables variables,
            Output& errors) {
  TraceFolder folder(plan.module, PropertyText(arguments.style), variables);
  AddTargetFolder(plan, variables, errors);
  StartRequest request;
  request.file = plan.application;
  request.arguments = arguments.application;
  request.variables = TracedVariables(variables, folder, plan.target,
                                      plan.config.empty() ? folder.PropertyFile() : plan.config,
                                      plan.config.empty() ? plan.log : fs::path());
  Say(errors,
      fmt::format("tracing '{}' with {}{}", TextOf(plan.target), TextOf(plan.module.filename()),
                  plan.log.empty() ? "" : ", log: " + TextOf(plan.log)));
  if (plan.earlier.Size() > 0) {
    Say(errors, fmt::format("the log already has {} from earlier runs; only this run's lines are "
                            "summed up",
                            Counted(plan.earlier.Size(), "byte")));
  }
  if (InterruptionGuard::WasInterrupted()) {
    constexpr int likeCtrlC = 130;
    throw LaunchFailure(likeCtrlC, "interrupted before the application was started");
  }
  Process process(request);
  Outcome outcome;
  outcome.status = process.WaitForEnd();
  SayHowItEnded(outcome.status, errors);
  if (process.DescendantsGoOn()) {
    Say(errors,
        "the application has ended, and a process that it started goes on: waiting for that "
        "(Ctrl-C ends the trace)");
    process.WaitForDescendants();
  }
  if (!plan.log.empty()) {
    outcome.log = ReadTracedLog(plan.earlier, TextOf(plan.config));
  }
  if (!AnyCallSucceeded(outcome)) {
    Setup setup;
    setup.variables = request.variables;
    setup.application = TextOf(plan.application);
    setup.modules = FindOwnModules(OwnProgram());
    outcome.diagnoses = Examine(setup);
  }
  outcome.isFolderInUse = !folder.Remove();
  if (outcome.isFolderInUse) {
    Say(errors, "'" + TextOf(folder.Path()) + "' is still in use: remove it when that has ended");
  }
  return outcome;
}

// The likeliest reason first.
void SayWhyNothingCame(const Plan& plan, const Outcome& outcome, Output& errors) {
  const auto say = [&](const char* front, const Diagnosis& diagnosis) {
    Say(errors, fmt::format("{}{}{}", front, diagnosis.text,
                            diagnosis.remedy.empty() ? "" : ": " + diagnosis.remedy));
  };
  std::error_code error;
  const Diagnosis* first = outcome.diagnoses.FirstWrong();
  if (first != nullptr) {
    say("no call was logged: ", *first);
  } else if (!plan.log.empty() && plan.earlier.Size() == 0 && fs::exists(plan.log, error)) {
    Say(errors,
        "no call was logged: the application loaded Vextrel, and called nothing but "
        "GCInitLib: " +
            TextOf(plan.log));
  } else {
    const bool mayBeRefused = plan.module.filename() == "vextrel.cti";
    // A log that was there already doesn't tell whether the module was loaded.
    const bool mayBeLoaded = plan.earlier.Size() > 0;
    Say(errors,
        fmt::format("no call was logged: the application didn't load the producer that {} "
                    "names{}{}; docs/tracing.md says how applications find theirs",
                    kPathVariable, mayBeRefused ? ", or wants a newer one (--module extended)" : "",
                    mayBeLoaded ? ", or called nothing but GCInitLib" : ""));
  }
  for (const Diagnosis& diagnosis : outcome.diagnoses.All()) {
    if (diagnosis.verdict != Verdict::Fine && &diagnosis != first && diagnosis.subject != "log") {
      say("also: ", diagnosis);
    }
  }
}

void SayWhatCame(const TraceArguments& arguments, const Plan& plan, const Outcome& outcome,
                 Output& errors) {
  std::error_code error;
  if (outcome.log &&
      (outcome.log->checked.Model().Counts().Calls() > 0 || arguments.style.misuseOnly)) {
    errors.Text() +=
        TraceSummary(outcome.log->checked, {arguments.style.misuseOnly, arguments.isChecked});
    errors.Flush();
    if (const Diagnosis* wrong = outcome.diagnoses.FirstWrong(); wrong != nullptr) {
      Say(errors, fmt::format("no call succeeded: {}: {}", wrong->text, wrong->remedy));
    }
  } else if (arguments.style.misuseOnly && fs::exists(plan.log, error)) {
    Say(errors, "nothing was misused; the log is empty: " + TextOf(plan.log));
  } else if (!plan.config.empty() && plan.log.empty()) {
    Say(errors, "the configuration names no file, so there's nothing to sum up");
  } else {
    SayWhyNothingCame(plan, outcome, errors);
  }
  if (const std::string why = WhyCutShort(plan.log); !plan.log.empty() && !why.empty()) {
    Say(errors, why);
  }
}

// Makes the page and looks for faults, as far as the arguments ask for it. Returns the exit status:
// the application's own, unless that is 0 and says less than what was found.
int Judge(const TraceArguments& arguments, const Outcome& outcome, Output& errors) {
  if (arguments.page.empty() && !arguments.isChecked) {
    return outcome.status;
  }
  int status = outcome.status;
  const auto settle = [&status](int other) { status = status == 0 ? other : status; };
  if (!outcome.log || outcome.log->checked.Model().Counts().Calls() == 0) {
    Say(errors, "without a logged call, there's nothing to check, and no page to make");
    settle(kExitOwnFailure);
    return status;
  }
  const CheckedLog& checked = outcome.log->checked;
  if (arguments.isChecked) {
    WriteFindings(checked.Log(), checked.Model(), checked.Found(), {}, errors);
    if (CountFindings(checked.Found(), {})[static_cast<std::size_t>(Severity::Error)] != 0) {
      settle(kExitDifferent);
    }
  }
  try {
    if (!arguments.page.empty()) {
      DemandPagePath(outcome.log->toRead.files, arguments.page);
      WriteLogPage(outcome.log->toRead, checked, arguments.page, errors);
    }
  } catch (const std::runtime_error& error) {
    Say(errors, error.what());
    settle(kExitOwnFailure);
  }
  return status;
}

int Trace(TraceArguments arguments, Output& errors) {
  try {
    if (arguments.application.empty()) {
      throw LaunchFailure(kExitChoice,
                          "what is to be traced? Put it after '--': vextrel trace -- APPLICATION");
    }
    const InterruptionGuard guard;
    const Variables variables = ProcessVariables();
    const Plan plan = MakePlan(arguments, variables, errors);
    const Outcome outcome = Run(arguments, plan, variables, errors);
    SayWhatCame(arguments, plan, outcome, errors);
    return Judge(arguments, outcome, errors);
  } catch (const LaunchFailure& failure) {
    Say(errors, failure.what());
    return failure.Status();
  } catch (const std::exception& error) {
    Say(errors, error.what());
    return kExitOwnFailure;
  }
}

}  // namespace

void AddTraceCommand(CLI::App& program, Output& errors, const std::vector<std::string>& application,
                     std::function<int()>& action) {
  const auto arguments = std::make_shared<TraceArguments>();
  arguments->application = application;
  CLI::App* command =
      program.add_subcommand("trace",
                             "Starts an application with Vextrel in front of its producer:\n"
                             "  vextrel trace [OPTIONS] -- APPLICATION [ARGUMENTS]");
  command->footer(
      "Examples:\n"
      "  vextrel trace -- grab --frames 10\n"
      "  vextrel trace --timing --log slow.log -- grab\n"
      "  vextrel trace --target camera.cti --rolling 50M -- grab\n"
      "  vextrel trace --check --report trace.html -- grab     in a CI\n"
      "The exit status is the application's own, 128 and the number of the signal if one ended "
      "it; 125 if the trace failed before it was started, "
      "126 if it can't be started, 127 if it isn't there, 2 if the options don't say enough.\n"
      "If the application's is 0: 1 if --check found an error, 125 if there's nothing to check, or "
      "if the page can't be written.");
  command
      ->add_option("--target", arguments->target,
                   "The producer to trace; otherwise the only one that GENICAM_GENTL64_PATH shows")
      ->type_name("FILE");
  command
      ->add_option("--module", arguments->module,
                   "standard: the 51 functions of GenTL 1.1; extended: the 64 of GenTL 1.6; auto, "
                   "the default: extended if the target has newer functions, or with --timing")
      ->type_name("MODULE")
      ->check(CLI::IsMember({"standard", "extended", "auto"}, CLI::ignore_case));
  auto* log = command
                  ->add_option("--log", arguments->log,
                               "The log; otherwise a new file in the working folder")
                  ->type_name("FILE");
  LogStyle& style = arguments->style;
  auto* misuseOnly =
      command->add_flag("--misuse-only", style.misuseOnly, "Log no calls, only errors and misuse");
  auto* timing = command->add_flag("--timing", style.withTiming,
                                   "Log when each call entered and left the target");
  timing->excludes(misuseOnly);
  auto* fast = command->add_flag("--fast", style.isFast, "Log without dates, at the least cost");
  auto* rolling =
      command
          ->add_option(
              "--rolling", arguments->rolling,
              "Start a new file at this size, from 64K to 2047M, such as 50M, and keep the four "
              "before it")
          ->type_name("SIZE");
  command
      ->add_option(
          "--report", arguments->page,
          "At the end, make this page for a browser of the log, as 'vextrel report --html' "
          "does")
      ->type_name("FILE")
      ->excludes(misuseOnly);
  command
      ->add_flag(
          "--check", arguments->isChecked,
          "At the end, say what went wrong, as 'vextrel check' does; an error makes the exit "
          "status 1")
      ->excludes(misuseOnly);
  command
      ->add_option("--config", arguments->config,
                   "Your own property file, instead of one made of these options")
      ->type_name("FILE")
      ->excludes(log)
      ->excludes(misuseOnly)
      ->excludes(timing)
      ->excludes(fast)
      ->excludes(rolling);
  command->callback([arguments, &errors, &action] {
    action = [arguments, &errors] { return Trace(*arguments, errors); };
  });
}

}  // namespace vextrel::program
