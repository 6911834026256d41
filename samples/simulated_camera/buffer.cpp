#include "buffer.h"

#include <utility>

namespace simcam {
namespace {

constexpr ModuleKind kKind{"TLBuffer", "BufferPort", "BufferID"};

// Values of GenTL enumerations that no call here takes.
constexpr size_t kPayloadTypeImage = 1;
constexpr uint64_t kPixelFormatNamespacePfnc32 = 4;

}  // namespace

Buffer::Buffer(const std::string& id, std::weak_ptr<Module> stream, void* base, size_t size,
               void* userPointer)
    : Module(kKind, id, std::move(stream)),
      memory_(base == nullptr ? std::make_unique<std::byte[]>(size) : nullptr),
      base_(base == nullptr ? memory_.get() : base),
      size_(size),
      userPointer_(userPointer) {}

InfoValue Buffer::Info(BUFFER_INFO_CMD command) const {
  switch (command) {
    case BUFFER_INFO_BASE:
      return InfoValue::Pointer(base_);
    case BUFFER_INFO_SIZE:
      return InfoValue::Size(size_);
    case BUFFER_INFO_USER_PTR:
      return InfoValue::Pointer(userPointer_);
    case BUFFER_INFO_NEW_DATA:
      return InfoValue::Bool(frame.isNew);
    case BUFFER_INFO_IS_QUEUED:
      return InfoValue::Bool(place != Place::kUnqueued);
    case BUFFER_INFO_IS_ACQUIRING:
      return InfoValue::Bool(place == Place::kFilling);
    case BUFFER_INFO_IS_INCOMPLETE:
      return InfoValue::Bool(frame.incomplete);
    case BUFFER_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case BUFFER_INFO_SIZE_FILLED:
      return InfoValue::Size(frame.filled);
    case BUFFER_INFO_CHUNKLAYOUTID:
    case BUFFER_INFO_FILENAME:
      NothingToTell(command);
    default:
      return FrameInfo(command);
  }
}

InfoValue Buffer::FrameInfo(BUFFER_INFO_CMD command) const {
  if (command < BUFFER_INFO_BASE || command > BUFFER_INFO_FILENAME) {
    RefuseCommand(command);
  }
  if (command == BUFFER_INFO_IMAGEPRESENT) {
    return InfoValue::Bool(frame.present);
  }
  if (!frame.present) {
    NothingToTell(command);
  }
  switch (command) {
    case BUFFER_INFO_TIMESTAMP:
      return InfoValue::UInt64(frame.timestamp);
    case BUFFER_INFO_WIDTH:
      return InfoValue::Size(frame.geometry.width);
    case BUFFER_INFO_HEIGHT:
      return InfoValue::Size(frame.geometry.height);
    case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
      return InfoValue::Size(frame.filled / frame.geometry.width);
    case BUFFER_INFO_XOFFSET:
    case BUFFER_INFO_YOFFSET:
    case BUFFER_INFO_XPADDING:
    case BUFFER_INFO_YPADDING:
    case BUFFER_INFO_IMAGEOFFSET:
    case BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE:
      return InfoValue::Size(0);
    case BUFFER_INFO_FRAMEID:
      return InfoValue::UInt64(frame.id);
    case BUFFER_INFO_PAYLOADTYPE:
      return InfoValue::Size(kPayloadTypeImage);
    case BUFFER_INFO_PIXELFORMAT:
      return InfoValue::UInt64(kMono8);
    case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
      return InfoValue::UInt64(kPixelFormatNamespacePfnc32);
    default:
      RefuseCommand(command);
  }
}

}  // namespace simcam
