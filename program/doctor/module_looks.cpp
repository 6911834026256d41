// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include "doctor/log_config.h"
#include "doctor/looks.h"
#include "images/file_bytes.h"
#include "launching/modules.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

constexpr const char* kConfiguration = "configuration";
constexpr const char* kModule = "module";

void LookAtConfigFile(const fs::path& file, const Setup& setup, Facts& facts,
                      Diagnoses& diagnoses) {
  if (const std::optional<Fault> fault = FaultOfConfigFile(file)) {
    diagnoses.Wrong(kConfiguration, *fault);
    return;
  }
  const LogConfig config = ReadLogConfig(ReadBytes(file).value_or(std::string()), setup.variables);
  for (const ConfigProblem& problem : config.problems) {
    const Fault fault = FaultOf(problem, file);
    if (problem.isFatal) {
      diagnoses.Wrong(kConfiguration, fault);
    } else {
      diagnoses.Note(kConfiguration, fault.text, fault.remedy);
    }
  }
  for (const std::string& log : config.files) {
    facts.logs.push_back(PathOf(log));
  }
  if (config.problems.empty()) {
    diagnoses.Fine(kConfiguration, fmt::format("'{}' can be read", TextOf(file)));
  }
}

}  // namespace

void LookAtModule(const Facts& facts, Diagnoses& diagnoses) {
  if (!facts.isSetUp) {
    return;
  }
  if (facts.ours.empty() && facts.entries.empty()) {
    diagnoses.Note(kModule, fmt::format("not looked for: {} names no folder", kPathVariable));
  } else if (facts.ours.empty()) {
    diagnoses.Wrong(kModule, fmt::format("nothing in {} is Vextrel", kPathVariable),
                    "set it to the folder that has the module, or use 'vextrel trace'");
  } else if (facts.ours.size() > 1) {
    diagnoses.Wrong(
        kModule,
        fmt::format("Vextrel is there {} times, as '{}' and '{}': each camera is listed "
                    "as often",
                    facts.ours.size(), TextOf(facts.ours[0]), TextOf(facts.ours[1])),
        "leave one module in the folders of the variable");
  } else {
    diagnoses.Fine(kModule, fmt::format("'{}'", TextOf(facts.ours.front())));
  }
}

void LookAtModuleOfTrace(const Facts& facts, Diagnoses& diagnoses) {
  if (facts.isSetUp) {
    return;
  }
  if (!facts.targetIsSound) {
    diagnoses.Fine(kModule, "left to 'vextrel trace', which goes by the target's functions");
    return;
  }
  const SuitableModule module = ModuleFor(facts.targetImage.exports);
  diagnoses.Fine(kModule,
                 fmt::format("'vextrel trace' takes {}, since {}", module.name, module.why));
}

void LookAtConfiguration(const Setup& setup, Facts& facts, Diagnoses& diagnoses) {
  if (!setup.config.empty()) {
    std::error_code error;
    LookAtConfigFile(fs::absolute(PathOf(setup.config), error), setup, facts, diagnoses);
    return;
  }
  if (!facts.isSetUp) {
    diagnoses.Fine(kConfiguration, "left to 'vextrel trace'");
    return;
  }
  const std::optional<std::string> value = setup.variables.Find(kConfigVariable);
  if (!value) {
    diagnoses.Wrong(kConfiguration,
                    fmt::format("{} isn't set: calls go to the debugger's output", kConfigVariable),
                    "set it to a property file, or use 'vextrel trace'");
    return;
  }
  if (const std::optional<Fault> fault = FaultOfReference(kConfigVariable, setup.variables)) {
    diagnoses.Wrong(kConfiguration, *fault);
    return;
  }
  LookAtConfigFile(PathOf(*ExpandReference(*value, setup.variables)), setup, facts, diagnoses);
}

}  // namespace vextrel::program
