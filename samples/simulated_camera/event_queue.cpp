#include "event_queue.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

#include "event_data.h"

namespace simcam {
namespace {

constexpr size_t kMostUnread = 256;

// Longer than this is for ever; it also keeps the clock arithmetic from overflowing.
constexpr uint64_t kLongestWait = uint64_t{365} * 24 * 60 * 60 * 1000;

}  // namespace

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
      listener_(event, Fate::kDiscarded);
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
  if (timeout > kLongestWait) {
    changed_.wait(lock, ready);
  } else {
    inTime = changed_.wait_for(lock, std::chrono::milliseconds(timeout), ready);
  }
  --waiting_;
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
      // The event is still there for another waiting thread.
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
    listener_(taken, Fate::kDelivered);
  }
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
      listener_(event, Fate::kDiscarded);
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

}  // namespace simcam
