// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>

#include "doctor/looks.h"
#include "images/file_bytes.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSubject = "variables";
// What Windows gives a program of a variable at most.
constexpr std::size_t kMostOfAVariable = 32767;

void LookAtEntries(Facts& facts, Diagnoses& diagnoses) {
  for (const PathEntry& entry : facts.entries) {
    if (const std::optional<Fault> fault = FaultOfEntry(entry, kListSeparator)) {
      // Other entries can still lead to Vextrel, or to a target.
      if (facts.ours.empty() && facts.others.empty()) {
        diagnoses.Wrong(kSubject, *fault);
      } else {
        diagnoses.Note(kSubject, fault->text, fault->remedy);
      }
    } else if (entry.producers.empty()) {
      diagnoses.Note(kSubject,
                     fmt::format("'{}' in {} has no .cti file", entry.text, kPathVariable));
    } else {
      diagnoses.Fine(kSubject,
                     fmt::format("'{}' in {} has {} .cti file{}", entry.text, kPathVariable,
                                 entry.producers.size(), entry.producers.size() == 1 ? "" : "s"));
    }
  }
}

}  // namespace

void LookAtProgram(const Setup& setup, Diagnoses& diagnoses) {
  diagnoses.Fine("program",
                 fmt::format("vextrel {}, 64-bit, {}{}", VEXTREL_VERSION, kSystemName,
                             !IsElevated()                     ? ""
                             : kOwnImageKind == ImageKind::Elf ? ", as root"
                                                               : ", as an administrator"));
  for (const auto& [name, path] :
       {std::pair<const char*, fs::path>{"vextrel.cti", setup.modules.standard},
        {"vextrel_extended.cti", setup.modules.extended}}) {
    if (path.empty()) {
      diagnoses.Wrong("program", FaultOfPackage(name));
    }
  }
}

void LookAtVariables(const Setup& setup, Facts& facts, Diagnoses& diagnoses) {
  const std::optional<std::string> value = setup.variables.Find(kPathVariable);
  if (!value) {
    const Fault fault = *FaultOfPathVariable(setup.variables);
    if (setup.variables.Find(kPathVariable32) || (!facts.isSetUp && setup.target.empty())) {
      diagnoses.Wrong(kSubject, fault);
    } else if (facts.isSetUp) {
      diagnoses.Wrong(kSubject, fault.text,
                      "set it to the folder that has the module, or use 'vextrel trace'");
    } else {
      diagnoses.Fine(
          kSubject,
          fmt::format("{} isn't set; 'vextrel trace' sets it for the application", kPathVariable));
    }
    return;
  }
  if (value->size() > kMostOfAVariable) {
    diagnoses.Wrong(
        kSubject,
        fmt::format("{} has {} characters, more than programs read", kPathVariable, value->size()),
        "shorten it");
  }
  facts.entries = ReadSearchPath(*value, kListSeparator);
  for (const fs::path& producer : ProducersOf(facts.entries)) {
    (IsVextrel(producer) ? facts.ours : facts.others).push_back(producer);
  }
  LookAtEntries(facts, diagnoses);
}

void LookAtStoredVariables(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  if (!setup.stored) {
    return;
  }
  for (const char* name : {kPathVariable, kTargetVariable, kConfigVariable}) {
    const std::optional<std::string> process = setup.variables.Find(name);
    const std::optional<std::string> user = setup.stored->user.Find(name);
    const std::optional<std::string> machine = setup.stored->machine.Find(name);
    // For the path variables of Windows itself, the two are joined; for these, the user's hides the
    // other.
    const std::optional<std::string>& stored = user ? user : machine;
    if (stored && stored != process && facts.isSetUp) {
      diagnoses.Note("stored",
                     fmt::format("{} is '{}' here and '{}' for programs that start otherwise", name,
                                 process.value_or("not set"), *stored),
                     "start the application from this window, or start the window again");
    }
  }
}

}  // namespace vextrel::program
