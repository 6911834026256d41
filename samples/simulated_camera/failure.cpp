// SPDX-License-Identifier: MIT
#include "failure.h"

#include <algorithm>
#include <exception>
#include <new>
#include <type_traits>

namespace simulated_camera {
namespace {

// A thread-local destructor would keep the module loaded (Linux), or run after it is gone
// (Windows).
static_assert(std::is_trivially_destructible_v<ErrorRecord>);
thread_local ErrorRecord lastError{GC_ERR_SUCCESS, "No error"};

}  // namespace

void RememberError(const char* function, GC_ERROR code, std::string_view text) noexcept {
  lastError.code = code;
  char* out = lastError.text;
  char* const last = lastError.text + sizeof(lastError.text) - 1;
  for (const std::string_view part : {std::string_view(function), std::string_view(": "), text}) {
    const auto room = static_cast<size_t>(last - out);
    out = std::copy_n(part.data(), std::min(part.size(), room), out);
  }
  *out = '\0';
}

GC_ERROR RememberCurrentException(const char* function) noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    RememberError(function, failure.Code(), failure.what());
    return failure.Code();
  } catch (const std::bad_alloc&) {
    RememberError(function, GC_ERR_ERROR, "out of memory");
  } catch (const std::exception& exception) {
    RememberError(function, GC_ERR_ERROR, exception.what());
  } catch (...) {
    RememberError(function, GC_ERR_ERROR, "unexpected failure");
  }
  return GC_ERR_ERROR;
}

const ErrorRecord& LastErrorOfThisThread() noexcept {
  return lastError;
}

}  // namespace simulated_camera
