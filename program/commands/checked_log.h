// SPDX-License-Identifier: MIT
// A log that was read to its end, with what the rules found in it.
#ifndef VEXTREL_PROGRAM_COMMANDS_CHECKED_LOG_H
#define VEXTREL_PROGRAM_COMMANDS_CHECKED_LOG_H

#include <memory>
#include <string>
#include <string_view>

#include "model/session_model.h"
#include "reading/record_reader.h"
#include "rules/checker.h"
#include "views/report.h"

namespace vextrel::program {

class CheckedLog {
 public:
  // Throws std::runtime_error with a sentence if the log can't be used.
  explicit CheckedLog(const ReadingOptions& options);

  [[nodiscard]] const ReportedLog& Log() const noexcept { return log_; }
  [[nodiscard]] const SessionModel& Model() const noexcept { return *model_; }
  [[nodiscard]] const Findings& Found() const noexcept { return checker_->Found(); }

 private:
  ReportedLog log_;
  std::unique_ptr<SessionModel> model_;
  std::unique_ptr<Checker> checker_;
};

// Writes a file. `path` is UTF-8. Throws std::runtime_error with a sentence if it can't be written.
void WriteTextFile(const std::string& path, std::string_view text);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_CHECKED_LOG_H
