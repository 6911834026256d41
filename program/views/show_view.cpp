// SPDX-License-Identifier: MIT
#include "views/show_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kYellow = "\x1b[33m";
constexpr std::string_view kGray = "\x1b[90m";
constexpr std::string_view kPlain = "\x1b[0m";
constexpr std::size_t kMostOfAnUnreadableLine = 200;

Priority PriorityOf(const Record& record, const Message& message) {
  return record.head.priority != Priority::Unknown ? record.head.priority
                                                   : PriorityOfReport(message.line);
}

bool IsBad(Priority priority) {
  return priority <= Priority::Warn;
}

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char each) {
    return each >= 'a' && each <= 'z' ? static_cast<char>(each - 'a' + 'A') : each;
  });
  return text;
}

// A handle's value as people copy it: with or without 0x, with or without zeros in front.
std::string Digits(std::string text) {
  text = UpperCase(std::move(text));
  if (text.starts_with("0X")) {
    text.erase(0, 2);
  }
  const std::size_t begin = text.find_first_not_of('0');
  return begin == std::string::npos ? "" : text.substr(begin);
}

void AppendRight(std::string& out, std::string_view text, std::size_t width) {
  out.append(width > text.size() ? width - text.size() : 0, ' ');
  out += text;
}

}  // namespace

ShowView::ShowView(const SessionModel& model, ShowOptions options, Output& output)
    : model_(model), options_(std::move(options)), output_(output) {
  for (std::string& name : options_.handles) {
    name = UpperCase(std::move(name));
  }
}

bool ShowView::PassesTime(const Context& context) const {
  if (!options_.from.has_value() && !options_.to.has_value()) {
    return true;
  }
  if (!context.hasTime) {
    return false;
  }
  const std::int64_t first = model_.FirstTime().value_or(0);
  return (!options_.from.has_value() || options_.from->Compare(context.time, first) >= 0) &&
         (!options_.to.has_value() || options_.to->Compare(context.time, first) <= 0);
}

bool ShowView::PassesHandles(const Message& message, const Context& context) const {
  const Handles& handles = model_.AllHandles();
  const auto isWanted = [&](HandleId id, std::string_view value) {
    return std::any_of(options_.handles.begin(), options_.handles.end(),
                       [&](const std::string& wanted) {
                         return (id != kNoHandle && handles.Name(id) == wanted) ||
                                (!value.empty() && Digits(wanted) == Digits(std::string(value)));
                       });
  };
  if (context.delivered != kNoHandle &&
      isWanted(context.delivered, fmt::format("{:X}", handles.At(context.delivered).value))) {
    return true;
  }
  for (std::size_t i = 0; message.shape != nullptr && i < message.shape->places.size(); ++i) {
    const Meaning meaning = message.shape->places[i].meaning;
    const HandleId id = context.Given(i);
    if ((meaning == Meaning::Handle || meaning == Meaning::HandleLowHalf) &&
        isWanted(id, message.values[i].text)) {
      return true;
    }
  }
  return false;
}

bool ShowView::Passes(const Record& record, const Message& message, const Context& context) const {
  const bool isReport = message.kind == MessageKind::Report;
  if (options_.session != 0 && context.session != options_.session) {
    return false;
  }
  if (options_.errors && !message.Failed() && !(isReport && IsBad(PriorityOf(record, message)))) {
    return false;
  }
  if (options_.reports && !isReport) {
    return false;
  }
  if (!options_.functions.empty() &&
      (!message.IsCall() || std::find(options_.functions.begin(), options_.functions.end(),
                                      message.shape->function) == options_.functions.end())) {
    return false;
  }
  if (!options_.threads.empty()) {
    const bool any = std::any_of(
        options_.threads.begin(), options_.threads.end(), [&](const std::string& wanted) {
          return wanted == record.head.thread || wanted == "T" + std::to_string(context.thread);
        });
    if (!any) {
      return false;
    }
  }
  return PassesTime(context) && (options_.handles.empty() || PassesHandles(message, context));
}

bool ShowView::Repeats(const Message& message, const Context& context) {
  const bool isPoll = message.IsCall() && message.result == GC_ERR_TIMEOUT;
  if (isPoll && poll_.isActive && poll_.line == message.line &&
      poll_.handle == context.handles[0] && poll_.thread == context.thread) {
    ++poll_.repetitions;
    poll_.lastTime = context.time;
    return true;
  }
  EndPoll();
  poll_ = {message.line, context.handles[0], context.thread, message.result, 0, context.time,
           isPoll};
  return false;
}

void ShowView::EndPoll() {
  if (!std::exchange(poll_.isActive, false) || poll_.repetitions == 0) {
    return;
  }
  std::string& out = output_.Text();
  fmt::format_to(std::back_inserter(out), "         ... {} more like this one", poll_.repetitions);
  if (model_.Time() != TimeKind::None) {
    out += ", until ";
    AppendTimeOfDay(out, poll_.lastTime, model_.Time(), model_.Resolution());
  }
  out += '\n';
}

void ShowView::AppendFront(const Record& record, const Context& context) {
  std::string& out = output_.Text();
  char digits[32];
  const auto end = fmt::format_to_n(digits, sizeof digits, "{}", record.place.line).out;
  AppendRight(out, {digits, static_cast<std::size_t>(end - digits)}, 8);
  out += ' ';
  if (context.hasTime && record.kind == RecordKind::Whole) {
    AppendTimeOfDay(out, context.time, model_.Time(), model_.Resolution());
    const std::int64_t since = context.sinceLast;
    const auto last = fmt::format_to_n(digits, sizeof digits, "{}{}.{:03}", since < 0 ? '-' : '+',
                                       (since < 0 ? -since : since) / 1'000'000,
                                       (since < 0 ? -since : since) / 1'000 % 1'000)
                          .out;
    AppendRight(out, {digits, static_cast<std::size_t>(last - digits)}, 9);
    out += ' ';
  }
  AppendThread(context.thread);
  if (model_.Timings().Any() && record.kind == RecordKind::Whole) {
    constexpr std::size_t width = 11;
    AppendRight(out, context.timing == nullptr ? "" : DurationText(context.timing->nanoseconds),
                width);
    out += "  ";
  }
}

void ShowView::AppendThread(std::uint32_t thread) {
  if (thread != 0) {
    std::string& out = output_.Text();
    out += 'T';
    out += std::to_string(thread);
    out += thread < 10 ? "  " : " ";
  }
}

bool ShowView::PassesNeverReturned(const EnteredCall& call) const {
  const auto isAnyOf = [](const std::vector<std::string>& wanted, const auto& fits) {
    return wanted.empty() || std::any_of(wanted.begin(), wanted.end(), fits);
  };
  const Handles& handles = model_.AllHandles();
  const std::string value = fmt::format("{:X}", call.argument);
  Context context;
  context.hasTime = call.time.has_value();
  context.time = call.time.value_or(0);
  return !options_.reports && (options_.session == 0 || options_.session == call.session) &&
         isAnyOf(options_.functions,
                 [&](const std::string& each) { return each == FunctionNames()[call.function]; }) &&
         isAnyOf(options_.threads,
                 [&](const std::string& each) {
                   return each == "T" + std::to_string(call.thread) ||
                          (call.thread != 0 && each == model_.Threads()[call.thread - 1]);
                 }) &&
         isAnyOf(options_.handles,
                 [&](const std::string& each) {
                   return (call.handle != kNoHandle && handles.Name(call.handle) == each) ||
                          (call.argumentKind == EnteredCall::Argument::Pointer &&
                           Digits(each) == Digits(value));
                 }) &&
         PassesTime(context);
}

void ShowView::ShowNeverReturned() {
  const std::vector<EnteredCall>& calls = model_.Timings().NeverReturned();
  for (; neverReturned_ < calls.size(); ++neverReturned_) {
    const EnteredCall& call = calls[neverReturned_];
    if (!PassesNeverReturned(call)) {
      continue;
    }
    hasShown_ = true;
    EndPoll();
    std::string& out = output_.Text();
    AppendRight(out, std::to_string(call.place.line), 8);
    out += ' ';
    if (call.time.has_value()) {
      AppendTimeOfDay(out, *call.time, model_.Time(), model_.Resolution());
      out += "          ";
    }
    AppendThread(call.thread);
    out += options_.colors ? kRed : "";
    AppendEntered(out, call, model_.AllHandles());
    out += " entered and never returned";
    out += options_.colors ? kPlain : "";
    out += '\n';
  }
}

void ShowView::Take(const Record& record, const Message& message, const Context& context) {
  ShowNeverReturned();
  if (message.IsTiming()) {
    return;
  }
  if (record.kind != RecordKind::Whole || message.kind == MessageKind::Other) {
    const bool filtered = options_.errors || options_.reports || !options_.functions.empty() ||
                          !options_.handles.empty() || !options_.threads.empty() ||
                          options_.session != 0 || !PassesTime(context);
    if (filtered) {
      return;
    }
    hasShown_ = true;
    EndPoll();
    AppendFront(record, context);
    std::string& out = output_.Text();
    out += options_.colors ? kGray : "";
    switch (record.kind) {
      case RecordKind::Headless:
        out += "? (the beginning is missing) ";
        break;
      case RecordKind::TooLong:
        out += "? (too long, the rest is skipped) ";
        break;
      case RecordKind::Whole:
        out += context.isOtherLine ? "| " : (record.isCut ? "? (the end is missing) " : "? ");
    }
    AppendSafe(out, record.message, kMostOfAnUnreadableLine);
    out += options_.colors ? kPlain : "";
    out += '\n';
    output_.Commit();
    return;
  }
  if (!Passes(record, message, context) || (!options_.all && Repeats(message, context))) {
    return;
  }
  hasShown_ = true;
  std::string& out = output_.Text();
  AppendFront(record, context);
  if (message.IsCall()) {
    const bool failed = message.Failed();
    out += failed && options_.colors ? kRed : "";
    AppendCall(out, record, message, context, model_.AllHandles());
    if (failed) {
      std::string storage;
      out += ' ';
      out += ResultName(message.result, storage);
      out += options_.colors ? kPlain : "";
    }
  } else {
    const Priority priority = PriorityOf(record, message);
    const bool colored = options_.colors && IsBad(priority);
    out += colored ? (priority == Priority::Warn ? kYellow : kRed) : "";
    out += PriorityName(priority);
    out += ' ';
    AppendReport(out, message, context, model_.AllHandles());
    out += colored ? kPlain : "";
  }
  out += '\n';
  if (options_.raw) {
    out += "           ";
    out += options_.colors ? kGray : "";
    AppendSafe(out, record.raw);
    out += options_.colors ? kPlain : "";
    out += '\n';
  }
  output_.Commit();
}

void ShowView::Finish() {
  ShowNeverReturned();
  EndPoll();
}

}  // namespace vextrel::program
