// SPDX-License-Identifier: MIT
// Set-ups that are broken in one way each, and what the doctor and a trace make of them.
#ifndef VEXTREL_TESTS_PROGRAM_BROKEN_SETUPS_H
#define VEXTREL_TESTS_PROGRAM_BROKEN_SETUPS_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "doctor/examination.h"
#include "images/file_bytes.h"
#include "program/made_images.h"
#include "program/small_log.h"

namespace vextrel_test {

void WriteFile(const std::filesystem::path& path, const std::string& text);

// A set-up by hand, in which everything is as it should be.
struct SoundSetup {
  SoundSetup();

  void SetConfig(const std::string& front, const std::string& log = "app.log") const;
  // A target that consists of headers.
  void MakeTarget(MadeImage made, bool exportsGentl = true) const;
  // An application that consists of headers.
  void MakeApplication(const std::string& name, MadeImage made = {});
  void Set(const char* variable, const std::string& value);

  ScratchFile scratch{"", "empty"};
  std::filesystem::path folder =
      std::filesystem::absolute(vextrel::program::PathOf(scratch.Path()).parent_path());
  std::filesystem::path producers = folder / "producers";
  std::filesystem::path target = folder / "target" / "camera.cti";
  std::filesystem::path config = folder / "log.properties";
  vextrel::program::Setup setup;
};

// What 'vextrel trace' is told of a set-up beyond its variables.
enum class Told {
  Nothing,
  Target,         // with --target
  Configuration,  // with --target and --config
  NothingElse,    // as Target, but the program is alone in its folder
};

// How a trace of the set-up ends.
enum class TraceEnd {
  Well,          // it needs nothing of what's broken
  Refused,       // before the application is started, with 125
  NotStartable,  // with 126
  NotFound,      // with 127
  WithoutCalls,  // the application runs, and no call succeeds
};

struct BrokenSetup {
  const char* name;
  std::function<void(SoundSetup&)> breakIt;
  const char* subject;  // of the first line that isn't fine
  const char* text;     // in it
  Told told;
  TraceEnd end;
  // What a trace says of a set-up that it mends itself; null if there's nothing to say.
  const char* mended = nullptr;
};

[[nodiscard]] std::vector<BrokenSetup> BrokenSetups();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_BROKEN_SETUPS_H
