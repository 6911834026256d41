// SPDX-License-Identifier: MIT
#include "buffer.h"

#include <algorithm>
#include <span>
#include <utility>

namespace simulated_camera {
namespace {

constexpr ModuleKind kKind{"TLBuffer", "BufferPort", "BufferID"};

// GenTL values that the headers have no names for.
constexpr int32_t kLittleEndianPixels = 1;
constexpr uint64_t kChunkLayoutId = 1;

}  // namespace

Buffer::Buffer(const std::string& id, std::weak_ptr<Module> stream, BufferLayout layout,
               void* userPointer)
    : Module(kKind, id, std::move(stream)), layout_(std::move(layout)), userPointer_(userPointer) {
  Segment& first = layout_.segments.front();
  if (first.base == nullptr) {
    memory_ = std::make_unique<std::byte[]>(first.size);
    first.base = memory_.get();
  }
}

void* Buffer::ConsumersMemory() const noexcept {
  return memory_ != nullptr || layout_.composite ? nullptr : Base();
}

InfoValue Buffer::Info(BUFFER_INFO_CMD command) const {
  switch (command) {
    case BUFFER_INFO_BASE:
    case BUFFER_INFO_SIZE:
      if (layout_.composite) {
        throw Failure(GC_ERR_AMBIGUOUS, "each segment has its own");
      }
      return command == BUFFER_INFO_BASE ? InfoValue::Pointer(Base()) : InfoValue::Size(Size());
    case BUFFER_INFO_USER_PTR:
      return InfoValue::Pointer(userPointer_);
    case BUFFER_INFO_NEW_DATA:
      return InfoValue::Bool(frame.isNew);
    case BUFFER_INFO_IS_QUEUED:
      return InfoValue::Bool(place != Place::Unqueued);
    case BUFFER_INFO_IS_ACQUIRING:
      return InfoValue::Bool(place == Place::Filling);
    case BUFFER_INFO_IS_INCOMPLETE:
      return InfoValue::Bool(frame.incomplete);
    case BUFFER_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case BUFFER_INFO_SIZE_FILLED:
      return InfoValue::Size(frame.filled);
    case BUFFER_INFO_IMAGEPRESENT:
      return InfoValue::Bool(frame.present);
    case BUFFER_INFO_CONTAINS_CHUNKDATA:
      return InfoValue::Bool(kExtended && frame.present);
    case BUFFER_INFO_DATA_LARGER_THAN_BUFFER:
      return InfoValue::Bool(frame.present && frame.geometry.PayloadSize() > Size());
    case BUFFER_INFO_IS_COMPOSITE:
      return InfoValue::Bool(layout_.composite);
    default:
      return FrameInfo(command);
  }
}

// Describes the image if the frame has several parts.
InfoValue Buffer::FrameInfo(BUFFER_INFO_CMD command) const {
  if (command < BUFFER_INFO_BASE || command > BUFFER_INFO_IS_COMPOSITE) {
    RefuseCommand(command);
  }
  if (!frame.present) {
    NothingToTell(command);
  }
  switch (command) {
    case BUFFER_INFO_TIMESTAMP:
    case BUFFER_INFO_TIMESTAMP_NS:
      return InfoValue::UInt64(frame.timestamp);
    case BUFFER_INFO_WIDTH:
      return InfoValue::Size(frame.geometry.width);
    case BUFFER_INFO_HEIGHT:
      return InfoValue::Size(frame.geometry.height);
    case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
      return InfoValue::Size(std::min(frame.filled, frame.geometry.PartSize()) /
                             frame.geometry.width);
    case BUFFER_INFO_XOFFSET:
    case BUFFER_INFO_YOFFSET:
    case BUFFER_INFO_XPADDING:
    case BUFFER_INFO_YPADDING:
    case BUFFER_INFO_IMAGEOFFSET:
      return InfoValue::Size(0);
    case BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE:
      return InfoValue::Size(frame.filled - std::min(frame.filled, frame.geometry.ChunkOffset()));
    case BUFFER_INFO_CHUNKLAYOUTID:
      if (!kExtended) {
        NothingToTell(command);
      }
      return InfoValue::UInt64(kChunkLayoutId);
    case BUFFER_INFO_FRAMEID:
      return InfoValue::UInt64(frame.id);
    case BUFFER_INFO_PAYLOADTYPE:
      return InfoValue::Size(kExtended ? PAYLOAD_TYPE_MULTI_PART : PAYLOAD_TYPE_IMAGE);
    case BUFFER_INFO_PIXELFORMAT:
      return InfoValue::UInt64(kMono8);
    case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
      return InfoValue::UInt64(kPixelFormatNamespacePfnc32);
    case BUFFER_INFO_PIXEL_ENDIANNESS:
      return InfoValue::Int32(kLittleEndianPixels);
    case BUFFER_INFO_DATA_SIZE:
      return InfoValue::Size(frame.geometry.PayloadSize());
    default:
      NothingToTell(command);
  }
}

void Buffer::RequireFrame() const {
  if (!frame.present) {
    throw Failure(GC_ERR_NO_DATA, "the buffer holds no frame");
  }
}

uint32_t Buffer::PartCount() const {
  RequireFrame();
  return kPartCount;
}

InfoValue Buffer::InfoOfPart(uint32_t part, BUFFER_PART_INFO_CMD command) const {
  if (part >= PartCount()) {
    throw Failure(kBadIndex, "the frame has no such part");
  }
  return PartInfo(frame, Base(), part, command);
}

// Omits chunks that did not fit into the buffer.
std::vector<SINGLE_CHUNK_DATA> Buffer::Chunks() const {
  RequireFrame();
  std::vector<SINGLE_CHUNK_DATA> chunks;
  for (size_t i = 0; i < kChunkCount; ++i) {
    const size_t offset = frame.geometry.ChunkOffset() + i * kChunkSize;
    if (offset + kChunkSize <= frame.filled) {
      chunks.push_back({kFirstChunkId + i, static_cast<ptrdiff_t>(offset), kChunkSize});
    }
  }
  return chunks;
}

InfoValue Buffer::InfoOfSegment(uint32_t segment, SEGMENT_INFO_CMD command) const {
  const Segment& found = AtIndex(std::span<const Segment>(layout_.segments), segment);
  const bool receives = segment == 0;
  switch (command) {
    case SEGMENT_INFO_BASE:
      return InfoValue::Pointer(found.base);
    case SEGMENT_INFO_SIZE:
      return InfoValue::Size(found.size);
    case SEGMENT_INFO_IS_INCOMPLETE:
      return InfoValue::Bool(receives && frame.incomplete);
    case SEGMENT_INFO_SIZE_FILLED:
      return InfoValue::Size(receives ? frame.filled : 0);
    case SEGMENT_INFO_DATA_SIZE:
      return InfoValue::Size(receives && frame.present ? frame.geometry.PayloadSize() : 0);
    default:
      RefuseCommand(command);
  }
}

}  // namespace simulated_camera
