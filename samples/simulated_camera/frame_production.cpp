// The part of DataStream that runs on the pacer's thread.
#include <chrono>
#include <exception>

#include "data_stream.h"
#include "event_data.h"
#include "test_picture.h"

namespace simcam {
namespace {

uint64_t Nanoseconds() {
  using std::chrono::duration_cast, std::chrono::nanoseconds, std::chrono::steady_clock;
  return static_cast<uint64_t>(
      duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace

bool DataStream::ProduceFrame() noexcept {
  try {
    if (!camera_->FramesFlow()) {
      return true;
    }
    const auto buffer = NextBuffer();
    if (buffer == nullptr) {
      return true;
    }
    const Geometry geometry = camera_->CurrentGeometry();
    const size_t filled =
        PaintTestPicture({static_cast<std::byte*>(buffer->Base()), buffer->Size()}, geometry,
                         buffer->frame.id, killed_);
    const bool more = FinishFrame(buffer, geometry, filled);
    if (buffer->Size() < geometry.PayloadSize()) {
      Fire(EVENT_ERROR, ErrorEvent(GC_ERR_INVALID_BUFFER, "the buffer is smaller than the frame"));
    }
    return more;
  } catch (const std::exception&) {
    // There is nobody to tell on this thread; the consumer sees that no frames come any more.
    const std::scoped_lock lock(mutex_);
    grabbing_ = false;
    return false;
  }
}

// The buffer for the frame that is due, null if none is queued.
std::shared_ptr<Buffer> DataStream::NextBuffer() {
  const std::scoped_lock lock(mutex_);
  const uint64_t id = frames_++;
  if (input_.empty()) {
    ++underruns_;
    return nullptr;
  }
  auto buffer = input_.front();
  input_.pop_front();
  buffer->place = Buffer::Place::kFilling;
  buffer->frame = {};
  buffer->frame.id = id;
  ++started_;
  return buffer;
}

bool DataStream::FinishFrame(const std::shared_ptr<Buffer>& buffer, const Geometry& geometry,
                             size_t filled) {
  const std::scoped_lock lock(mutex_);
  if (killed_) {
    input_.push_front(buffer);
    buffer->place = Buffer::Place::kInput;
    return false;
  }
  FrameRecord& frame = buffer->frame;
  frame.present = frame.isNew = true;
  frame.incomplete = filled < geometry.PayloadSize();
  frame.filled = filled;
  frame.geometry = geometry;
  frame.timestamp = Nanoseconds();
  ToOutput(buffer);
  ++acquired_;
  grabbing_ = acquired_ < limit_;
  return grabbing_;
}

}  // namespace simcam
