// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "edition.h"

namespace simulated_camera {

// Ends a GenTL call with an error code, and with a text for GCGetLastError.
class Failure : public std::runtime_error {
 public:
  Failure(GC_ERROR code, const std::string& text) : std::runtime_error(text), code_(code) {}

  [[nodiscard]] GC_ERROR Code() const noexcept { return code_; }

 private:
  GC_ERROR code_;
};

// Returns *pointer. Throws GC_ERR_INVALID_PARAMETER if it is null.
template <class T>
[[nodiscard]] T& Required(T* pointer, const char* argument) {
  if (pointer == nullptr) {
    throw Failure(GC_ERR_INVALID_PARAMETER, std::string(argument) + " is null");
  }
  return *pointer;
}

// Returns list[index]. Throws kBadIndex if it does not exist.
template <class T>
[[nodiscard]] const T& AtIndex(std::span<const T> list, size_t index) {
  if (index >= list.size()) {
    throw Failure(kBadIndex, "nothing has this index");
  }
  return list[index];
}

struct ErrorRecord {
  GC_ERROR code;
  char text[256];
};

// Sets this thread's record. Truncates a long text.
void RememberError(const char* function, GC_ERROR code, std::string_view text) noexcept;

// Records the current exception for this thread and returns its error code. REQUIRES: called from
// a catch block.
[[nodiscard]] GC_ERROR RememberCurrentException(const char* function) noexcept;

// Returns the last failure of this thread, GC_ERR_SUCCESS if there was none.
[[nodiscard]] const ErrorRecord& LastErrorOfThisThread() noexcept;

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H
