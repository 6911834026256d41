// SPDX-License-Identifier: MIT
#include "model/session_model.h"

#include <algorithm>
#include <utility>

#include "model/message_values.h"

namespace vextrel::program {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = std::int64_t{24} * 60 * 60 * kSecond;
constexpr std::size_t kMostGaps = 10;

// Whether a producer may answer so to a handle of another kind.
bool RefusesArgument(GC_ERROR result) {
  return result == GC_ERR_INVALID_HANDLE || result == GC_ERR_INVALID_PARAMETER ||
         result == GC_ERR_ERROR;
}

// REQUIRES: it's a record that no line of the writer's makes.
bool IsOtherLine(const Record& record) {
  constexpr std::string_view own = "Vextrel";
  const std::string_view category = record.head.category;
  const bool isForeign =
      !category.empty() && category != own &&
      !(category.starts_with(own) && category.substr(own.size()).starts_with('.'));
  return !record.isCut && (isForeign || !ResemblesMessage(record.message));
}

}  // namespace

// What each function does to the session.
struct SessionModel::Handlers {
  struct Pair {
    std::string_view function;
    Handler handler;
  };
  static constexpr Pair kPairs[] = {
      {"GCInitLib", &SessionModel::OnInitLib},
      {"GCCloseLib", &SessionModel::OnCloseLib},
      {"TLOpen", &SessionModel::OnTLOpen},
      {"TLClose", &SessionModel::OnClose},
      {"TLGetInfo", &SessionModel::OnTLInfo},
      {"TLOpenInterface", &SessionModel::OnOpenInterface},
      {"IFClose", &SessionModel::OnClose},
      {"IFOpenDevice", &SessionModel::OnOpenDevice},
      {"DevClose", &SessionModel::OnClose},
      {"DevGetPort", &SessionModel::OnGetPort},
      {"DevOpenDataStream", &SessionModel::OnOpenDataStream},
      {"DSClose", &SessionModel::OnClose},
      {"DSAnnounceBuffer", &SessionModel::OnAnnounce},
      {"DSAllocAndAnnounceBuffer", &SessionModel::OnAnnounce},
      {"DSAnnounceCompositeBuffer", &SessionModel::OnAnnounce},
      {"DSRevokeBuffer", &SessionModel::OnRevoke},
      {"DSQueueBuffer", &SessionModel::OnQueue},
      {"DSFlushQueue", &SessionModel::OnFlush},
      {"DSStartAcquisition", &SessionModel::OnStart},
      {"DSStopAcquisition", &SessionModel::OnStop},
      {"DSGetBufferInfo", &SessionModel::OnBufferInfo},
      {"DSGetBufferInfoStacked", &SessionModel::OnStackedBufferInfo},
      {"GCRegisterEvent", &SessionModel::OnRegister},
      {"GCUnregisterEvent", &SessionModel::OnUnregister},
      {"EventGetData", &SessionModel::OnEventData},
      {"GCGetLastError", &SessionModel::OnLastError},
  };
};

SessionModel::SessionModel(const Layout& layout)
    : timeKind_(layout.Time()),
      showsThread_(layout.ShowsThread()),
      resolution_(layout.Resolution()),
      timings_(layout.ShowsThread()) {
  handlers_.resize(FunctionNames().size());
  for (const Handlers::Pair& each : Handlers::kPairs) {
    const std::size_t shape = FindCallShape(each.function);
    if (shape != kNoPlace) {
      handlers_[CallShapes()[shape].functionIndex] = each.handler;
    }
  }
  context_.hasTime = timeKind_ != TimeKind::None;
}

const Context& SessionModel::Take(const Record& record, const Message& message) {
  context_.failure = CallCounts::kNone;
  context_.delivered = kNoHandle;
  context_.isNewBufferEvent = false;
  context_.timing = nullptr;
  context_.isOtherLine = false;
  if (record.kind != RecordKind::Whole) {
    ++unreadable_;
    context_.thread = 0;
    context_.sinceLast = 0;
    return context_;
  }
  if (sessions_.empty()) {
    sessions_.emplace_back().begin = record.place;
  }
  context_.thread = showsThread_ ? ThreadOf(record.head.thread) : 0;
  if (context_.hasTime) {
    TakeTime(record, message.IsTiming());
  }
  switch (message.kind) {
    case MessageKind::Call:
      TakeCall(record, message);
      break;
    case MessageKind::Report:
      TakeReport(record, message);
      break;
    case MessageKind::Enters:
    case MessageKind::Leaves:
      TakeTiming(record, message);
      break;
    case MessageKind::Other:
      context_.isOtherLine = IsOtherLine(record);
      ++(context_.isOtherLine ? otherLines_ : unreadable_);
      break;
  }
  const bool isLoading = loading_.has_value() && message.kind == MessageKind::Report;
  context_.session = static_cast<std::uint32_t>(sessions_.size()) + (isLoading ? 1 : 0);
  return context_;
}

void SessionModel::TakeTime(const Record& record, bool isTiming) {
  std::int64_t time = record.head.time + dayOffset_;
  if (timeKind_ == TimeKind::TimeOfDay && hasShown_ && time < lastShown_ - kDay / 2) {
    dayOffset_ += kDay;
    time += kDay;
  }
  context_.time = time;
  context_.sinceLast = time - lastRecord_.value_or(time);
  if (!isTiming) {
    lastRecord_ = time;
  }
  // Neighboring lines step back now and then; a long step is another clock.
  now_ = !hasShown_ || time < now_ - kSecond ? time : std::max(now_, time);
  lastShown_ = time;
  hasShown_ = true;
  firstTime_ = firstTime_.value_or(time);
  lastTime_ = time;
}

std::uint32_t SessionModel::ThreadOf(std::string_view name) {
  if (name == lastThreadName_ && lastThread_ != 0) {
    return lastThread_;
  }
  auto found = threadNumbers_.find(name);
  if (found == threadNumbers_.end()) {
    threads_.emplace_back(name);
    threadStates_.emplace_back();
    found = threadNumbers_.emplace(std::string(name), static_cast<std::uint32_t>(threads_.size()))
                .first;
  }
  lastThreadName_ = name;
  lastThread_ = found->second;
  return lastThread_;
}

SessionModel::Thread& SessionModel::CurrentThread() {
  if (threadStates_.empty()) {
    threadStates_.emplace_back();
  }
  return threadStates_[context_.thread == 0 ? 0 : context_.thread - 1];
}

void SessionModel::TakeCall(const Record& record, const Message& message) {
  const std::size_t function = message.shape->functionIndex;
  const Handler handler = handlers_[function];
  context_.timing = TimingOf(message);
  if (handler == &SessionModel::OnInitLib) {
    EndLoading(message);
    if (!message.Failed()) {
      OnInitLib(record, message);
    }
  }
  sessionHasCalls_ = true;
  CurrentThread().session = sessions_.size();
  ResolveHandles(message);
  context_.failure = counts_.Add(function, message.result, record.place, context_.thread);
  if (observer_ != nullptr) {
    observer_->BeforeCall(record, message, context_);
  }
  NoteGap(record, message);
  if (runningStreams_ > 0) {
    ++streamingCalls_;
    streamingBytes_ += record.bytes;
  }
  if (handler == &SessionModel::OnEventData) {
    OnEventData(record, message);
  } else if (handler != nullptr && !message.Failed() && handler != &SessionModel::OnInitLib) {
    (this->*handler)(record, message);
  }
  if (context_.failure != CallCounts::kNone) {
    CurrentThread().lastFailure = context_.failure;
  }
}

void SessionModel::TakeTiming(const Record& record, const Message& message) {
  EnteredCall call;
  call.number = message.values[0].number;
  call.function = message.function;
  call.thread = context_.thread;
  call.session = static_cast<std::uint32_t>(sessions_.size());
  call.place = record.place;
  if (context_.hasTime) {
    call.time = context_.time;
  }
  if (runningStreams_ > 0) {
    streamingBytes_ += record.bytes;
  }
  if (message.kind == MessageKind::Leaves) {
    timings_.Leave(call, message.values[2].number);
    return;
  }
  if (message.shape->places.size() > 2) {
    const bool isPointer = message.shape->places[2].conversion == Conversion::Pointer;
    call.argumentKind = isPointer ? EnteredCall::Argument::Pointer : EnteredCall::Argument::Number;
    call.argument = message.values[2].number;
    const LineShape& line = CallShapes()[FindCallShape(message.values[1].text)];
    if (isPointer && !line.places.empty() && line.places[0].meaning == Meaning::Handle) {
      call.handle = handles_.Find(line.places[0].kind, call.argument);
    }
  }
  timings_.Enter(call);
}

const TimedCall* SessionModel::TimingOf(const Message& message) {
  if (!timings_.Any()) {
    return nullptr;
  }
  std::optional<std::uint64_t> argument;
  if (!message.shape->places.empty() && message.shape->places[0].meaning == Meaning::Handle) {
    argument = message.values[0].number;
  }
  return timings_.Claim(context_.thread, message.function, argument);
}

void SessionModel::ResolveHandles(const Message& message) {
  const std::vector<Place>& places = message.shape->places;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const Place& place = places[i];
    context_.handles[i] = kNoHandle;
    context_.misplaced[i] = kNoHandle;
    if (place.meaning != Meaning::Handle) {
      continue;
    }
    if (!place.isOutput) {
      ResolveInput(message, i);
    } else if (!message.Failed()) {
      // Opening functions replace it. The outputs of a call that failed hold nothing.
      context_.handles[i] = handles_.Find(place.kind, message.values[i].number);
    }
  }
}

void SessionModel::ResolveInput(const Message& message, std::size_t at) {
  const HandleKind kind = message.shape->places[at].kind;
  const std::uint64_t value = message.values[at].number;
  context_.handles[at] = handles_.Find(kind, value);
  if (context_.handles[at] != kNoHandle) {
    return;
  }
  if (kind != HandleKind::Any && RefusesArgument(message.result)) {
    context_.misplaced[at] = handles_.FindOther(kind, value);
  }
  if (context_.misplaced[at] == kNoHandle) {
    context_.handles[at] = handles_.FindOrAdd(kind, value);
  }
}

HandleId SessionModel::HandleIn(const Message& message, Label label) const {
  const std::size_t place = message.shape->Find(label);
  return place == kNoPlace ? kNoHandle : context_.handles[place];
}

void SessionModel::NoteGap(const Record& record, const Message& message) {
  if (!context_.hasTime) {
    return;
  }
  Thread& thread = CurrentThread();
  const std::int64_t gap = now_ - std::exchange(thread.lastTime, now_);
  if (!std::exchange(thread.hasTime, true) || gap <= 0 ||
      (gaps_.size() == kMostGaps && gap <= gaps_.back().duration)) {
    return;
  }
  const auto at = std::find_if(gaps_.begin(), gaps_.end(),
                               [gap](const Gap& each) { return each.duration < gap; });
  gaps_.insert(at, {gap, record.place, message.shape->functionIndex});
  if (gaps_.size() > kMostGaps) {
    gaps_.pop_back();
  }
}

void SessionModel::OnLastError(const Record& /*record*/, const Message& message) {
  Thread& thread = CurrentThread();
  const std::string_view text = TextIn(message, "ErrorText");
  // "NULL" is a call that asks for the text's size.
  if (thread.lastFailure != CallCounts::kNone && text != "NULL") {
    counts_.Explain(std::exchange(thread.lastFailure, CallCounts::kNone), text);
  }
}

}  // namespace vextrel::program
