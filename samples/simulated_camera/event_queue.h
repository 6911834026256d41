#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_QUEUE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_QUEUE_H

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "handle_table.h"
#include "info_value.h"

namespace simcam {

struct Event {
  std::string data;                 // the bytes that EventGetData delivers
  size_t shortest = 0;              // a buffer of this size gets that much of them; 0: all or none
  std::shared_ptr<Object> subject;  // what the event tells of, if anything
};

// The events of one kind from one source, and those who wait for them. It is what an event handle
// stands for. Thread-safe.
class EventQueue : public Object {
 public:
  enum class Fate { kDelivered, kDiscarded };
  // Told of every event that leaves the queue, while the queue is locked.
  using Listener = std::function<void(const Event&, Fate)>;

  explicit EventQueue(EVENT_TYPE type, Listener listener = {});

  [[nodiscard]] EVENT_TYPE Type() const noexcept { return type_; }
  [[nodiscard]] size_t Pending() const;
  [[nodiscard]] InfoValue Info(EVENT_INFO_CMD command) const;

  // Without a listener only the latest events are kept.
  void Push(Event event);

  // Waits up to `timeout` milliseconds (all bits set: for ever) and copies the oldest event out.
  // A null buffer asks for the largest size alone. Throws GC_ERR_TIMEOUT, GC_ERR_ABORT (killed or
  // unregistered) or GC_ERR_INVALID_BUFFER (the event stays, *size is what it needs).
  void Take(void* buffer, size_t* size, uint64_t timeout);

  void Discard();

  // Ends one waiting Take, or the next one if nobody waits.
  void Kill();

  // Discards the events and ends every Take, now and later.
  void Close();

 private:
  void DiscardLocked();

  const EVENT_TYPE type_;
  const Listener listener_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Event> events_;
  uint64_t fired_ = 0;
  size_t waiting_ = 0;
  size_t kills_ = 0;
  bool closed_ = false;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_EVENT_QUEUE_H
