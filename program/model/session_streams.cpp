// SPDX-License-Identifier: MIT
// What happens on data streams: buffers go round, and frames come.
#include <algorithm>
#include <charconv>
#include <utility>

#include "model/event_data.h"
#include "model/message_values.h"
#include "model/session_model.h"

namespace vextrel::program {

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
  const std::uint64_t value =
      message.Failed() ? 0 : BufferOfEventData(TextIn(message, "Buffer")).value_or(0);
  HandleId buffer = value != 0 ? handles_.Find(HandleKind::Buffer, value) : kNoHandle;
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
  if (value != 0 && buffer == kNoHandle) {
    buffer = handles_.FindOrAdd(HandleKind::Buffer, value);
    handles_.At(buffer).parent = dataStream;
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

}  // namespace vextrel::program
