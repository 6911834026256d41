// SPDX-License-Identifier: MIT
// Traces that a test makes, and what they leave behind.
#ifndef VEXTREL_TESTS_PROGRAM_TRACE_FIXTURE_H
#define VEXTREL_TESTS_PROGRAM_TRACE_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "images/file_bytes.h"
#include "launching/system.h"
#include "program/scoped_variable.h"
#include "program/small_log.h"
#include "support/system.h"

namespace vextrel_test {

inline const std::vector<std::string> kTarget = {"--target", SIMULATED_CAMERA};

class Trace : public testing::Test {
 protected:
  Trace() { std::filesystem::create_directory(temporary); }

  // Traces `application`, with the log in the scratch folder.
  [[nodiscard]] ProgramResult Run(std::vector<std::string> options,
                                  std::vector<std::string> application) {
    logFile = vextrel::program::TextOf(folder / ("trace" + std::to_string(++number) + ".log"));
    std::vector<std::string> arguments = {"trace", "--log", logFile};
    std::move(options.begin(), options.end(), std::back_inserter(arguments));
    arguments.emplace_back("--");
    std::move(application.begin(), application.end(), std::back_inserter(arguments));
    return RunVextrel(arguments);
  }
  [[nodiscard]] std::string Log() const {
    return vextrel::program::ReadBytes(vextrel::program::PathOf(logFile)).value_or("no log");
  }

  // What traces left behind in the folder for temporary files.
  [[nodiscard]] std::size_t Leftovers() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(temporary),
                                                  std::filesystem::directory_iterator()));
  }

  ScratchFile scratch{"", "empty"};
  std::filesystem::path folder = vextrel::program::PathOf(scratch.Path()).parent_path();
  // The test's own, because others trace at the same time.
  std::filesystem::path temporary = folder / "temporary";
  ScopedVariable temporaryVariable{kOnWindows ? "TMP" : "TMPDIR",
                                   vextrel::program::TextOf(temporary)};
  std::string logFile;
  int number = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_TRACE_FIXTURE_H
