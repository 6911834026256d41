// SPDX-License-Identifier: MIT
// The ends of the way: the log's file and the application.
#include <fmt/format.h>

#include "doctor/consumers.h"
#include "doctor/looks.h"
#include "images/file_bytes.h"
#include "launching/application.h"
#include "launching/failure.h"
#include "launching/log_file.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

constexpr const char* kLog = "log";
constexpr const char* kApplication = "application";
// What a fast camera's log takes in a few minutes.
constexpr std::uint64_t kLittleSpace = std::uint64_t{1} << 30U;

// `what` is a log, or a folder for logs, that can be written.
void LookAtDisk(const fs::path& folder, const std::string& what, Diagnoses& diagnoses) {
  if (IsOnNetwork(folder)) {
    diagnoses.Note(kLog,
                   fmt::format("'{}' is on another machine: each line waits for the network", what),
                   "log to a disk of this machine");
  }
  const std::uint64_t space = SpaceIn(folder);
  if (space < kLittleSpace) {
    diagnoses.Note(
        kLog,
        fmt::format("the disk of '{}' has {} MB left; an hour can take 5,000", what, space >> 20U),
        "free some space, or let the log go elsewhere");
  } else {
    diagnoses.Fine(kLog, fmt::format("'{}' can be written", what));
  }
}

void LookAtLogFile(const fs::path& log, Diagnoses& diagnoses) {
  std::error_code error;
  const std::string name = TextOf(log);
  if (const std::optional<Fault> fault = FaultOfLog(log)) {
    diagnoses.Wrong(kLog, *fault);
    return;
  }
  if (fs::is_regular_file(log, error)) {
    diagnoses.Note(
        kLog, fmt::format("'{}' is there already, with {} bytes: new lines go to its end", name,
                          fs::file_size(log, error)));
  }
  LookAtDisk(log.has_parent_path() ? log.parent_path() : fs::current_path(error), name, diagnoses);
}

void LookAtConsumer(const fs::path& file, const Facts& facts, const Image& image,
                    Diagnoses& diagnoses) {
  const Consumer* consumer = FindConsumer(file, image);
  if (consumer == nullptr) {
    return;
  }
  const bool hasStandardModule =
      facts.ours.size() == 1 && ReadImage(facts.ours.front()).exports.size() < 57;
  if (consumer->needsGentl15 && hasStandardModule) {
    diagnoses.Wrong(kApplication,
                    fmt::format("{} refuses '{}', which lacks functions of GenTL 1.5",
                                consumer->name, TextOf(facts.ours.front().filename())),
                    "use vextrel_extended.cti, as with 'vextrel trace --module extended'");
  } else if (!consumer->remark.empty()) {
    diagnoses.Note(kApplication, std::string(consumer->remark), "see docs/tracing.md");
  }
}

}  // namespace

void LookAtLog(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  for (const fs::path& log : facts.logs) {
    LookAtLogFile(log, diagnoses);
  }
  if (facts.isSetUp || !setup.config.empty()) {
    return;
  }
  std::error_code error;
  const fs::path here = fs::current_path(error);
  const fs::path data = UserDataFolder(setup.variables);
  const std::optional<Fault> fault = FaultOfFolder(here);
  if (!fault) {
    LookAtDisk(here, TextOf(here), diagnoses);
  } else if (data.empty()) {
    diagnoses.Wrong(kLog, "no log can be written: " + fault->text, "name a file with --log");
  } else {
    diagnoses.Note(kLog, fmt::format("{}: logs go to '{}'", fault->text, TextOf(data / "vextrel")));
  }
}

void LookAtApplication(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  if (setup.application.empty()) {
    return;
  }
  try {
    const fs::path file = FindApplication(setup.application, setup.variables);
    CheckApplication(file);
    LookAtConsumer(file, facts, ReadImage(file), diagnoses);
    diagnoses.Fine(kApplication, fmt::format("'{}' can load a 64-bit producer", TextOf(file)));
  } catch (const LaunchFailure& failure) {
    diagnoses.Wrong(kApplication, failure.Why());
  }
}

}  // namespace vextrel::program
