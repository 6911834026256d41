// SPDX-License-Identifier: MIT
#include "events.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

namespace simulated_camera {
namespace {

constexpr size_t kLargestText = 256;

template <class T>
std::string BytesOf(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

std::string Terminated(std::string_view text) {
  return std::string(text.substr(0, kLargestText / 2 - 1)) + '\0';
}

template <class T>
T ValueAt(std::string_view data, size_t offset) {
  if (data.size() < offset + sizeof(T)) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "these event data are too short");
  }
  T value;
  std::memcpy(&value, data.data() + offset, sizeof(value));
  return value;
}

std::string_view TextAt(std::string_view data, size_t offset) {
  const size_t end = offset < data.size() ? data.find('\0', offset) : std::string_view::npos;
  if (end == std::string_view::npos) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "these event data hold no such text");
  }
  return data.substr(offset, end - offset);
}

InfoValue EventId(EVENT_TYPE type, std::string_view data) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return InfoValue::Pointer(ValueAt<void*>(data, 0));
    case EVENT_ERROR:
      return InfoValue::Int32(ValueAt<GC_ERROR>(data, 0));
    default:
      return InfoValue::Text(TextAt(data, 0));
  }
}

InfoValue EventValue(EVENT_TYPE type, std::string_view data) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return InfoValue::Pointer(ValueAt<void*>(data, sizeof(void*)));
    case EVENT_ERROR:
      return InfoValue::Text(TextAt(data, sizeof(GC_ERROR)));
    default:
      return InfoValue::Text(TextAt(data, TextAt(data, 0).size() + 1));
  }
}

constexpr size_t kMostUnread = 256;

// Anything longer counts as forever, lest the clock arithmetic overflow.
constexpr uint64_t kLongestWait = uint64_t{365} * 24 * 60 * 60 * 1000;

}  // namespace

Event NewBufferEvent(const std::shared_ptr<Object>& buffer, void* userPointer) {
  return {BytesOf(buffer->Handle()) + BytesOf(userPointer), sizeof(BUFFER_HANDLE), buffer};
}

Event ErrorEvent(GC_ERROR code, std::string_view text) {
  return {BytesOf(code) + Terminated(text), 0, nullptr};
}

Event FeatureEvent(std::string_view feature, std::string_view value) {
  return {Terminated(feature) + Terminated(value), 0, nullptr};
}

size_t LargestEvent(EVENT_TYPE type) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return 2 * sizeof(void*);
    case EVENT_ERROR:
      return sizeof(GC_ERROR) + kLargestText / 2;
    default:
      return kLargestText;
  }
}

InfoValue EventDataInfo(EVENT_TYPE type, std::string_view data, EVENT_DATA_INFO_CMD command) {
  switch (command) {
    case EVENT_DATA_ID:
      return EventId(type, data);
    case EVENT_DATA_VALUE:
      return EventValue(type, data);
    case EVENT_DATA_NUMID:
      NothingToTell(command);
    default:
      RefuseCommand(command);
  }
}

EventQueue::EventQueue(EVENT_TYPE type, Listener listener)
    : type_(type), listener_(std::move(listener)) {}

size_t EventQueue::Pending() const {
  const std::scoped_lock lock(mutex_);
  return events_.size();
}

InfoValue EventQueue::Info(EVENT_INFO_CMD command) const {
  const std::scoped_lock lock(mutex_);
  switch (command) {
    case EVENT_EVENT_TYPE:
      return InfoValue::Int32(type_);
    case EVENT_NUM_IN_QUEUE:
      return InfoValue::Size(events_.size());
    case EVENT_NUM_FIRED:
      return InfoValue::UInt64(fired_);
    case EVENT_SIZE_MAX:
    case EVENT_INFO_DATA_SIZE_MAX:
      return InfoValue::Size(LargestEvent(type_));
    default:
      RefuseCommand(command);
  }
}

void EventQueue::Push(Event event) {
  const std::scoped_lock lock(mutex_);
  if (closed_) {
    if (listener_) {
      listener_(event, Fate::Discarded);
    }
    return;
  }
  if (!listener_ && events_.size() == kMostUnread) {
    events_.pop_front();
  }
  events_.push_back(std::move(event));
  ++fired_;
  changed_.notify_one();
}

void EventQueue::Take(void* buffer, size_t* size, uint64_t timeout) {
  size_t& room = Required(size, "piSize");
  if (buffer == nullptr) {
    room = LargestEvent(type_);
    return;
  }
  std::unique_lock lock(mutex_);
  const auto ready = [this] { return closed_ || kills_ > 0 || !events_.empty(); };
  bool inTime = true;
  ++waiting_;
  if (timeout == 0) {
    inTime = ready();
  } else if (timeout > kLongestWait) {
    changed_.wait(lock, ready);
  } else {
    inTime = changed_.wait_for(lock, std::chrono::milliseconds(timeout), ready);
  }
  --waiting_;
  nobody_.notify_all();
  if (closed_) {
    throw Failure(GC_ERR_ABORT, "the event is no longer registered");
  }
  if (kills_ > 0) {
    --kills_;
    throw Failure(GC_ERR_ABORT, "the wait was killed");
  }
  if (!inTime) {
    throw Failure(GC_ERR_TIMEOUT, "no event in time");
  }
  const Event& oldest = events_.front();
  size_t length = oldest.data.size();
  if (room < length) {
    if (oldest.shortest == 0 || room < oldest.shortest) {
      room = length;
      // Another thread may have room for it.
      changed_.notify_one();
      throw Failure(GC_ERR_INVALID_BUFFER, "the buffer is too small for the event");
    }
    length = oldest.shortest;
  }
  std::memcpy(buffer, oldest.data.data(), length);
  room = length;
  const Event taken = std::move(events_.front());
  events_.pop_front();
  if (listener_) {
    listener_(taken, Fate::Delivered);
  }
}

void EventQueue::AwaitNobody() {
  std::unique_lock lock(mutex_);
  nobody_.wait(lock, [this] { return waiting_ == 0; });
}

void EventQueue::Discard() {
  const std::scoped_lock lock(mutex_);
  DiscardLocked();
}

void EventQueue::DiscardLocked() {
  std::deque<Event> discarded;
  discarded.swap(events_);
  if (listener_) {
    for (const Event& event : discarded) {
      listener_(event, Fate::Discarded);
    }
  }
}

void EventQueue::Kill() {
  const std::scoped_lock lock(mutex_);
  kills_ = std::min(kills_ + 1, std::max<size_t>(waiting_, 1));
  changed_.notify_all();
}

void EventQueue::Close() {
  const std::scoped_lock lock(mutex_);
  closed_ = true;
  DiscardLocked();
  changed_.notify_all();
}

}  // namespace simulated_camera
