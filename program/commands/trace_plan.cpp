// SPDX-License-Identifier: MIT
#include "commands/trace_plan.h"

#include <charconv>
#include <optional>

#include "doctor/log_config.h"
#include "images/file_bytes.h"
#include "launching/application.h"
#include "launching/failure.h"
#include "launching/log_file.h"
#include "launching/modules.h"
#include "launching/search_path.h"
#include "launching/system.h"
#include "reading/rolled_files.h"
#include "views/safe_text.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

ModuleChoice ChoiceOf(const std::string& name) {
  return name == "auto"       ? ModuleChoice::Auto
         : name == "standard" ? ModuleChoice::Standard
                              : ModuleChoice::Extended;
}

// Returns 0 for an empty text.
std::uint32_t SizeOf(const std::string& text) {
  if (text.empty()) {
    return 0;
  }
  constexpr std::uint64_t least = std::uint64_t{64} << 10U;
  constexpr std::uint64_t most = INT32_MAX;
  std::uint64_t size = 0;
  const char* const end = text.data() + text.size();
  auto [rest, error] = std::from_chars(text.data(), end, size);
  const std::string_view units = "KMG";
  if (error == std::errc{} && rest != end) {
    const std::size_t unit = units.find(*rest);
    const bool isKnown = unit != std::string_view::npos && rest + 1 == end && size <= most;
    size = isKnown ? size << (10U * (unit + 1)) : 0;
  }
  if (error != std::errc{} || size < least || size > most) {
    throw LaunchFailure(kExitChoice,
                        "--rolling needs a size from 64K to 2047M, not '" + text + "'");
  }
  return static_cast<std::uint32_t>(size);
}

void Demand(const std::optional<Fault>& fault) {
  if (fault) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
}

// The user's own configuration, and the log that it names.
void UseConfiguration(const std::string& name, const Variables& variables, Plan& plan) {
  std::error_code error;
  plan.config = fs::absolute(PathOf(name), error);
  Demand(FaultOfConfigFile(plan.config));
  const LogConfig config = ReadLogConfig(ReadBytes(plan.config).value_or(std::string()), variables);
  for (const ConfigProblem& problem : config.problems) {
    if (problem.isFatal) {
      throw LaunchFailure(kExitOwnFailure, FaultOf(problem, plan.config));
    }
  }
  for (const std::string& log : config.files) {
    Demand(FaultOfLog(PathOf(log)));
    plan.allLogs.push_back(fs::absolute(PathOf(log), error));
  }
  if (!config.files.empty()) {
    plan.log = fs::absolute(PathOf(config.files.front()), error);
  }
}

// The page is made when the application has ended: too late to hear that it can't be.
void DemandPage(const std::string& name, const Plan& plan) {
  std::error_code error;
  const fs::path page = fs::absolute(PathOf(name), error).lexically_normal();
  std::vector<std::string> logs;
  for (const fs::path& log : plan.allLogs) {
    logs.push_back(TextOf(log));
  }
  for (const std::string& log : WithRolledFiles(logs)) {
    if (page == PathOf(log).lexically_normal() || IsSameFile(page, PathOf(log))) {
      throw LaunchFailure(kExitOwnFailure, Fault{"the page '" + name + "' is the log itself",
                                                 "give the page another name"});
    }
  }
  Demand(FaultOfFile("the page", page));
}

}  // namespace

Plan MakePlan(TraceArguments& arguments, const Variables& variables, Output& errors) {
  arguments.style.rollingSize = SizeOf(arguments.rolling);
  Plan plan;
  plan.application = FindApplication(arguments.application.front(), variables);
  CheckApplication(plan.application);
  const ChosenTarget target = FindTarget(arguments.target, variables);
  plan.target = target.path;
  plan.module = ChooseModule(ChoiceOf(arguments.module), arguments.style.withTiming, plan.target,
                             FindOwnModules(OwnProgram()));
  if (!arguments.config.empty()) {
    UseConfiguration(arguments.config, variables, plan);
  } else {
    const LogFile log = ChooseLogFile(arguments.log, plan.application, variables);
    plan.log = log.path;
    plan.allLogs = {log.path};
    if (!log.whyElsewhere.empty()) {
      Say(errors, log.whyElsewhere + ", so the log goes elsewhere");
    }
  }
  if (!arguments.page.empty()) {
    DemandPage(arguments.page, plan);
  }
  if (!target.why.empty()) {
    Say(errors, target.why);
  }
  if (!plan.log.empty()) {
    plan.earlier = LogMark(TextOf(plan.log));
  }
  return plan;
}

void Say(Output& errors, std::string_view sentence) {
  errors.Text() += "vextrel: ";
  AppendSafe(errors.Text(), sentence);
  errors.Text() += '\n';
  errors.Flush();
}

}  // namespace vextrel::program
