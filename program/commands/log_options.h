// SPDX-License-Identifier: MIT
// The options that every command has for the log it reads.
#ifndef VEXTREL_PROGRAM_COMMANDS_LOG_OPTIONS_H
#define VEXTREL_PROGRAM_COMMANDS_LOG_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "reading/record_reader.h"
#include "views/output.h"

namespace vextrel::program {

struct LogOptions {
  std::vector<std::string> files;
  std::string pattern;
  std::string config;

  // --pattern and --config; the files are the command's own.
  void AddLayoutTo(CLI::App& command);
  void AddFilesTo(CLI::App& command);

  // What to read: with the rolled files of each log, which `errors` is told about. Throws
  // std::runtime_error with a sentence if the layout can't be used.
  [[nodiscard]] ReadingOptions ToRead(Output& errors) const;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_LOG_OPTIONS_H
