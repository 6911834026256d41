// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "edition.h"

namespace simulated_camera {

// The answer to an info command: a value with its GenTL type.
class InfoValue {
 public:
  [[nodiscard]] static InfoValue Text(std::string_view text);
  [[nodiscard]] static InfoValue Bool(bool value);
  [[nodiscard]] static InfoValue Int32(int32_t value);
  [[nodiscard]] static InfoValue UInt32(uint32_t value);
  [[nodiscard]] static InfoValue UInt64(uint64_t value);
  [[nodiscard]] static InfoValue Size(size_t value);
  [[nodiscard]] static InfoValue Pointer(void* value);

  // Answers an info call. If `buffer` is null, stores type and size only, whatever *size was.
  // `type` may be null. Throws GC_ERR_INVALID_PARAMETER if `size` is null, kBufferTooSmall, with
  // *size set to the size needed, if the buffer is too small.
  void CopyTo(INFO_DATATYPE* type, void* buffer, size_t* size) const;

 private:
  InfoValue(INFO_DATATYPE type, const void* bytes, size_t size);

  INFO_DATATYPE type_;
  std::string bytes_;
};

// Like CopyTo, for calls that return an ID or a URL.
void CopyText(std::string_view text, char* buffer, size_t* size);

// Throws GC_ERR_NOT_IMPLEMENTED: there is no such command.
[[noreturn]] void RefuseCommand(int32_t command);

// Throws GC_ERR_NOT_AVAILABLE: the command exists, but has no value at present.
[[noreturn]] void NothingToTell(int32_t command);

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H
