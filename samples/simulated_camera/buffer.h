// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "frame.h"
#include "module.h"

namespace simulated_camera {

// A piece of memory that belongs to a buffer.
struct Segment {
  void* base = nullptr;  // If null, the buffer allocates the memory.
  size_t size = 0;
};

// What is announced as one buffer. A composite buffer is announced as a list of segments.
struct BufferLayout {
  std::vector<Segment> segments;
  bool composite = false;
};

// A buffer announced on a data stream. Frames go to its first segment: the stream has one flow.
class Buffer : public Module {
 public:
  enum class Place { Unqueued, Input, Filling, Output };

  // REQUIRES: memory that is not allocated here outlives the announcement.
  Buffer(const std::string& id, std::weak_ptr<Module> stream, BufferLayout layout,
         void* userPointer);

  [[nodiscard]] const std::vector<Segment>& Segments() const noexcept { return layout_.segments; }
  [[nodiscard]] void* Base() const noexcept { return layout_.segments.front().base; }
  [[nodiscard]] size_t Size() const noexcept { return layout_.segments.front().size; }
  [[nodiscard]] void* UserPointer() const noexcept { return userPointer_; }
  // Returns the consumer's memory, or null if there is no single piece of it.
  [[nodiscard]] void* ConsumersMemory() const noexcept;

  [[nodiscard]] InfoValue Info(BUFFER_INFO_CMD command) const;
  // These throw GC_ERR_NO_DATA before the first frame, GC_ERR_INVALID_INDEX.
  [[nodiscard]] uint32_t PartCount() const;
  [[nodiscard]] InfoValue InfoOfPart(uint32_t part, BUFFER_PART_INFO_CMD command) const;
  [[nodiscard]] std::vector<SINGLE_CHUNK_DATA> Chunks() const;
  // Throws GC_ERR_INVALID_INDEX.
  [[nodiscard]] InfoValue InfoOfSegment(uint32_t segment, SEGMENT_INFO_CMD command) const;

  // Guarded by the stream's lock, as is `frame`, except that a buffer leaves Output under the lock
  // of the output queue.
  std::atomic<Place> place = Place::Unqueued;
  FrameRecord frame;

 private:
  [[nodiscard]] InfoValue FrameInfo(BUFFER_INFO_CMD command) const;
  void RequireFrame() const;

  std::unique_ptr<std::byte[]> memory_;
  BufferLayout layout_;
  void* const userPointer_;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_BUFFER_H
