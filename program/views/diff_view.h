// SPDX-License-Identifier: MIT
// Where two runs differ, for people.
#ifndef VEXTREL_PROGRAM_VIEWS_DIFF_VIEW_H
#define VEXTREL_PROGRAM_VIEWS_DIFF_VIEW_H

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/alignment.h"
#include "model/session_model.h"
#include "reading/message.h"
#include "views/output.h"

namespace vextrel::program {

struct DiffOptions {
  bool ignoreValues = false;  // what calls brought back
  bool ignoreResults = false;
  bool ignoreReports = false;
  bool ignoreTiming = false;  // time-outs
};

class DiffView {
 public:
  DiffView(DiffOptions options, Output& output);

  // The next record of one of the runs. Calls are compared thread by thread, the threads in the
  // order of their first call.
  void Take(Alignment::Side side, const Record& record, const Message& message,
            const Context& context, const Handles& handles);
  // Which run has less waiting to be compared: it's the one to be read next.
  [[nodiscard]] Alignment::Side Shorter() const noexcept;
  // Writes what was found. Returns true iff the runs are equal.
  [[nodiscard]] bool Finish();

 private:
  struct Difference {
    std::vector<std::string> before;  // equal calls
    std::vector<ComparableCall> left;
    std::vector<ComparableCall> right;
    std::vector<std::string> after;
    std::string what;
  };
  struct Thread {
    std::unique_ptr<Alignment> alignment;
    std::uint64_t lastPoll[2] = {0, 0};  // what the last call was, if it was a time-out
    std::deque<std::string> context;
    bool collectsAfter = false;  // after the first difference of all
  };
  struct Counts {
    std::uint64_t onlyLeft = 0;
    std::uint64_t onlyRight = 0;
    std::uint64_t results = 0;
    std::uint64_t values = 0;
  };

  Thread& ThreadOf(std::uint32_t number);
  void TakeBoth(Thread& thread, const ComparableCall& left, const ComparableCall& right);
  void TakeDifferent(Thread& thread, const std::vector<ComparableCall>& left,
                     const std::vector<ComparableCall>& right);
  void Note(Thread& thread, std::string what, std::vector<ComparableCall> left,
            std::vector<ComparableCall> right);
  static void Append(std::string& out, char mark, const std::vector<ComparableCall>& calls);
  static std::string Line(const ComparableCall& call);

  DiffOptions options_;
  Output& output_;
  std::map<std::uint32_t, Thread> threads_;
  std::optional<Difference> first_;
  std::map<std::size_t, Counts> counts_;  // by function
  std::uint64_t equal_ = 0;
  std::uint64_t all_[2] = {0, 0};
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_DIFF_VIEW_H
