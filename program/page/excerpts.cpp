// SPDX-License-Identifier: MIT
#include "page/excerpts.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

// How far in front of a wanted line rows are made on suspicion: the longest records have thousands
// of lines.
constexpr std::uint64_t kNearLines = 20'000;

bool IsBefore(const LogPlace& left, const LogPlace& right) {
  return std::tie(left.file, left.line) < std::tie(right.file, right.line);
}

bool IsSame(const LogPlace& left, const LogPlace& right) {
  return left.file == right.file && left.line == right.line;
}

RowLook LookOfReport(const Message& message) {
  switch (PriorityOfReport(message.line)) {
    case Priority::Error:
      return RowLook::Failed;
    case Priority::Warn:
      return RowLook::Warning;
    default:
      return RowLook::Plain;
  }
}

}  // namespace

Excerpts::Excerpts(const Findings& findings) {
  for (const Finding& finding : findings.All()) {
    Want(finding.place, kAround);
    if (finding.count > 1) {
      Want(finding.last, kAroundRelated);
    }
    for (const Related& each : finding.related) {
      Want(each.place, kAroundRelated);
    }
  }
  std::sort(wanted_.begin(), wanted_.end(), [](const Wanted& left, const Wanted& right) {
    return IsBefore(left.place, right.place) ||
           (IsSame(left.place, right.place) && left.around > right.around);
  });
}

void Excerpts::Want(const LogPlace& place, std::size_t around) {
  const std::size_t rows = 2 * around + 1;
  if (planned_ + rows <= kMostRows) {
    planned_ += rows;
    wanted_.push_back({place, around});
  }
}

void Excerpts::Take(const SessionModel& model, const Record& record, const Message& message,
                    const Context& context) {
  isNear_ = false;
  while (next_ < wanted_.size() && IsBefore(wanted_[next_].place, record.place)) {
    ++next_;
  }
  const bool isWanted = next_ < wanted_.size() && IsSame(wanted_[next_].place, record.place);
  if (isWanted) {
    const std::size_t around = wanted_[next_].around;
    const std::size_t count = std::min(beforeCount_, around);
    for (std::size_t i = count; i > 0; --i) {
      rows_.push_back(std::move(before_[(beforeEnd_ + kAround - i) % kAround]));
    }
    beforeCount_ = 0;
    behind_ = std::max(behind_, around);
  }
  // A timing line stands for itself only if it's the proof.
  if (!isWanted && message.IsTiming()) {
    return;
  }
  ++number_;
  const bool isSoon = next_ < wanted_.size() && wanted_[next_].place.file == record.place.file &&
                      wanted_[next_].place.line - record.place.line <= kNearLines;
  if (isWanted || behind_ > 0) {
    behind_ -= isWanted ? 0 : 1;
    isNear_ = true;
    Fill(rows_.emplace_back(), model, record, message, context);
    rows_.back().number = number_;
  } else if (isSoon) {
    Fill(before_[beforeEnd_], model, record, message, context);
    before_[beforeEnd_].number = number_;
    beforeEnd_ = (beforeEnd_ + 1) % kAround;
    beforeCount_ = std::min(beforeCount_ + 1, kAround);
  }
}

void Excerpts::Fill(ExcerptRow& row, const SessionModel& model, const Record& record,
                    const Message& message, const Context& context) {
  row = {};
  row.place = record.place;
  row.thread = context.thread;
  std::string text;
  if (record.kind != RecordKind::Whole || message.kind == MessageKind::Other ||
      message.IsTiming()) {
    row.look = message.IsTiming() || context.isOtherLine ? RowLook::Plain : RowLook::Unreadable;
    text = record.message.substr(0, kMostText + 1);
  } else if (message.IsCall()) {
    AppendCall(text, record, message, context, model.AllHandles());
    if (message.Failed()) {
      std::string storage;
      text += ' ';
      text += ResultName(message.result, storage);
      row.look = RowLook::Failed;
    }
  } else {
    row.look = LookOfReport(message);
    AppendReport(text, message, context, model.AllHandles());
  }
  AppendSafe(row.text, text, kMostText);
  if (context.hasTime && record.kind == RecordKind::Whole) {
    AppendTimeOfDay(row.time, context.time, model.Time(), model.Resolution());
  }
}

}  // namespace vextrel::program
