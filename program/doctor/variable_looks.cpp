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

// What keeps an entry from being a path: a sentence's end and a remedy, or nothing.
std::pair<std::string, std::string> FaultOf(const PathEntry& entry) {
  const std::string& text = entry.text;
  if (entry.exists) {
    return {};
  }
  if (text.find('"') != std::string::npos || text.front() == '\'') {
    return {"has quotes, which consumers take for a part of the path", "leave them out"};
  }
  const char wrong = kListSeparator == ';' ? ':' : ';';
  // A colon follows the letter of a drive.
  if (const std::size_t at = text.find(wrong, kListSeparator == ';' ? 2 : 0);
      at != std::string::npos) {
    return {fmt::format("has '{}' between its parts", wrong),
            fmt::format("separate folders with '{}'", kListSeparator)};
  }
  if (text.front() == ' ' || text.back() == ' ' || text.back() == '\t') {
    return {"has a blank at its beginning or end", "remove it"};
  }
  if (text.front() == '~' || text.find('%') != std::string::npos ||
      text.find('$') != std::string::npos) {
    return {"has a reference that nobody replaces", "write the whole path"};
  }
  return {"isn't there", "correct the path, or remove the entry"};
}

void LookAtEntries(Facts& facts, Diagnoses& diagnoses) {
  for (const PathEntry& entry : facts.entries) {
    if (const auto [fault, remedy] = FaultOf(entry); !fault.empty()) {
      const std::string text = fmt::format("'{}' in {} {}", entry.text, kPathVariable, fault);
      // Other entries can still lead to Vextrel, or to a target.
      if (facts.ours.empty() && facts.others.empty()) {
        diagnoses.Wrong(kSubject, text, remedy);
      } else {
        diagnoses.Note(kSubject, text, remedy);
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
  diagnoses.Fine("program", fmt::format("vextrel {}, 64-bit, {}{}", VEXTREL_VERSION, kSystemName,
                                        IsElevated() ? ", as an administrator" : ""));
  for (const auto& [name, path] :
       {std::pair<const char*, fs::path>{"vextrel.cti", setup.modules.standard},
        {"vextrel_extended.cti", setup.modules.extended}}) {
    if (path.empty()) {
      diagnoses.Wrong("program", fmt::format("{} isn't where it belongs beside this program", name),
                      "unpack the whole package");
    }
  }
}

void LookAtVariables(const Setup& setup, Facts& facts, Diagnoses& diagnoses) {
  const std::optional<std::string> value = setup.variables.Find(kPathVariable);
  if (!value) {
    if (setup.variables.Find(kPathVariable32)) {
      diagnoses.Wrong(
          kSubject,
          fmt::format("{} is set, and {} isn't: 64-bit applications read only the latter",
                      kPathVariable32, kPathVariable),
          fmt::format("set {}", kPathVariable));
    } else if (facts.isSetUp) {
      diagnoses.Wrong(kSubject, fmt::format("{} isn't set", kPathVariable),
                      "set it to the folder that has the module, or use 'vextrel trace'");
    } else if (setup.target.empty()) {
      diagnoses.Wrong(kSubject, fmt::format("{} isn't set, so there's no target", kPathVariable),
                      "name the producer with --target");
    } else {
      diagnoses.Fine(kSubject,
                     fmt::format("{} isn't set, which 'vextrel trace' will do", kPathVariable));
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
