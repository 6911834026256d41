// SPDX-License-Identifier: MIT
#include "model/session_model.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "calllog/log_text.h"
#include "model/event_data.h"

namespace vextrel::program {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = std::int64_t{24} * 60 * 60 * kSecond;
constexpr std::size_t kMostGaps = 10;

template <FormatText text>
std::size_t IndexOfReport(KnownFormat<text> /*format*/) {
  return static_cast<std::size_t>(
      std::find(kReports.begin(), kReports.end(), KnownFormat<text>::Text()) - kReports.begin());
}

struct KnownReports {
  std::size_t loadingConfigFile = IndexOfReport(report::kLoadingConfigFile);
  std::size_t loadingProducer = IndexOfReport(report::kLoadingProducer);
  std::size_t producerVersion = IndexOfReport(report::kProducerFileVersion);
  std::size_t notExported = IndexOfReport(report::kNotExported);
  std::size_t newerNotExported = IndexOfReport(report::kNewerNotExported);
  std::size_t eventsLeft[5] = {
      IndexOfReport(report::kEventLeftOnTransportLayer),
      IndexOfReport(report::kEventLeftOnInterface), IndexOfReport(report::kEventLeftOnDevice),
      IndexOfReport(report::kEventLeftOnDataStream), IndexOfReport(report::kEventLeftOnBuffer)};
};

const KnownReports& Known() {
  static const KnownReports known;
  return known;
}

std::string_view TextIn(const Message& message, std::string_view label) {
  const std::size_t place = message.shape->Find(label);
  return place == kNoPlace ? std::string_view() : message.values[place].text;
}

// A pointer that stands as an input, or nothing.
std::optional<std::uint64_t> PointerIn(const Message& message, std::string_view label) {
  const std::size_t place = message.shape->Find(label);
  std::uint64_t value = 0;
  const std::string_view text = place == kNoPlace ? "" : message.values[place].text;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  return text.empty() || error != std::errc() ? std::nullopt : std::optional(value);
}

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

Priority PriorityOfReport(std::size_t report) noexcept {
  const KnownReports& known = Known();
  if (report == known.loadingConfigFile || report == known.loadingProducer ||
      report == known.producerVersion || report == known.newerNotExported) {
    return Priority::Info;
  }
  const bool isWarning = std::find(std::begin(known.eventsLeft), std::end(known.eventsLeft),
                                   report) != std::end(known.eventsLeft);
  return isWarning ? Priority::Warn : Priority::Error;
}

bool IsNotExported(std::size_t report) noexcept {
  return report == Known().notExported;
}

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

void SessionModel::StartSession(const LogPlace& begin) {
  if (observer_ != nullptr) {
    observer_->BeforeSessionEnds();
  }
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
  handles_.EndAll();
  timings_.Abandon();
  sessions_.emplace_back().begin = begin;
  sessionHasCalls_ = false;
}

void SessionModel::TakeReport(const Record& record, const Message& message) {
  const KnownReports& known = Known();
  if (message.line == known.notExported) {
    ++notExported_;
    return;
  }
  const Priority priority = PriorityOfReport(message.line);
  reports_ += priority == Priority::Info ? 0 : 1;
  if (message.line == known.loadingProducer || message.line == known.loadingConfigFile) {
    TakeLoading(record, message);
  } else if (message.line == known.producerVersion) {
    (loading_.has_value() ? *loading_ : sessions_.back()).producerVersion = message.values[0].text;
  }
  context_.handles.fill(kNoHandle);
  context_.misplaced.fill(kNoHandle);
  for (std::size_t i = 0; i < message.shape->places.size(); ++i) {
    if (message.shape->places[i].meaning == Meaning::Handle) {
      context_.handles[i] = handles_.Find(HandleKind::Any, message.values[i].number);
    }
  }
}

// Another process begins like this, and so does a second GCInitLib, which is refused then: the
// thread tells them apart mostly, and otherwise the call's result.
void SessionModel::TakeLoading(const Record& record, const Message& message) {
  const bool isKnownThread = context_.thread != 0 && CurrentThread().session == sessions_.size();
  if (sessionHasCalls_ && !loading_.has_value()) {
    if (isKnownThread && !sessions_.back().wasClosed) {
      loading_.emplace().begin = record.place;
    } else {
      StartSession(record.place);
    }
  }
  if (message.line == Known().loadingProducer) {
    (loading_.has_value() ? *loading_ : sessions_.back()).producer = message.values[0].text;
  }
}

void SessionModel::EndLoading(const Message& initialization) {
  if (loading_.has_value() && initialization.result != GC_ERR_RESOURCE_IN_USE) {
    StartSession(loading_->begin);
    sessions_.back() = *loading_;
  }
  loading_.reset();
}

void SessionModel::TakeCall(const Record& record, const Message& message) {
  const std::size_t function = message.shape->functionIndex;
  const Handler handler = handlers_[function];
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
  context_.timing = TimingOf(message);
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

HandleId SessionModel::HandleIn(const Message& message, std::string_view label) const {
  const std::size_t place = message.shape->Find(label);
  return place == kNoPlace ? kNoHandle : context_.handles[place];
}

void SessionModel::NoteOpening(HandleId id, const Record& record) {
  Handle& handle = handles_.At(id);
  handle.openedAt = record.place;
  handle.openedBy = context_.thread;
  handle.session = static_cast<std::uint32_t>(sessions_.size());
}

void SessionModel::NoteClosing(HandleId id, const Record& record) {
  Handle& handle = handles_.At(id);
  handle.closedAt = record.place;
  handle.closedBy = context_.thread;
}

void SessionModel::EndHandle(HandleId id) {
  handles_.End(id);
  for (Stream& stream : streams_) {
    if (stream.IsRunning() && !handles_.At(stream.Id()).isOpen) {
      stream.Stop(now_);
      --runningStreams_;
    }
  }
}

void SessionModel::OnInitLib(const Record& record, const Message& /*message*/) {
  if (sessions_.back().wasInitialized) {
    StartSession(record.place);
  }
  sessions_.back().wasInitialized = true;
}

void SessionModel::OnCloseLib(const Record& /*record*/, const Message& /*message*/) {
  sessions_.back().wasClosed = true;
  handles_.EndAll();
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
}

void SessionModel::OnOpen(const Record& record, const Message& message, HandleKind kind,
                          std::string_view parentLabel, std::string_view idLabel,
                          std::string_view label) {
  const std::size_t place = message.shape->Find(label);
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  const HandleId id =
      handles_.Open(kind, message.values[place].number, HandleIn(message, parentLabel));
  handles_.At(id).id = TextIn(message, idLabel);
  context_.handles[place] = id;
  NoteOpening(id, record);
}

void SessionModel::OnTLOpen(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::TransportLayer, "", "", "pHandle");
}

void SessionModel::OnOpenInterface(const Record& record, const Message& message) {
  // The label "hInterface" is the output's here.
  OnOpen(record, message, HandleKind::Interface, "hTL", "sInterfaceName", "hInterface");
}

void SessionModel::OnOpenDevice(const Record& record, const Message& message) {
  const std::size_t place = message.shape->Find("hDev");
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  const HandleId id = handles_.OpenHalf(static_cast<std::uint32_t>(message.values[place].number),
                                        HandleIn(message, "hInterface"));
  handles_.At(id).id = TextIn(message, "sDevName");
  context_.handles[place] = id;
  NoteOpening(id, record);
}

void SessionModel::OnGetPort(const Record& record, const Message& message) {
  const std::size_t place = message.shape->Find("pPort");
  const HandleId device = HandleIn(message, "hDev");
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  // Asking again opens nothing.
  const HandleId known = handles_.Find(HandleKind::Port, message.values[place].number);
  if (known != kNoHandle && handles_.At(known).isOpen && handles_.At(known).parent == device) {
    context_.handles[place] = known;
    return;
  }
  OnOpen(record, message, HandleKind::Port, "hDev", "", "pPort");
}

void SessionModel::OnOpenDataStream(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::DataStream, "hDev", "pID", "hDS");
  const HandleId id = HandleIn(message, "hDS");
  if (id != kNoHandle) {
    static_cast<void>(StreamOf(id));
  }
}

void SessionModel::OnAnnounce(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::Buffer, "hDS", "", "hBuffer");
  const HandleId buffer = HandleIn(message, "hBuffer");
  const HandleId dataStream = HandleIn(message, "hDS");
  if (buffer != kNoHandle) {
    handles_.At(buffer).memory = PointerIn(message, "pBuffer");
    handles_.At(buffer).userPointer = PointerIn(message, "pPrivate");
  }
  if (buffer != kNoHandle && dataStream != kNoHandle) {
    handles_.At(buffer).state = BufferState::Unqueued;
    StreamOf(dataStream).Announce();
  }
}

void SessionModel::OnRegister(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::Event, "hEventSrc", "iEvent", "hE");
  const HandleId event = HandleIn(message, "hE");
  if (event != kNoHandle) {
    std::string& type = handles_.At(event).id;
    if (type.starts_with("EVENT_")) {
      type.erase(0, std::string_view("EVENT_").size());
    }
  }
}

void SessionModel::OnUnregister(const Record& record, const Message& message) {
  const HandleId source = HandleIn(message, "hEventSrc");
  std::string_view type = TextIn(message, "iEvent");
  if (type.starts_with("EVENT_")) {
    type.remove_prefix(std::string_view("EVENT_").size());
  }
  for (const HandleId id : handles_.OpenOnes()) {
    const Handle& handle = handles_.At(id);
    if (handle.kind == HandleKind::Event && handle.parent == source && handle.id == type) {
      NoteClosing(id, record);
      EndHandle(id);
      return;
    }
  }
}

void SessionModel::OnClose(const Record& record, const Message& /*message*/) {
  const HandleId id = context_.handles[0];
  if (id != kNoHandle) {
    NoteClosing(id, record);
    EndHandle(id);
  }
}

Stream& SessionModel::StreamOf(HandleId dataStream) {
  Handle& handle = handles_.At(dataStream);
  if (handle.stream == SIZE_MAX) {
    handle.stream = streams_.size();
    streams_.emplace_back(dataStream, handle.openedAt.has_value());
  }
  return streams_[handle.stream];
}

const Stream* SessionModel::FindStream(HandleId id) const {
  const std::size_t stream = id == kNoHandle ? SIZE_MAX : handles_.At(id).stream;
  return stream == SIZE_MAX ? nullptr : &streams_[stream];
}

Stream* SessionModel::StreamOfBuffer(HandleId buffer) {
  const HandleId parent = handles_.At(buffer).parent;
  return parent == kNoHandle ? nullptr : &StreamOf(parent);
}

void SessionModel::SetState(HandleId buffer, BufferState state) {
  Handle& handle = handles_.At(buffer);
  Stream* stream = StreamOfBuffer(buffer);
  if (stream != nullptr) {
    if (handle.state != BufferState::Queued && state == BufferState::Queued) {
      stream->ChangeDepth(now_, 1);
    } else if (handle.state == BufferState::Queued && state != BufferState::Queued) {
      stream->ChangeDepth(now_, -1);
    }
  }
  handle.state = state;
}

void SessionModel::OnRevoke(const Record& record, const Message& message) {
  const HandleId buffer = HandleIn(message, "hBuffer");
  if (buffer != kNoHandle) {
    SetState(buffer, BufferState::Unqueued);
    NoteClosing(buffer, record);
    EndHandle(buffer);
  }
}

void SessionModel::OnQueue(const Record& /*record*/, const Message& message) {
  const HandleId buffer = HandleIn(message, "hB");
  const HandleId dataStream = HandleIn(message, "hDS");
  if (buffer == kNoHandle || dataStream == kNoHandle) {
    return;
  }
  Handle& handle = handles_.At(buffer);
  if (handle.parent == kNoHandle) {
    handle.parent = dataStream;
  }
  if (handle.state == BufferState::Held && context_.hasTime) {
    StreamOf(dataStream).Hold(std::max<std::int64_t>(now_ - handle.deliveredAt, 0));
  }
  SetState(buffer, BufferState::Queued);
}

std::int64_t SessionModel::CountQueued(HandleId dataStream) const {
  const std::vector<HandleId>& open = handles_.OpenOnes();
  return std::count_if(open.begin(), open.end(), [&](HandleId id) {
    const Handle& handle = handles_.At(id);
    return handle.kind == HandleKind::Buffer && handle.parent == dataStream &&
           handle.state == BufferState::Queued;
  });
}

void SessionModel::OnFlush(const Record& /*record*/, const Message& message) {
  const HandleId dataStream = HandleIn(message, "hDS");
  if (dataStream == kNoHandle) {
    return;
  }
  Stream& stream = StreamOf(dataStream);
  const std::string_view type = TextIn(message, "QueueType");
  const bool discardsAll = type == "ACQ_QUEUE_ALL_DISCARD";
  const bool queuesAll = type == "ACQ_QUEUE_ALL_TO_INPUT";
  const bool queuesUnqueued = type == "ACQ_QUEUE_UNQUEUED_TO_INPUT";
  if (!discardsAll && !queuesAll && !queuesUnqueued) {
    // Which buffers this discards can't be told from outside.
    if (type != "ACQ_QUEUE_INPUT_TO_OUTPUT") {
      stream.LoseDepth(now_);
    }
    return;
  }
  for (const HandleId id : handles_.OpenOnes()) {
    Handle& handle = handles_.At(id);
    if (handle.kind != HandleKind::Buffer || handle.parent != dataStream) {
      continue;
    }
    if (discardsAll) {
      handle.state = BufferState::Unqueued;
    } else if (queuesAll || handle.state == BufferState::Unqueued) {
      handle.state = BufferState::Queued;
    }
  }
  stream.SetDepth(now_, CountQueued(dataStream));
}

void SessionModel::OnStart(const Record& record, const Message& message) {
  const HandleId dataStream = HandleIn(message, "hDS");
  if (dataStream != kNoHandle) {
    Stream& stream = StreamOf(dataStream);
    runningStreams_ += stream.IsRunning() ? 0 : 1;
    stream.Start(now_, record.place);
  }
}

void SessionModel::OnStop(const Record& /*record*/, const Message& message) {
  const HandleId dataStream = HandleIn(message, "hDS");
  if (dataStream != kNoHandle) {
    Stream& stream = StreamOf(dataStream);
    runningStreams_ -= stream.IsRunning() ? 1 : 0;
    stream.Stop(now_);
  }
}

void SessionModel::OnEventData(const Record& record, const Message& message) {
  const HandleId event = HandleIn(message, "hEvent");
  if (event == kNoHandle) {
    return;
  }
  const Handle& source = handles_.At(event);
  const std::optional<std::uint64_t> value =
      message.Failed() ? std::nullopt : BufferOfEventData(TextIn(message, "Buffer"));
  HandleId buffer = value.has_value() ? handles_.Find(HandleKind::Buffer, *value) : kNoHandle;
  HandleId dataStream = source.parent;
  if (source.id.empty() && buffer != kNoHandle) {
    // Registered before the log begins; what it brings tells its kind.
    dataStream = handles_.At(buffer).parent;
    handles_.At(event).id = "NEW_BUFFER";
    handles_.At(event).parent = dataStream;
  }
  if (source.id != "NEW_BUFFER" || dataStream == kNoHandle ||
      handles_.At(dataStream).kind != HandleKind::DataStream) {
    return;
  }
  context_.isNewBufferEvent = true;
  if (message.Failed()) {
    if (message.result == GC_ERR_TIMEOUT) {
      StreamOf(dataStream).TimeOut();
    }
    return;
  }
  if (value.has_value() && buffer == kNoHandle) {
    buffer = handles_.FindOrAdd(HandleKind::Buffer, *value);
    if (buffer != kNoHandle) {
      handles_.At(buffer).parent = dataStream;
    }
  }
  context_.delivered = buffer;
  Stream& stream = StreamOf(dataStream);
  if (buffer == kNoHandle) {
    stream.Deliver(now_, record.place, false);
    stream.LoseDepth(now_);
    return;
  }
  Handle& handle = handles_.At(buffer);
  stream.Deliver(now_, record.place, handle.state == BufferState::Queued);
  handle.state = BufferState::Held;
  handle.deliveredAt = now_;
  handle.frameIdTaken = false;
  handle.incompleteTaken = false;
}

void SessionModel::OnBufferInfo(const Record& record, const Message& message) {
  SeeBufferInfo(record, message, TextIn(message, "iCommand"), TextIn(message, "Buffer"));
}

void SessionModel::OnStackedBufferInfo(const Record& record, const Message& message) {
  if (ReadEntries(TextIn(message, "Infos"), entries_)) {
    for (const Entry& entry : entries_.shown) {
      SeeBufferInfo(record, message, entry.Find("iCmd"), entry.Find("Buffer"));
    }
  }
}

void SessionModel::SeeBufferInfo(const Record& record, const Message& message,
                                 std::string_view command, std::string_view text) {
  const bool isFrameId = command == "BUFFER_INFO_FRAMEID";
  if (!isFrameId && command != "BUFFER_INFO_IS_INCOMPLETE") {
    return;
  }
  const HandleId buffer = HandleIn(message, "hBuffer");
  const HandleId dataStream = HandleIn(message, "hDS");
  // One that knows no more than 32 bits shows no more.
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (buffer == kNoHandle || dataStream == kNoHandle || error != std::errc() ||
      end != text.data() + text.size()) {
    return;
  }
  Handle& handle = handles_.At(buffer);
  bool& taken = isFrameId ? handle.frameIdTaken : handle.incompleteTaken;
  if (handle.state != BufferState::Held || std::exchange(taken, true)) {
    return;
  }
  if (isFrameId) {
    StreamOf(dataStream).SeeFrameId(static_cast<std::uint32_t>(number), record.place);
  } else {
    StreamOf(dataStream).SeeIncomplete(number != 0);
  }
}

void SessionModel::OnTLInfo(const Record& /*record*/, const Message& message) {
  const HandleId transportLayer = HandleIn(message, "hTL");
  const std::string_view text = TextIn(message, "Buffer");
  if (transportLayer != kNoHandle && TextIn(message, "iInfoCmd") == "TL_INFO_ID" &&
      text.size() >= 2 && text.front() == '\'') {
    handles_.At(transportLayer).id = text.substr(1, text.size() - 2);
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

void SessionModel::Finish() {
  if (loading_.has_value()) {
    StartSession(loading_->begin);
    sessions_.back() = *loading_;
  }
  if (observer_ != nullptr) {
    observer_->BeforeSessionEnds();
  }
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
  timings_.Abandon();
}

}  // namespace vextrel::program
