#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "module.h"
#include "remote_device.h"

namespace simcam {

// What the last frame left in a buffer.
struct FrameRecord {
  bool present = false;  // false until a first frame came
  bool isNew = false;    // until the buffer is queued again
  bool incomplete = false;
  size_t filled = 0;  // bytes
  Geometry geometry;
  uint64_t id = 0;
  uint64_t timestamp = 0;  // nanoseconds of a steady clock
};

class Buffer : public Module {
 public:
  enum class Place { kUnqueued, kInput, kFilling, kOutput };

  // Memory of the consumer's, which has to outlive the announcement, or our own for a null `base`.
  Buffer(const std::string& id, std::weak_ptr<Module> stream, void* base, size_t size,
         void* userPointer);

  [[nodiscard]] void* Base() const noexcept { return base_; }
  [[nodiscard]] size_t Size() const noexcept { return size_; }
  [[nodiscard]] void* UserPointer() const noexcept { return userPointer_; }
  [[nodiscard]] bool OwnsMemory() const noexcept { return memory_ != nullptr; }

  [[nodiscard]] InfoValue Info(BUFFER_INFO_CMD command) const;

  // Leaves kOutput whenever the output queue is locked; everything else about a buffer that
  // changes, `frame` included, is guarded by the stream's lock.
  std::atomic<Place> place = Place::kUnqueued;
  FrameRecord frame;

 private:
  [[nodiscard]] InfoValue FrameInfo(BUFFER_INFO_CMD command) const;

  const std::unique_ptr<std::byte[]> memory_;
  void* const base_;
  const size_t size_;
  void* const userPointer_;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H
