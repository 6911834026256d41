// SPDX-License-Identifier: MIT
// Logs in the forms of other programs.
#ifndef VEXTREL_PROGRAM_VIEWS_EXPORTER_H
#define VEXTREL_PROGRAM_VIEWS_EXPORTER_H

#include <memory>
#include <string>
#include <vector>

#include "model/session_model.h"
#include "reading/message.h"
#include "reading/record_reader.h"
#include "views/output.h"

namespace vextrel::program {

class Exporter {
 public:
  Exporter() = default;
  virtual ~Exporter() = default;
  Exporter(const Exporter&) = delete;
  Exporter& operator=(const Exporter&) = delete;

  virtual void Take(const Record& record, const Message& message, const Context& context) = 0;
  // Call it when the log ends.
  virtual void Finish() = 0;
};

// Each refers to what it's made from.

// JSON Lines, an object for each record but timing lines, and for each call that never returned.
[[nodiscard]] std::unique_ptr<Exporter> MakeJsonLinesExporter(const SessionModel& model,
                                                              const std::vector<std::string>& files,
                                                              Output& output);
// CSV as RFC 4180 has it: a header, and a row for what has an object in JSON Lines.
[[nodiscard]] std::unique_ptr<Exporter> MakeCsvExporter(const SessionModel& model,
                                                        const std::vector<std::string>& files,
                                                        Output& output);
// Chrome trace events. Throws std::runtime_error with a sentence if the log has no times.
[[nodiscard]] std::unique_ptr<Exporter> MakeChromeExporter(const SessionModel& model,
                                                           Output& output);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_EXPORTER_H
