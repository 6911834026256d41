// SPDX-License-Identifier: MIT
#include "info_value.h"

#include <cstring>

#include "failure.h"

namespace simulated_camera {

InfoValue::InfoValue(INFO_DATATYPE type, const void* bytes, size_t size)
    : type_(type), bytes_(static_cast<const char*>(bytes), size) {}

InfoValue InfoValue::Text(std::string_view text) {
  const std::string terminated(text);
  return {INFO_DATATYPE_STRING, terminated.c_str(), terminated.size() + 1};
}

InfoValue InfoValue::Bool(bool value) {
  const bool8_t byte = value ? 1 : 0;
  return {INFO_DATATYPE_BOOL8, &byte, sizeof(byte)};
}

InfoValue InfoValue::Int32(int32_t value) {
  return {INFO_DATATYPE_INT32, &value, sizeof(value)};
}

InfoValue InfoValue::UInt32(uint32_t value) {
  return {INFO_DATATYPE_UINT32, &value, sizeof(value)};
}

InfoValue InfoValue::UInt64(uint64_t value) {
  return {INFO_DATATYPE_UINT64, &value, sizeof(value)};
}

InfoValue InfoValue::Size(size_t value) {
  return {INFO_DATATYPE_SIZET, &value, sizeof(value)};
}

InfoValue InfoValue::Pointer(void* value) {
  return {INFO_DATATYPE_PTR, &value, sizeof(value)};
}

void InfoValue::CopyTo(INFO_DATATYPE* type, void* buffer, size_t* size) const {
  const size_t room = Required(size, "the size");
  if (type != nullptr) {
    *type = type_;
  }
  *size = bytes_.size();
  if (buffer == nullptr) {
    return;
  }
  if (room < bytes_.size()) {
    throw Failure(kBufferTooSmall, "the buffer is too small");
  }
  std::memcpy(buffer, bytes_.data(), bytes_.size());
}

void CopyText(std::string_view text, char* buffer, size_t* size) {
  InfoValue::Text(text).CopyTo(nullptr, buffer, size);
}

void RefuseCommand(int32_t command) {
  throw Failure(GC_ERR_NOT_IMPLEMENTED, "unknown command " + std::to_string(command));
}

void NothingToTell(int32_t command) {
  throw Failure(GC_ERR_NOT_AVAILABLE, "no answer to command " + std::to_string(command));
}

}  // namespace simulated_camera
