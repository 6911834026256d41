// Handles that close themselves.
#ifndef VEXTREL_SAMPLES_GRAB_HANDLE_H
#define VEXTREL_SAMPLES_GRAB_HANDLE_H

#include <utility>

#include "gentl_functions.h"

namespace grab {

// An open transport layer, interface, device or data stream.
class Handle {
 public:
  using CloseFunction = Function<GC_ERROR GC_CALLTYPE(void*)>;

  Handle() = default;
  Handle(const GenTl& functions, const CloseFunction& closeFunction, void* openHandle)
      : gentl(&functions), close(&closeFunction), handle(openHandle) {}
  ~Handle() {
    if (handle != nullptr) {
      (*close)(handle);
    }
  }
  Handle(Handle&& other) noexcept
      : gentl(other.gentl), close(other.close), handle(std::exchange(other.handle, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(gentl, other.gentl);
    std::swap(close, other.close);
    std::swap(handle, other.handle);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  [[nodiscard]] void* Get() const { return handle; }

  // Closes and, unlike the destructor, throws Error when that fails.
  void Close() { gentl->Do(*close, Release()); }

  // Leaves it open for good.
  void* Release() { return std::exchange(handle, nullptr); }

 private:
  const GenTl* gentl = nullptr;
  const CloseFunction* close = nullptr;
  void* handle = nullptr;
};

// Takes over what an opening function gave out under success. Throws Error if that is nothing:
// there are producers that leave their output untouched.
[[nodiscard]] inline Handle TakeHandle(const GenTl& gentl, const Handle::CloseFunction& close,
                                       const char* openedBy, void* handle) {
  if (handle == nullptr) {
    throw Error(std::string(openedBy) + " succeeded but gave no handle.");
  }
  return {gentl, close, handle};
}

// Calls an opening function whose last parameter is the new handle. Throws Error.
template <typename F, typename... Arguments>
[[nodiscard]] Handle Open(const GenTl& gentl, const F& open, const Handle::CloseFunction& close,
                          Arguments... arguments) {
  void* handle = nullptr;
  gentl.Do(open, arguments..., &handle);
  return TakeHandle(gentl, close, open.Name(), handle);
}

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_HANDLE_H
