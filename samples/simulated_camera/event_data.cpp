#include "event_data.h"

#include <cstring>

namespace simcam {
namespace {

constexpr size_t kLargestText = 256;

template <class T>
std::string BytesOf(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

std::string Terminated(std::string_view text) {
  return std::string(text.substr(0, kLargestText / 2 - 1)) + '\0';
}

template <class T>
T ValueAt(std::string_view data, size_t offset) {
  if (data.size() < offset + sizeof(T)) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "these event data are too short");
  }
  T value;
  std::memcpy(&value, data.data() + offset, sizeof(value));
  return value;
}

std::string_view TextAt(std::string_view data, size_t offset) {
  const size_t end = offset < data.size() ? data.find('\0', offset) : std::string_view::npos;
  if (end == std::string_view::npos) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "these event data hold no such text");
  }
  return data.substr(offset, end - offset);
}

InfoValue EventId(EVENT_TYPE type, std::string_view data) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return InfoValue::Pointer(ValueAt<void*>(data, 0));
    case EVENT_ERROR:
      return InfoValue::Int32(ValueAt<GC_ERROR>(data, 0));
    default:
      return InfoValue::Text(TextAt(data, 0));
  }
}

InfoValue EventValue(EVENT_TYPE type, std::string_view data) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return InfoValue::Pointer(ValueAt<void*>(data, sizeof(void*)));
    case EVENT_ERROR:
      return InfoValue::Text(TextAt(data, sizeof(GC_ERROR)));
    default:
      return InfoValue::Text(TextAt(data, TextAt(data, 0).size() + 1));
  }
}

}  // namespace

Event NewBufferEvent(const std::shared_ptr<Object>& buffer, void* userPointer) {
  return {BytesOf(buffer->Handle()) + BytesOf(userPointer), sizeof(BUFFER_HANDLE), buffer};
}

Event ErrorEvent(GC_ERROR code, std::string_view text) {
  return {BytesOf(code) + Terminated(text), 0, nullptr};
}

Event FeatureEvent(std::string_view feature, std::string_view value) {
  return {Terminated(feature) + Terminated(value), 0, nullptr};
}

size_t LargestEvent(EVENT_TYPE type) {
  switch (type) {
    case EVENT_NEW_BUFFER:
      return 2 * sizeof(void*);
    case EVENT_ERROR:
      return sizeof(GC_ERROR) + kLargestText / 2;
    default:
      return kLargestText;
  }
}

InfoValue EventDataInfo(EVENT_TYPE type, std::string_view data, EVENT_DATA_INFO_CMD command) {
  switch (command) {
    case EVENT_DATA_ID:
      return EventId(type, data);
    case EVENT_DATA_VALUE:
      return EventValue(type, data);
    case EVENT_DATA_NUMID:
      NothingToTell(command);
    default:
      RefuseCommand(command);
  }
}

}  // namespace simcam
