// SPDX-License-Identifier: MIT
// The ends of the way: the log's file and the application.
#include <fmt/format.h>

#include <fstream>

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

void LookAtFolder(const fs::path& folder, const std::string& log, Diagnoses& diagnoses) {
  const std::string remedy = "free some space, or let the log go elsewhere";
  if (const std::string why = WhyNotWritable(folder); !why.empty()) {
    diagnoses.Wrong(kLog, fmt::format("'{}' can't be written: {}", log, why),
                    "make the folder, allow the user to write there, or name another file");
    return;
  }
  if (IsOnNetwork(folder)) {
    diagnoses.Note(kLog,
                   fmt::format("'{}' is on another machine: each line waits for the network", log),
                   "log to a disk of this machine");
  }
  const std::uint64_t space = SpaceIn(folder);
  if (space < kLittleSpace) {
    diagnoses.Note(
        kLog,
        fmt::format("the disk of '{}' has {} MB left; an hour can take 5,000", log, space >> 20U),
        remedy);
  } else {
    diagnoses.Fine(kLog, fmt::format("'{}' can be written", log));
  }
}

void LookAtLogFile(const fs::path& log, Diagnoses& diagnoses) {
  std::error_code error;
  const std::string name = TextOf(log);
  if (fs::exists(log, error)) {
    if (!std::ofstream(log, std::ios::app).is_open()) {
      diagnoses.Wrong(kLog, fmt::format("'{}' can't be written by this user", name),
                      "remove it, or allow the user to write it");
      return;
    }
    diagnoses.Note(
        kLog, fmt::format("'{}' is there already, with {} bytes: new lines go to its end", name,
                          fs::file_size(log, error)));
  }
  LookAtFolder(log.has_parent_path() ? log.parent_path() : fs::current_path(error), name,
               diagnoses);
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
  if (facts.isSetUp) {
    return;
  }
  std::error_code error;
  const fs::path here = fs::current_path(error);
  const fs::path data = UserDataFolder(setup.variables);
  if (WhyNotWritable(here).empty() || data.empty()) {
    LookAtFolder(here, TextOf(here), diagnoses);
  } else {
    diagnoses.Note(kLog, fmt::format("'{}' can't be written: logs go to '{}'", TextOf(here),
                                     TextOf(data / "vextrel")));
  }
}

void LookAtApplication(const Setup& setup, const Facts& facts, Diagnoses& diagnoses) {
  if (setup.application.empty()) {
    return;
  }
  try {
    const fs::path file = FindApplication(setup.application, setup.variables);
    CheckApplication(file);
    const Image image = ReadImage(file);
    if (image.wantsElevation && !IsElevated()) {
      diagnoses.Wrong(
          kApplication,
          fmt::format("'{}' runs as an administrator only, and gets variables of its own then",
                      TextOf(file)),
          "start it from the command prompt of an administrator");
      return;
    }
    LookAtConsumer(file, facts, image, diagnoses);
    diagnoses.Fine(kApplication, fmt::format("'{}' can load a 64-bit producer", TextOf(file)));
  } catch (const LaunchFailure& failure) {
    diagnoses.Wrong(kApplication, failure.what(), "name the application's own 64-bit program");
  }
}

}  // namespace vextrel::program
