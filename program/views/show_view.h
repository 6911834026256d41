// SPDX-License-Identifier: MIT
// One readable line for each record.
#ifndef VEXTREL_PROGRAM_VIEWS_SHOW_VIEW_H
#define VEXTREL_PROGRAM_VIEWS_SHOW_VIEW_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/session_model.h"
#include "reading/message.h"
#include "reading/record_reader.h"
#include "views/output.h"
#include "views/time_text.h"

namespace vextrel::program {

// What to show. Empty filters let everything pass.
struct ShowOptions {
  bool errors = false;   // only failed calls and WARN and ERROR reports
  bool reports = false;  // only reports
  std::vector<std::string> functions;
  std::vector<std::string> handles;  // "DEV1", or a value in hexadecimal
  std::vector<std::string> threads;  // "T1", or as in the log
  std::optional<TimeLimit> from;
  std::optional<TimeLimit> to;
  std::uint32_t session = 0;  // 0 is all
  bool all = false;           // repeated polls one by one
  bool raw = false;           // the log's own lines beside
  bool colors = false;
};

class ShowView {
 public:
  ShowView(const SessionModel& model, ShowOptions options, Output& output);

  void Take(const Record& record, const Message& message, const Context& context);
  // Call it when the log ends.
  void Finish();
  // False as long as nothing passed the options.
  [[nodiscard]] bool HasShown() const noexcept { return hasShown_; }

 private:
  // A call that waited in vain, and those like it right after.
  struct Poll {
    std::uint16_t line = 0;
    HandleId handle = kNoHandle;
    std::uint32_t thread = 0;
    GC_ERROR result = 0;
    std::uint64_t repetitions = 0;
    std::int64_t lastTime = 0;
    bool isActive = false;
  };

  [[nodiscard]] bool Passes(const Record& record, const Message& message,
                            const Context& context) const;
  [[nodiscard]] bool PassesHandles(const Message& message, const Context& context) const;
  [[nodiscard]] bool PassesTime(const Context& context) const;
  [[nodiscard]] bool Repeats(const Message& message, const Context& context);
  void EndPoll();
  void AppendFront(const Record& record, const Context& context);
  void AppendThread(std::uint32_t thread);
  void ShowNeverReturned();
  [[nodiscard]] bool PassesNeverReturned(const EnteredCall& call) const;

  const SessionModel& model_;
  ShowOptions options_;
  Output& output_;
  Poll poll_;
  bool hasShown_ = false;
  std::size_t neverReturned_ = 0;  // how many were shown or filtered
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_SHOW_VIEW_H
