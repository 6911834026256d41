// SPDX-License-Identifier: MIT
#include "commands/log_options.h"

#include <algorithm>

#include "reading/property_file.h"
#include "reading/rolled_files.h"
#include "views/safe_text.h"

namespace vextrel::program {

void LogOptions::AddLayoutTo(CLI::App& command) {
  auto* patternOption = command.add_option(
      "--pattern", pattern,
      "The log's layout, as the ConversionPattern of a PatternLayout; found by itself otherwise");
  command
      .add_option("--config", config,
                  "The property file that the log was written with, for its layout")
      ->excludes(patternOption);
}

void LogOptions::AddFilesTo(CLI::App& command) {
  command
      .add_option(
          "LOG", files,
          "Call logs, in the order of time; '-' is standard input. Files that a rolling log "
          "was renamed to are found by themselves")
      ->required();
  AddLayoutTo(command);
}

ReadingOptions LogOptions::ToRead(Output& errors) const {
  ReadingOptions options;
  options.files = WithRolledFiles(files);
  if (options.files.size() > files.size()) {
    errors.Text() += "vextrel: also read, before the log itself:";
    for (const std::string& file : options.files) {
      if (std::find(files.begin(), files.end(), file) == files.end()) {
        errors.Text() += " ";
        AppendSafe(errors.Text(), file);
      }
    }
    errors.Text() += "\n";
    errors.Flush();
  }
  if (!config.empty()) {
    options.layout = LayoutOfPropertyFile(config);
  } else if (!pattern.empty()) {
    options.layout = Layout::OfPattern(pattern);
  }
  return options;
}

}  // namespace vextrel::program
