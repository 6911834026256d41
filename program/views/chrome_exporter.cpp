// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/exporter.h"
#include "views/json_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

// With timing lines a call is drawn as long as it was in the target. Its beginning is as fine as
// the layout shows it, so it is moved after the end of the call before it on its thread where the
// two would overlap: that is never later than the truth.
//
// Without timing lines a wait is drawn from the line before it on its thread, and another call as a
// moment: how long it took isn't known.
class ChromeExporter : public Exporter {
 public:
  ChromeExporter(const SessionModel& model, Output& output) : model_(model), output_(output) {
    if (model.Time() == TimeKind::None) {
      throw std::runtime_error(
          "the log's layout has no time, which a trace is made of: export it as csv or jsonl");
    }
    output_.Text() +=
        "{\"displayTimeUnit\":\"ms\",\"traceEvents\":[\n"
        "{\"ph\":\"M\",\"pid\":1,\"name\":\"process_name\",\"args\":{\"name\":\"GenTL calls\"}}";
  }

  void Take(const Record& record, const Message& message, const Context& context) override {
    TakeNeverReturned();
    if (record.kind != RecordKind::Whole || message.kind == MessageKind::Other ||
        message.IsTiming()) {
      return;
    }
    if (std::exchange(session_, context.session) != context.session) {
      EndSpansOfClosedBuffers();
    }
    // A viewer wants times that don't go back.
    now_ = std::max(now_, context.time - *model_.FirstTime());
    NameThread(context.thread);
    if (message.IsCall()) {
      TakeCall(record, message, context);
    } else if (PriorityOfReport(message.line) != Priority::Info) {
      Add("i", context.thread, now_);
      Name(message.text);
      output_.Text() += R"(,"s":"t"})";
    }
    lastLine_[context.thread] = now_;
    output_.Commit();
  }

  void Finish() override {
    TakeNeverReturned();
    for (const auto& [buffer, span] : spans_) {
      EndSpan(buffer, span);
    }
    output_.Text() += "\n]}\n";
    output_.Flush();
  }

 private:
  template <typename... Values>
  void Format(fmt::format_string<Values...> format, Values&&... values) {
    fmt::format_to(std::back_inserter(output_.Text()), format, std::forward<Values>(values)...);
  }

  // The front of an event, without its name and its end.
  void Add(std::string_view phase, std::uint32_t thread, std::int64_t time) {
    Format(",\n{{\"ph\":\"{}\",\"pid\":1,\"tid\":{},\"ts\":{}", phase, thread, time);
  }
  void Name(std::string_view name) {
    output_.Text() += ",\"name\":";
    AppendJsonText(output_.Text(), name);
  }

  void NameThread(std::uint32_t thread) { NameThread(thread, thread); }
  void NameThread(std::uint32_t thread, std::uint32_t track) {
    if (!named_.insert(track).second) {
      return;
    }
    Format(",\n{{\"ph\":\"M\",\"pid\":1,\"tid\":{},\"name\":\"thread_name\",\"args\":{{\"name\":",
           track);
    AppendJsonText(output_.Text(),
                   thread == 0 ? std::string("calls")
                               : fmt::format("T{} ({})", thread, model_.Threads()[thread - 1]));
    output_.Text() += "}}";
  }

  // The track of a call: its thread's, or the first one that has room if threads aren't known.
  std::uint32_t TrackOf(const EnteredCall& call, std::int64_t begin) {
    if (call.thread != 0) {
      return call.thread;
    }
    std::uint32_t track = 0;
    while (endOfTrack_[track] > begin + model_.Resolution() * kNanoseconds) {
      ++track;
    }
    NameThread(0, track);
    return track;
  }

  // The event's phase, its thread, and when it was.
  void AddTimed(const EnteredCall& call, std::uint64_t nanoseconds) {
    std::int64_t begin = call.time.value_or(*model_.FirstTime()) - *model_.FirstTime();
    begin *= kNanoseconds;
    const std::uint32_t track = TrackOf(call, begin);
    std::int64_t& end = endOfTrack_[track];
    begin = std::max(begin, end);
    end = begin + static_cast<std::int64_t>(nanoseconds);
    Format(",\n{{\"ph\":\"X\",\"pid\":1,\"tid\":{},\"ts\":{},\"dur\":{}", track,
           MicrosecondsText(static_cast<std::uint64_t>(begin)), MicrosecondsText(nanoseconds));
  }

  void AddUntimed(bool isWait, std::uint32_t thread) {
    const auto last = lastLine_.find(thread);
    if (isWait && last != lastLine_.end()) {
      Add("X", thread, last->second);
      Format(",\"dur\":{}", now_ - last->second);
    } else {
      Add("i", thread, now_);
      output_.Text() += R"(,"s":"t")";
    }
  }

  void TakeCall(const Record& record, const Message& message, const Context& context) {
    const Handles& handles = model_.AllHandles();
    const bool isWait = message.shape->function == "EventGetData";
    if (context.timing != nullptr) {
      AddTimed(context.timing->entered, context.timing->nanoseconds);
    } else {
      AddUntimed(isWait && !model_.Timings().Any(), context.thread);
    }
    Name(message.shape->function);
    Format(R"(,"cat":"{}","args":{{"line":{},"call":)", isWait ? "wait" : "call",
           record.place.line);
    std::string text;
    AppendCall(text, record, message, context, handles);
    AppendJsonText(output_.Text(), text);
    std::string storage;
    Format(R"(,"result":"{}"}}}})", ResultName(message.result, storage));
    if (!message.Failed()) {
      FollowBuffers(message, context);
    }
  }

  // Drawn up to where it's known that they didn't.
  void TakeNeverReturned() {
    const std::vector<EnteredCall>& calls = model_.Timings().NeverReturned();
    for (; neverReturned_ < calls.size(); ++neverReturned_) {
      const EnteredCall& call = calls[neverReturned_];
      NameThread(call.thread);
      const std::int64_t end = std::max(now_, model_.LastTime().value_or(0) - *model_.FirstTime());
      const std::int64_t begin =
          std::max(call.time.value_or(0) - *model_.FirstTime(),
                   call.thread == 0 ? 0 : endOfTrack_[call.thread] / kNanoseconds);
      AddTimed(call, static_cast<std::uint64_t>(std::max<std::int64_t>(end - begin, 0)) *
                         static_cast<std::uint64_t>(kNanoseconds));
      std::string text;
      AppendEntered(text, call, model_.AllHandles());
      Name(FunctionNames()[call.function]);
      Format(R"(,"cat":"never returned","args":{{"line":{},"call":)", call.place.line);
      AppendJsonText(output_.Text(), text + " never returned");
      output_.Text() += "}}";
    }
  }

  void FollowBuffers(const Message& message, const Context& context) {
    if (context.delivered != kNoHandle) {
      StartSpan(context.delivered, "held");
    } else if (message.shape->function == "DSQueueBuffer" && context.handles[1] != kNoHandle) {
      StartSpan(context.handles[1], "queued");
    } else if (EndsBuffers(message.shape->function)) {
      EndSpansOfClosedBuffers();
    }
    if (EndsBuffers(message.shape->function)) {
      for (const Stream& stream : model_.Streams()) {
        FollowDepth(stream);
      }
      return;
    }
    FollowDepthOf(context.delivered);
    for (std::size_t i = 0; i < message.shape->places.size(); ++i) {
      FollowDepthOf(context.handles[i]);
    }
  }

  // The depth of the stream that the handle is, or is a buffer of.
  void FollowDepthOf(HandleId id) {
    const Handles& handles = model_.AllHandles();
    if (id != kNoHandle && handles.At(id).kind == HandleKind::Buffer) {
      id = handles.At(id).parent;
    }
    if (id != kNoHandle && handles.At(id).stream < model_.Streams().size()) {
      FollowDepth(model_.Streams()[handles.At(id).stream]);
    }
  }

  void FollowDepth(const Stream& stream) {
    const std::optional<std::int64_t> depth = stream.CurrentDepth();
    const auto known = depths_.find(stream.Id());
    if (depth.has_value() && (known == depths_.end() || known->second != *depth)) {
      depths_[stream.Id()] = *depth;
      Add("C", 0, now_);
      Name("queue depth of " + model_.AllHandles().Name(stream.Id()));
      Format(R"(,"args":{{"buffers":{}}}}})", *depth);
    }
  }

  static bool EndsBuffers(std::string_view function) {
    return function == "DSFlushQueue" || function == "DSRevokeBuffer" || function == "GCCloseLib" ||
           function.ends_with("Close");
  }

  void EndSpansOfClosedBuffers() {
    for (auto span = spans_.begin(); span != spans_.end();) {
      const Handle& handle = model_.AllHandles().At(span->first);
      if (handle.isOpen && handle.state != BufferState::Unqueued) {
        ++span;
        continue;
      }
      EndSpan(span->first, span->second);
      span = spans_.erase(span);
    }
  }

  void AddSpan(std::string_view phase, HandleId buffer, std::string_view what) {
    const Handle& handle = model_.AllHandles().At(buffer);
    Add(phase, 0, now_);
    Name(what);
    Format(R"(,"cat":"{} buffers","id":"{}"}})",
           handle.parent == kNoHandle ? "" : model_.AllHandles().Name(handle.parent),
           model_.AllHandles().Name(buffer));
  }
  void StartSpan(HandleId buffer, std::string_view what) {
    const auto known = spans_.find(buffer);
    if (known != spans_.end()) {
      EndSpan(buffer, known->second);
    }
    spans_[buffer] = what;
    AddSpan("b", buffer, what);
  }
  void EndSpan(HandleId buffer, std::string_view what) { AddSpan("e", buffer, what); }

  static constexpr std::int64_t kNanoseconds = 1'000;  // of a microsecond

  const SessionModel& model_;
  Output& output_;
  std::int64_t now_ = 0;                              // in microseconds
  std::map<std::uint32_t, std::int64_t> lastLine_;    // by thread
  std::map<std::uint32_t, std::int64_t> endOfTrack_;  // of its latest call, in nanoseconds
  std::set<std::uint32_t> named_;
  std::uint32_t session_ = 1;
  std::size_t neverReturned_ = 0;  // how many are drawn
  std::map<HandleId, std::string_view> spans_;
  std::map<HandleId, std::int64_t> depths_;
};

}  // namespace

std::unique_ptr<Exporter> MakeChromeExporter(const SessionModel& model, Output& output) {
  return std::make_unique<ChromeExporter>(model, output);
}

}  // namespace vextrel::program
