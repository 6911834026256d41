#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>

#include "gentl/gentl.h"

namespace simcam {

// Ends a GenTL call with an error code. The text is what GCGetLastError tells afterwards.
class Failure : public std::runtime_error {
 public:
  Failure(GC_ERROR code, const std::string& text) : std::runtime_error(text), code_(code) {}

  [[nodiscard]] GC_ERROR Code() const noexcept { return code_; }

 private:
  GC_ERROR code_;
};

// What `pointer` points to. Throws GC_ERR_INVALID_PARAMETER for null, naming the argument.
template <class T>
[[nodiscard]] T& Required(T* pointer, const char* argument) {
  if (pointer == nullptr) {
    throw Failure(GC_ERR_INVALID_PARAMETER, std::string(argument) + " is null");
  }
  return *pointer;
}

// The element with this index. Throws GC_ERR_INVALID_PARAMETER if there is none.
template <class T>
[[nodiscard]] const T& AtIndex(std::span<const T> list, size_t index) {
  if (index >= list.size()) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "nothing has this index");
  }
  return list[index];
}

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_FAILURE_H
