// SPDX-License-Identifier: MIT
// Takes a log, call by call, and has all rules look at it.
#ifndef VEXTREL_PROGRAM_RULES_CHECKER_H
#define VEXTREL_PROGRAM_RULES_CHECKER_H

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "model/session_model.h"
#include "rules/family.h"
#include "rules/findings.h"

namespace vextrel::program {

class Checker : public SessionObserver {
 public:
  // Observes `model` from here on. Both must live until the log was read.
  explicit Checker(SessionModel& model);

  // To be called with each record after SessionModel::Take.
  void Take(const Record& record, const Message& message, const Context& context);
  // To be called after SessionModel::Finish, once.
  void Finish();

  // In the order of the log, after Finish.
  [[nodiscard]] const Findings& Found() const noexcept { return findings_; }
  [[nodiscard]] Findings& Found() noexcept { return findings_; }

  void BeforeCall(const Record& record, const Message& message, const Context& context) override;
  void BeforeSessionEnds() override;

 private:
  struct Thread {
    std::optional<LogPlace> lastPlace;
    Finding* lastFinding = nullptr;  // of its last failing call
  };

  [[nodiscard]] Thread& ThreadOf(const Context& context);
  [[nodiscard]] Call CallOf(const Record& record, const Message& message, const Context& context);
  void TakeCall(const Record& record, const Message& message, const Context& context);
  void ExplainFinding(const Record& record, const Message& message, Thread& thread);
  void NoteMixing(const Message& message, const Context& context);
  void NoteWhatIsMissing();
  void DropWhatNeedsOneProcess();

  SessionModel& model_;
  Findings findings_;
  LogKnowledge log_;
  std::vector<std::unique_ptr<RuleFamily>> families_;
  std::vector<RuleFamily*> any_;
  std::vector<std::vector<RuleFamily*>> all_;       // by function
  std::vector<std::vector<RuleFamily*>> failures_;  // by function
  std::vector<Thread> threads_;
  Moment last_;
  bool isMixed_ = false;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_CHECKER_H
