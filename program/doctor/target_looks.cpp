// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>

#include "doctor/libraries.h"
#include "doctor/looks.h"
#include "doctor/target_session.h"
#include "images/file_bytes.h"
#include "launching/application.h"
#include "launching/failure.h"
#include "launching/gentl_functions.h"
#include "launching/system.h"
#include "launching/trace_folder.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

constexpr const char* kTarget = "target";
constexpr std::chrono::seconds kTimeToLoad(20);

// Adds what's wrong, and returns an empty path, if there's no target.
fs::path TargetOf(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  if (!setup.target.empty()) {
    return PathOf(setup.target);
  }
  if (facts.isSetUp) {
    const std::optional<std::string> value = setup.variables.Find(kTargetVariable);
    if (!value) {
      diagnoses.Wrong(kTarget, fmt::format("{} isn't set", kTargetVariable),
                      "set it to the producer's .cti file, or use 'vextrel trace'");
      return {};
    }
    if (const std::optional<Fault> fault = FaultOfReference(kTargetVariable, setup.variables)) {
      diagnoses.Wrong(kTarget, *fault);
      return {};
    }
    return PathOf(*ExpandReference(*value, setup.variables));
  }
  if (facts.others.empty() && diagnoses.FirstWrong("variables") != nullptr) {
    diagnoses.Note(kTarget, "not looked at: no producer is known");
    return {};
  }
  if (const std::optional<Fault> fault = FaultOfChoice(facts.others, !facts.ours.empty())) {
    diagnoses.Wrong(kTarget, *fault);
    return {};
  }
  return facts.others.front();
}

bool HasVisualCppName(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  for (const std::string_view runtime : {"vcruntime", "msvcp", "msvcr1", "mfc1", "concrt"}) {
    if (name.starts_with(runtime)) {
      return true;
    }
  }
  return false;
}

std::string RemedyFor(const MissingLibrary& missing) {
  if (missing.isBesideTheModule) {
    return kOwnImageKind == ImageKind::Pe
               ? "add the target's folder to PATH; 'vextrel trace' does that itself"
               : "add the target's folder to LD_LIBRARY_PATH";
  }
  if (HasVisualCppName(missing.name)) {
    return "install the Visual C++ redistributable for x64";
  }
  return "install the software of the target's maker, or add the library's folder to " +
         std::string(kOwnImageKind == ImageKind::Pe ? "PATH" : "LD_LIBRARY_PATH");
}

fs::path ApplicationOf(const Setup& setup) {
  try {
    return setup.application.empty() ? fs::path()
                                     : FindApplication(setup.application, setup.variables);
  } catch (const LaunchFailure&) {
    return {};
  }
}

}  // namespace

void LookAtTarget(const Setup& setup, Facts& facts, Diagnoses& diagnoses) {
  const fs::path target = TargetOf(setup, facts, diagnoses);
  if (target.empty()) {
    return;
  }
  if (const std::optional<Fault> fault = FaultOfTarget(target)) {
    diagnoses.Wrong(kTarget, *fault);
    return;
  }
  if (const std::optional<Fault> letters = FaultOfLetters(target)) {
    diagnoses.Wrong(kTarget, *letters);
  }
  facts.target = target;
  facts.targetImage = ReadImage(target);
  facts.targetIsSound = true;
  diagnoses.Fine(kTarget, fmt::format("'{}' is a 64-bit producer", TextOf(target)));
}

void LookForASecondWayToTheTarget(const Facts& facts, Diagnoses& diagnoses) {
  if (facts.target.empty() || !facts.isSetUp) {
    return;
  }
  const bool isThere =
      std::any_of(facts.others.begin(), facts.others.end(),
                  [&](const fs::path& each) { return IsSameFile(each, facts.target); });
  if (isThere) {
    diagnoses.Wrong(
        "target",
        fmt::format("'{}' is also found through {}: the application may use it directly",
                    TextOf(facts.target), kPathVariable),
        "leave only the module's folder in the variable");
  }
}

void LookAtLibraries(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  constexpr const char* subject = "libraries";
  if (!facts.targetIsSound) {
    return;
  }
  const LibrarySearch search(setup.variables, ApplicationOf(setup));
  std::vector<MissingLibrary> missing = FindMissingLibraries(facts.target, search);
  for (const MissingLibrary& each : missing) {
    const std::string text = fmt::format("{}, which '{}' needs, {}", each.name,
                                         TextOf(each.neededBy.filename()), each.why);
    const bool isMended =
        each.isBesideTheModule && !facts.isSetUp && kOwnImageKind == ImageKind::Pe;
    if (each.isDelayed || isMended) {
      diagnoses.Note(subject, text, RemedyFor(each));
    } else {
      diagnoses.Wrong(subject, text, RemedyFor(each));
    }
  }
  if (missing.empty()) {
    diagnoses.Fine(subject, "all that the target needs is found");
  }
}

void LookAtFunctions(const Facts& facts, Diagnoses& diagnoses) {
  constexpr const char* subject = "functions";
  if (!facts.targetIsSound) {
    return;
  }
  std::string_view newest;
  std::string lacking;
  for (const GentlVersion& version : GentlVersions()) {
    const auto missing = Lacking(version, facts.targetImage.exports);
    if (missing.empty() && lacking.empty()) {
      newest = version.name;
    } else if (!missing.empty()) {
      lacking +=
          fmt::format("{}{} of {}", lacking.empty() ? "" : ", ", missing.size(), version.name);
    }
  }
  const std::string text =
      lacking.empty() ? fmt::format("the target has all of GenTL {}", newest)
      : newest.empty()
          ? fmt::format("the target lacks functions of GenTL 1.0 ({})", lacking)
          : fmt::format("the target has all of GenTL {}, and lacks {}", newest, lacking);
  if (newest.empty()) {
    diagnoses.Note(subject, text, "ask its maker; calls of these functions fail");
  } else {
    diagnoses.Fine(subject, text);
  }
}

void LookAtLoading(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  if (setup.program.empty() || !facts.targetIsSound) {
    return;
  }
  const TargetSession session =
      TryTarget(setup.program, facts.target, setup.variables, kTimeToLoad);
  const std::string text = fmt::format("the target {}", session.text);
  if (session.isWhole) {
    diagnoses.Fine("loading", text);
  } else {
    diagnoses.Wrong("loading", text,
                    "install the software of the target's maker again, or ask its maker");
  }
}

}  // namespace vextrel::program
