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
#include "launching/variables.h"
#include "program/small_log.h"

namespace vextrel_test {

inline const std::vector<std::string> kTarget = {"--target", SIMULATED_CAMERA};

class Trace : public testing::Test {
 protected:
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

  // Folders for temporary files that hold what a trace leaves behind.
  [[nodiscard]] static std::size_t Leftovers() {
    std::size_t count = 0;
    for (const std::filesystem::path& folder :
         vextrel::program::TemporaryFolders(vextrel::program::ProcessVariables())) {
      std::error_code ignored;
      for (std::filesystem::directory_iterator file(folder, ignored), end; file != end;
           file.increment(ignored)) {
        count += std::filesystem::exists(file->path() / "trace.properties", ignored) ? 1 : 0;
      }
      break;
    }
    return count;
  }

  ScratchFile scratch{"", "empty"};
  std::filesystem::path folder = vextrel::program::PathOf(scratch.Path()).parent_path();
  std::string logFile;
  int number = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_TRACE_FIXTURE_H
