// SPDX-License-Identifier: MIT
#include "commands/doctor_command.h"

#include <fmt/format.h>

#include <memory>

#include "doctor/examination.h"
#include "doctor/target_session.h"
#include "views/json_text.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

constexpr int kExitSick = 1;

struct DoctorArguments {
  std::string target;
  std::string config;
  std::string application;
  bool json = false;
  bool load = false;
};

std::string_view WordFor(Verdict verdict) {
  switch (verdict) {
    case Verdict::Fine:
      return "fine";
    case Verdict::Note:
      return "note";
    case Verdict::Wrong:
      break;
  }
  return "wrong";
}

void Write(const Diagnoses& diagnoses, Output& output) {
  for (const Diagnosis& diagnosis : diagnoses.All()) {
    output.Text() += fmt::format("{:<7}{:<15}", WordFor(diagnosis.verdict), diagnosis.subject);
    AppendSafe(output.Text(), diagnosis.text);
    if (!diagnosis.remedy.empty()) {
      output.Text() += ": ";
      AppendSafe(output.Text(), diagnosis.remedy);
    }
    output.Text() += '\n';
  }
}

void WriteAsJson(const Diagnoses& diagnoses, Output& output) {
  std::string& out = output.Text();
  out += fmt::format(R"({{"schema": 1, "works": {}, "diagnoses": [)",
                     diagnoses.FirstWrong() == nullptr);
  bool isFirst = true;
  for (const Diagnosis& diagnosis : diagnoses.All()) {
    out += isFirst ? "\n" : ",\n";
    isFirst = false;
    out += fmt::format(R"(  {{"subject": "{}", "verdict": "{}", "text": )", diagnosis.subject,
                       WordFor(diagnosis.verdict));
    AppendJsonText(out, diagnosis.text);
    out += ", \"remedy\": ";
    if (diagnosis.remedy.empty()) {
      out += "null";
    } else {
      AppendJsonText(out, diagnosis.remedy);
    }
    out += "}";
  }
  out += "\n]}\n";
}

int Run(const DoctorArguments& arguments, Output& output) {
  Setup setup;
  setup.variables = ProcessVariables();
  setup.stored = ReadStoredVariables();
  setup.target = arguments.target;
  setup.config = arguments.config;
  setup.application = arguments.application;
  setup.modules = FindOwnModules(OwnProgram());
  if (arguments.load) {
    setup.program = OwnProgram();
  }
  const Diagnoses diagnoses = Examine(setup);
  if (arguments.json) {
    WriteAsJson(diagnoses, output);
  } else {
    Write(diagnoses, output);
  }
  return diagnoses.FirstWrong() == nullptr ? 0 : kExitSick;
}

// What --load starts in a process of its own.
void AddSessionCommand(CLI::App& program, std::function<int()>& action) {
  struct Session {
    std::string result;
    std::string target;
  };
  const auto session = std::make_shared<Session>();
  CLI::App* command = program.add_subcommand(kSessionCommand)->group("");
  command->add_option("RESULT", session->result)->required();
  command->add_option("TARGET", session->target)->required();
  command->callback([session, &action] {
    action = [session] { return PlayTargetSession(session->result, session->target); };
  });
}

}  // namespace

void AddDoctorCommand(CLI::App& program, Output& output, std::function<int()>& action) {
  const auto arguments = std::make_shared<DoctorArguments>();
  CLI::App* command =
      program.add_subcommand("doctor", "Says what keeps a trace from working, and what helps");
  command->footer(
      "Examples:\n"
      "  vextrel doctor\n"
      "  vextrel doctor --target camera.cti --load grab\n"
      "  vextrel doctor --json | jq '.diagnoses[] | select(.verdict == \"wrong\")'\n"
      "What is set up by hand is looked at as it is; otherwise, what 'vextrel trace' would find. "
      "The exit status is 0 if a trace can be expected to work, and 1 if not.");
  command->add_option("APPLICATION", arguments->application,
                      "The application that is to be traced");
  command
      ->add_option("--target", arguments->target,
                   "The producer; otherwise the one that the variables name")
      ->type_name("FILE");
  command
      ->add_option("--config", arguments->config,
                   "Your own property file, as for 'vextrel trace'; otherwise the one that the "
                   "variable names")
      ->type_name("FILE");
  command->add_flag("--load", arguments->load,
                    "Load the target, too, in a process of its own, and open it");
  command->add_flag("--json", arguments->json, "As JSON, in a form that stays");
  command->callback([arguments, &output, &action] {
    action = [arguments, &output] { return Run(*arguments, output); };
  });
  AddSessionCommand(program, action);
}

}  // namespace vextrel::program
