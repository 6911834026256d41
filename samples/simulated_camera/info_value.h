#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "gentl/gentl.h"

namespace simcam {

// The answer to an info command: a value with its GenTL type.
class InfoValue {
 public:
  [[nodiscard]] static InfoValue Text(std::string_view text);
  [[nodiscard]] static InfoValue Bool(bool value);
  [[nodiscard]] static InfoValue Int32(int32_t value);
  [[nodiscard]] static InfoValue UInt64(uint64_t value);
  [[nodiscard]] static InfoValue Size(size_t value);
  [[nodiscard]] static InfoValue Pointer(void* value);

  // Answers an info call: a null buffer asks for the size in bytes alone, and whatever *size held
  // then does not matter. `type` may be null. Throws GC_ERR_INVALID_PARAMETER for a null `size`,
  // GC_ERR_INVALID_BUFFER (the needed size being in *size) for a buffer that is too small.
  void CopyTo(INFO_DATATYPE* type, void* buffer, size_t* size) const;

 private:
  InfoValue(INFO_DATATYPE type, const void* bytes, size_t size);

  INFO_DATATYPE type_;
  std::string bytes_;
};

// Answers a call that asks for an ID, a URL or another text, like CopyTo.
void CopyText(std::string_view text, char* buffer, size_t* size);

// Throws GC_ERR_NOT_IMPLEMENTED: nobody knows this command.
[[noreturn]] void RefuseCommand(int32_t command);

// Throws GC_ERR_NOT_AVAILABLE: the command is known, but there is nothing to tell (now).
[[noreturn]] void NothingToTell(int32_t command);

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_INFO_VALUE_H
