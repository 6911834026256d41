// SPDX-License-Identifier: MIT
#include "views/diff_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "reading/line_shapes.h"
#include "views/comparable.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kAround = 3;
constexpr std::size_t kMostLines = 10;

bool ComesBefore(const std::vector<ComparableCall>& left,
                 const std::vector<ComparableCall>& right) {
  const auto key = [](const LogPlace& place) { return std::pair(place.file, place.line); };
  return !left.empty() && !right.empty() && key(left.front().place) < key(right.front().place);
}

}  // namespace

DiffView::DiffView(DiffOptions options, Output& output) : options_(options), output_(output) {}

DiffView::Thread& DiffView::ThreadOf(std::uint32_t number) {
  Thread& thread = threads_[number];
  if (thread.alignment == nullptr) {
    thread.alignment = std::make_unique<Alignment>(Alignment::Listener{
        [this, &thread](const ComparableCall& left, const ComparableCall& right) {
          TakeBoth(thread, left, right);
        },
        [this, &thread](const std::vector<ComparableCall>& left,
                        const std::vector<ComparableCall>& right) {
          TakeDifferent(thread, left, right);
        }});
  }
  return thread;
}

void DiffView::Take(Alignment::Side side, const Record& record, const Message& message,
                    const Context& context, const Handles& handles) {
  if (!IsComparable(record, message) || (options_.ignoreReports && !message.IsCall())) {
    return;
  }
  Thread& thread = ThreadOf(context.thread);
  ComparableCall call = MakeComparable(record, message, context, handles);
  std::uint64_t& lastPoll = thread.lastPoll[side == Alignment::Side::Left ? 0 : 1];
  if (message.IsCall() && message.result == GC_ERR_TIMEOUT) {
    // How often somebody waited in vain is chance; that it happened is not.
    if (options_.ignoreTiming || std::exchange(lastPoll, call.what) == call.what) {
      return;
    }
  } else {
    lastPoll = 0;
  }
  ++all_[side == Alignment::Side::Left ? 0 : 1];
  thread.alignment->Add(side, std::move(call));
}

Alignment::Side DiffView::Shorter() const noexcept {
  std::size_t left = 0;
  std::size_t right = 0;
  for (const auto& [number, thread] : threads_) {
    left += thread.alignment->Waiting(Alignment::Side::Left);
    right += thread.alignment->Waiting(Alignment::Side::Right);
  }
  return left <= right ? Alignment::Side::Left : Alignment::Side::Right;
}

std::string DiffView::Line(const ComparableCall& call) {
  return fmt::format("{:>8}  {}", call.place.line, call.text);
}

void DiffView::TakeBoth(Thread& thread, const ComparableCall& left, const ComparableCall& right) {
  const bool results = !options_.ignoreResults && left.result != right.result;
  // A failed call brings nothing back.
  const bool values = !options_.ignoreValues && left.values != right.values && !results &&
                      left.result == 0 && right.result == 0;
  if (results || values) {
    Counts& counts = counts_[left.function];
    (results ? counts.results : counts.values) += 1;
    Note(thread, results ? "another result" : "another value", {left}, {right});
  } else {
    ++equal_;
    if (thread.collectsAfter && first_->after.size() < kAround) {
      first_->after.push_back(Line(left));
    }
  }
  thread.context.push_back(Line(left));
  if (thread.context.size() > kAround) {
    thread.context.pop_front();
  }
}

void DiffView::TakeDifferent(Thread& thread, const std::vector<ComparableCall>& left,
                             const std::vector<ComparableCall>& right) {
  for (const ComparableCall& each : left) {
    ++counts_[each.function].onlyLeft;
  }
  for (const ComparableCall& each : right) {
    ++counts_[each.function].onlyRight;
  }
  Note(thread, left.empty() || right.empty() ? "calls that only one run makes" : "other calls",
       left, right);
}

void DiffView::Note(Thread& thread, std::string what, std::vector<ComparableCall> left,
                    std::vector<ComparableCall> right) {
  const bool isFirst = !first_.has_value() || ComesBefore(left, first_->left) ||
                       (left.empty() && ComesBefore(right, first_->right));
  if (!isFirst) {
    return;
  }
  for (auto& [number, each] : threads_) {
    each.collectsAfter = false;
  }
  thread.collectsAfter = true;
  first_ = Difference{{thread.context.begin(), thread.context.end()},
                      std::move(left),
                      std::move(right),
                      {},
                      std::move(what)};
}

void DiffView::Append(std::string& out, char mark, const std::vector<ComparableCall>& calls) {
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (i == kMostLines) {
      fmt::format_to(std::back_inserter(out), "{}           ... {} more\n", mark, calls.size() - i);
      return;
    }
    fmt::format_to(std::back_inserter(out), "{} {}\n", mark, Line(calls[i]));
  }
}

bool DiffView::Finish() {
  for (auto& [number, thread] : threads_) {
    thread.alignment->Finish();
  }
  std::string& out = output_.Text();
  if (!first_.has_value()) {
    fmt::format_to(std::back_inserter(out), "The runs are equal: {} calls and reports.\n", equal_);
    output_.Flush();
    return true;
  }
  fmt::format_to(std::back_inserter(out),
                 "The first difference ('-' the first log, '+' the second one): {}\n\n",
                 first_->what);
  for (const std::string& line : first_->before) {
    out += "  " + line + "\n";
  }
  Append(out, '-', first_->left);
  Append(out, '+', first_->right);
  for (const std::string& line : first_->after) {
    out += "  " + line + "\n";
  }
  fmt::format_to(std::back_inserter(out),
                 "\n{} calls and reports are equal, of {} and {}. Differences:\n"
                 "    only -    only +    result     value  function\n",
                 equal_, all_[0], all_[1]);
  for (const auto& [function, counts] : counts_) {
    fmt::format_to(std::back_inserter(out), "{:>10}{:>10}{:>10}{:>10}  {}\n", counts.onlyLeft,
                   counts.onlyRight, counts.results, counts.values,
                   function == ComparableCall::kReport ? "(reports)" : FunctionNames()[function]);
  }
  output_.Flush();
  return false;
}

}  // namespace vextrel::program
