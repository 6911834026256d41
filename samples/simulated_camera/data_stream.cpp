// SPDX-License-Identifier: MIT
#include "data_stream.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <span>
#include <thread>
#include <utility>

#include "events.h"

namespace simulated_camera {
namespace {

constexpr ModuleKind kDataStreamKind{"TLDataStream", "StreamPort", "StreamID"};

uint64_t Nanoseconds() {
  using std::chrono::duration_cast, std::chrono::nanoseconds, std::chrono::steady_clock;
  return static_cast<uint64_t>(
      duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace

DataStream::DataStream(const std::string& id, std::weak_ptr<Module> device,
                       std::shared_ptr<RemoteDevice> camera)
    : Module(kDataStreamKind, id, std::move(device)),
      camera_(std::move(camera)),
      output_(MakeOutputQueue()) {}

std::shared_ptr<EventQueue> DataStream::MakeOutputQueue() {
  return std::make_shared<EventQueue>(EVENT_NEW_BUFFER,
                                      [this](const Event& event, EventQueue::Fate fate) {
                                        auto& buffer = static_cast<Buffer&>(*event.subject);
                                        buffer.place = Buffer::Place::Unqueued;
                                        if (fate == EventQueue::Fate::Delivered) {
                                          ++delivered_;
                                        }
                                      });
}

std::shared_ptr<EventQueue> DataStream::QueueFor(EVENT_TYPE type) {
  if (type != EVENT_NEW_BUFFER) {
    return Module::QueueFor(type);
  }
  const std::scoped_lock lock(mutex_);
  return output_;
}

void DataStream::QueueClosed(EVENT_TYPE type) {
  if (type == EVENT_NEW_BUFFER) {
    const std::scoped_lock lock(mutex_);
    output_ = MakeOutputQueue();
  }
}

void DataStream::BeforeClose() {
  EndAcquisition(true);
  const std::scoped_lock lock(mutex_);
  output_->Close();
  input_.clear();
  announced_.clear();
}

std::shared_ptr<Buffer> DataStream::Announce(BufferLayout layout, void* userPointer) {
  const std::scoped_lock lock(mutex_);
  std::vector<const void*> taken;
  for (const auto& other : announced_) {
    for (const Segment& segment : other->Segments()) {
      taken.push_back(segment.base);
    }
  }
  for (const Segment& segment : layout.segments) {
    if (segment.size == 0) {
      throw Failure(GC_ERR_INVALID_PARAMETER, "a buffer needs a size");
    }
    if (segment.base != nullptr && std::ranges::find(taken, segment.base) != taken.end()) {
      throw Failure(GC_ERR_RESOURCE_IN_USE, "this memory is announced already");
    }
    taken.push_back(segment.base);
  }
  announced_.push_back(std::make_shared<Buffer>(Id() + "-Buffer" + std::to_string(buffersMade_),
                                                weak_from_this(), std::move(layout), userPointer));
  ++buffersMade_;
  return announced_.back();
}

void DataStream::Revoke(const std::shared_ptr<Buffer>& buffer) {
  const std::scoped_lock lock(mutex_);
  RequireOwn(*buffer);
  if (buffer->place != Buffer::Place::Unqueued) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the buffer is queued");
  }
  std::erase(announced_, buffer);
}

void DataStream::Queue(const std::shared_ptr<Buffer>& buffer) {
  const std::scoped_lock lock(mutex_);
  RequireOwn(*buffer);
  if (buffer->place != Buffer::Place::Unqueued) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the buffer is queued already");
  }
  ToInput(buffer);
}

void DataStream::Flush(ACQ_QUEUE_TYPE operation) {
  const std::scoped_lock lock(mutex_);
  switch (operation) {
    case ACQ_QUEUE_INPUT_TO_OUTPUT:
      for (const auto& buffer : std::exchange(input_, {})) {
        ToOutput(buffer);
      }
      break;
    case ACQ_QUEUE_OUTPUT_DISCARD:
      output_->Discard();
      break;
    case ACQ_QUEUE_ALL_TO_INPUT:
      output_->Discard();
      UnqueuedToInput();
      break;
    case ACQ_QUEUE_UNQUEUED_TO_INPUT:
      UnqueuedToInput();
      break;
    case ACQ_QUEUE_ALL_DISCARD:
      output_->Discard();
      for (const auto& buffer : std::exchange(input_, {})) {
        buffer->place = Buffer::Place::Unqueued;
      }
      break;
    default:
      throw Failure(GC_ERR_INVALID_PARAMETER, "no such queue operation");
  }
}

void DataStream::Start(ACQ_START_FLAGS flags, uint64_t count) {
  if (flags != ACQ_START_FLAGS_DEFAULT || count == 0) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "no such way to start");
  }
  {
    const std::scoped_lock lock(mutex_);
    if (grabbing_) {
      throw Failure(GC_ERR_RESOURCE_IN_USE, "the acquisition is running");
    }
  }
  pacer_.reset();
  {
    const std::scoped_lock lock(mutex_);
    frames_ = started_ = acquired_ = underruns_ = 0;
    delivered_ = 0;
    limit_ = count;
    grabbing_ = true;
    killed_ = false;
  }
  try {
    pacer_ = std::make_unique<Pacer>([this] { return camera_->FrameRate(); },
                                     [this] { return ProduceFrame(); });
  } catch (...) {
    const std::scoped_lock lock(mutex_);
    grabbing_ = false;
    throw;
  }
}

void DataStream::Stop(ACQ_STOP_FLAGS flags) {
  if (flags != ACQ_STOP_FLAGS_DEFAULT && flags != ACQ_STOP_FLAG_KILL) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "no such way to stop");
  }
  if (pacer_ == nullptr) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the acquisition is not running");
  }
  if (camera_->Has(Quirk::WaitsForWaits)) {
    QueueFor(EVENT_NEW_BUFFER)->AwaitNobody();
  }
  std::this_thread::sleep_for(camera_->StopTime());
  EndAcquisition(flags == ACQ_STOP_FLAG_KILL);
}

void DataStream::EndAcquisition(bool kill) {
  killed_ = kill;
  pacer_.reset();
  const std::scoped_lock lock(mutex_);
  grabbing_ = false;
}

InfoValue DataStream::Info(STREAM_INFO_CMD command) const {
  const std::scoped_lock lock(mutex_);
  switch (command) {
    case STREAM_INFO_ID:
      return InfoValue::Text(Id());
    case STREAM_INFO_NUM_DELIVERED:
      return InfoValue::UInt64(delivered_);
    case STREAM_INFO_NUM_UNDERRUN:
      return InfoValue::UInt64(underruns_);
    case STREAM_INFO_NUM_ANNOUNCED:
      return InfoValue::Size(announced_.size());
    case STREAM_INFO_NUM_QUEUED:
      return InfoValue::Size(input_.size());
    case STREAM_INFO_NUM_AWAIT_DELIVERY:
      return InfoValue::Size(output_->Pending());
    case STREAM_INFO_NUM_STARTED:
      return InfoValue::UInt64(started_);
    case STREAM_INFO_PAYLOAD_SIZE:
      return InfoValue::Size(camera_->CurrentGeometry().PayloadSize());
    case STREAM_INFO_IS_GRABBING:
      return InfoValue::Bool(grabbing_);
    case STREAM_INFO_DEFINES_PAYLOADSIZE:
      return InfoValue::Bool(true);
    case STREAM_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case STREAM_INFO_NUM_CHUNKS_MAX:
      return InfoValue::Size(kChunkCount);
    case STREAM_INFO_NUM_ANNOUNCE_MIN:
    case STREAM_INFO_BUF_ALIGNMENT:
      return InfoValue::Size(1);
    case STREAM_INFO_FLOW_TABLE:
    case STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR:
      NothingToTell(command);
    default:
      RefuseCommand(command);
  }
}

std::shared_ptr<Buffer> DataStream::BufferAt(uint32_t index) const {
  const std::scoped_lock lock(mutex_);
  return AtIndex(std::span<const std::shared_ptr<Buffer>>(announced_), index);
}

void DataStream::RequireOwn(const Buffer& buffer) const {
  const auto isSame = [&buffer](const auto& own) { return own.get() == &buffer; };
  if (std::ranges::none_of(announced_, isSame)) {
    throw Failure(GC_ERR_INVALID_HANDLE, "the buffer is not announced on this stream");
  }
}

void DataStream::ToInput(const std::shared_ptr<Buffer>& buffer) {
  input_.push_back(buffer);
  buffer->frame.isNew = false;
  buffer->place = Buffer::Place::Input;
}

void DataStream::ToOutput(const std::shared_ptr<Buffer>& buffer) {
  buffer->place = Buffer::Place::Output;
  output_->Push(NewBufferEvent(buffer, buffer->UserPointer()));
}

void DataStream::UnqueuedToInput() {
  for (const auto& buffer : announced_) {
    if (buffer->place == Buffer::Place::Unqueued) {
      ToInput(buffer);
    }
  }
}

bool DataStream::ProduceFrame() noexcept {
  try {
    const uint64_t number = NextNumber();
    camera_->ReachFrame(number);
    if (!camera_->FramesFlow()) {
      return true;
    }
    std::this_thread::sleep_for(camera_->StallBefore(number));
    if (LosesNextFrame()) {
      return true;
    }
    const auto buffer = NextBuffer();
    if (buffer == nullptr) {
      return true;
    }
    const size_t payload = buffer->frame.geometry.PayloadSize();
    const bool isWhole = !camera_->LeavesFrameIncomplete(buffer->frame.id);
    const size_t room = isWhole ? buffer->Size() : std::min(buffer->Size(), payload / 2);
    const size_t filled =
        PaintFrame({static_cast<std::byte*>(buffer->Base()), room}, buffer->frame, killed_);
    const bool more = FinishFrame(buffer, filled);
    if (buffer->Size() < payload) {
      Fire(EVENT_ERROR, ErrorEvent(GC_ERR_INVALID_BUFFER, "the buffer is smaller than the frame"));
    }
    return more;
  } catch (const std::exception&) {
    // This thread has nobody to report to; the consumer notices that the frames have stopped.
    const std::scoped_lock lock(mutex_);
    grabbing_ = false;
    return false;
  }
}

uint64_t DataStream::NextNumber() const {
  const std::scoped_lock lock(mutex_);
  return frames_;
}

bool DataStream::LosesNextFrame() {
  const std::scoped_lock lock(mutex_);
  const bool loses = camera_->LosesFrame(frames_);
  frames_ += loses ? 1 : 0;
  return loses;
}

std::shared_ptr<Buffer> DataStream::NextBuffer() {
  const std::scoped_lock lock(mutex_);
  const uint64_t id = frames_++;
  if (input_.empty()) {
    ++underruns_;
    return nullptr;
  }
  auto buffer = input_.front();
  input_.pop_front();
  buffer->place = Buffer::Place::Filling;
  buffer->frame = {};
  buffer->frame.geometry = camera_->CurrentGeometry();
  buffer->frame.id = id;
  buffer->frame.timestamp = Nanoseconds();
  ++started_;
  return buffer;
}

bool DataStream::FinishFrame(const std::shared_ptr<Buffer>& buffer, size_t filled) {
  const std::scoped_lock lock(mutex_);
  if (killed_) {
    input_.push_front(buffer);
    buffer->place = Buffer::Place::Input;
    return false;
  }
  FrameRecord& frame = buffer->frame;
  frame.present = frame.isNew = true;
  frame.incomplete = filled < frame.geometry.PayloadSize();
  frame.filled = filled;
  ToOutput(buffer);
  ++acquired_;
  grabbing_ = acquired_ < limit_;
  return grabbing_;
}

}  // namespace simulated_camera
