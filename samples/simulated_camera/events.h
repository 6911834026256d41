// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENTS_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENTS_H

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "handle_table.h"
#include "info_value.h"

namespace simulated_camera {

struct Event {
  std::string data;                 // What EventGetData delivers.
  size_t shortest = 0;              // A buffer too small for all gets this much; 0 for nothing.
  std::shared_ptr<Object> subject;  // May be null.
};

// What an event handle stands for: the pending events of one type from one source. Thread-safe.
class EventQueue : public Object {
 public:
  enum class Fate { Delivered, Discarded };
  // Called for every event that leaves the queue, with the queue locked.
  using Listener = std::function<void(const Event&, Fate)>;

  explicit EventQueue(EVENT_TYPE type, Listener listener = {});

  [[nodiscard]] EVENT_TYPE Type() const noexcept { return type_; }
  [[nodiscard]] size_t Pending() const;
  [[nodiscard]] InfoValue Info(EVENT_INFO_CMD command) const;

  // Drops the oldest event if the queue is full, unless it has a listener.
  void Push(Event event);

  // Waits up to `timeout` milliseconds (all bits set: forever) and moves the oldest event into
  // `buffer`. If `buffer` is null, only stores the largest event size in *size. Throws
  // GC_ERR_TIMEOUT; GC_ERR_ABORT if killed or unregistered; or GC_ERR_INVALID_BUFFER, in which case
  // the event stays and *size is the size it needs.
  void Take(void* buffer, size_t* size, uint64_t timeout);

  // Waits until no Take waits.
  void AwaitNobody();

  void Discard();

  // Aborts one waiting Take, or the next one if none waits.
  void Kill();

  // Discards the events and aborts every Take from now on.
  void Close();

 private:
  void DiscardLocked();

  const EVENT_TYPE type_;
  const Listener listener_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::condition_variable nobody_;
  std::deque<Event> events_;
  uint64_t fired_ = 0;
  size_t waiting_ = 0;
  size_t kills_ = 0;
  bool closed_ = false;
};

// The bytes of an event:
//
//   EVENT_NEW_BUFFER           buffer handle (8 bytes), user pointer (8 bytes)
//   EVENT_ERROR                error code (int32), text
//   EVENT_FEATURE_INVALIDATE   feature name, empty text
//   EVENT_FEATURE_CHANGE       feature name, value as text
//
// Texts are NUL-terminated.
[[nodiscard]] Event NewBufferEvent(const std::shared_ptr<Object>& buffer, void* userPointer);
[[nodiscard]] Event ErrorEvent(GC_ERROR code, std::string_view text);
[[nodiscard]] Event FeatureEvent(std::string_view feature, std::string_view value = {});

// Returns the size of the largest event of this type.
[[nodiscard]] size_t LargestEvent(EVENT_TYPE type);

// Extracts a value from the bytes of an event. Throws GC_ERR_INVALID_PARAMETER if they do not hold
// it, GC_ERR_NOT_AVAILABLE or GC_ERR_NOT_IMPLEMENTED if the command has no value.
[[nodiscard]] InfoValue EventDataInfo(EVENT_TYPE type, std::string_view data,
                                      EVENT_DATA_INFO_CMD command);

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENTS_H
