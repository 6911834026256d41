#include "data_stream.h"

#include <algorithm>
#include <span>
#include <utility>

#include "event_data.h"

namespace simcam {
namespace {

constexpr ModuleKind kDataStreamKind{"TLDataStream", "StreamPort", "StreamID"};

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
                                        buffer.place = Buffer::Place::kUnqueued;
                                        if (fate == EventQueue::Fate::kDelivered) {
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

std::shared_ptr<Buffer> DataStream::Announce(void* base, size_t size, void* userPointer) {
  if (size == 0) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "a buffer needs a size");
  }
  const std::scoped_lock lock(mutex_);
  const auto isSame = [base](const auto& other) {
    return base != nullptr && other->Base() == base;
  };
  if (std::ranges::any_of(announced_, isSame)) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "this memory is announced already");
  }
  announced_.push_back(std::make_shared<Buffer>(Id() + "-Buffer" + std::to_string(buffersMade_),
                                                weak_from_this(), base, size, userPointer));
  ++buffersMade_;
  return announced_.back();
}

void DataStream::Revoke(const std::shared_ptr<Buffer>& buffer) {
  const std::scoped_lock lock(mutex_);
  RequireOwn(*buffer);
  if (buffer->place != Buffer::Place::kUnqueued) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the buffer is queued");
  }
  std::erase(announced_, buffer);
}

void DataStream::Queue(const std::shared_ptr<Buffer>& buffer) {
  const std::scoped_lock lock(mutex_);
  RequireOwn(*buffer);
  if (buffer->place != Buffer::Place::kUnqueued) {
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
        buffer->place = Buffer::Place::kUnqueued;
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
      return InfoValue::Size(0);
    case STREAM_INFO_NUM_ANNOUNCE_MIN:
      return InfoValue::Size(1);
    default:
      RefuseCommand(command);
  }
}

InfoValue DataStream::BufferInfo(const Buffer& buffer, BUFFER_INFO_CMD command) const {
  const std::scoped_lock lock(mutex_);
  RequireOwn(buffer);
  return buffer.Info(command);
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
  buffer->place = Buffer::Place::kInput;
}

void DataStream::ToOutput(const std::shared_ptr<Buffer>& buffer) {
  buffer->place = Buffer::Place::kOutput;
  output_->Push(NewBufferEvent(buffer, buffer->UserPointer()));
}

void DataStream::UnqueuedToInput() {
  for (const auto& buffer : announced_) {
    if (buffer->place == Buffer::Place::kUnqueued) {
      ToInput(buffer);
    }
  }
}

}  // namespace simcam
