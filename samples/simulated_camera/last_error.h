#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_LAST_ERROR_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_LAST_ERROR_H

#include <string_view>

#include "gentl/gentl.h"

namespace simcam {

struct ErrorRecord {
  GC_ERROR code;
  char text[256];
};

// Replaces this thread's record; a long text is cut.
void RememberError(const char* function, GC_ERROR code, std::string_view text) noexcept;

// Remembers the exception being handled and returns the error code that stands for it. To be
// called inside a catch block only.
[[nodiscard]] GC_ERROR RememberCurrentException(const char* function) noexcept;

// The last failing call of this thread, GC_ERR_SUCCESS if there was none.
[[nodiscard]] const ErrorRecord& LastErrorOfThisThread() noexcept;

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_LAST_ERROR_H
