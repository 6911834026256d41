#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H

#include <memory>
#include <mutex>

#include "handle_table.h"
#include "last_error.h"
#include "settings.h"
#include "transport_layer.h"

namespace simcam {

// Everything between GCInitLib and GCCloseLib. A consumer that unloads the module without
// GCCloseLib leaves it behind on the heap: nothing is torn down at unload, where threads could
// not be ended safely.
class Library {
 public:
  // Throws GC_ERR_RESOURCE_IN_USE if there is one already.
  static void Init();
  // Closes whatever is open and ends all threads. Throws GC_ERR_NOT_INITIALIZED.
  static void Close();
  // Throws GC_ERR_NOT_INITIALIZED.
  [[nodiscard]] static std::shared_ptr<Library> Current();

  explicit Library(const Settings& settings) : settings_(settings) {}
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  [[nodiscard]] const Settings& CameraSettings() const noexcept { return settings_; }
  [[nodiscard]] HandleTable& Handles() noexcept { return handles_; }

  // Throws GC_ERR_INVALID_HANDLE.
  template <class T>
  [[nodiscard]] std::shared_ptr<T> Get(void* handle) const {
    return handles_.Get<T>(handle);
  }

  // Whoever opens or closes something holds this, from before looking its handles up.
  [[nodiscard]] std::unique_lock<std::mutex> LockTree() { return std::unique_lock(treeMutex_); }

  // With the tree lock held. Throws GC_ERR_RESOURCE_IN_USE.
  [[nodiscard]] void* OpenTransportLayer();

 private:
  const Settings settings_;
  HandleTable handles_;
  std::mutex treeMutex_;
  bool closed_ = false;
  std::weak_ptr<TransportLayer> transportLayer_;
};

// What every GenTL function does around its own work: turns exceptions into error codes, which
// GCGetLastError then tells. The body is called with the library.
template <class Body>
[[nodiscard]] GC_ERROR Call(const char* function, const Body& body) noexcept {
  try {
    body(*Library::Current());
    return GC_ERR_SUCCESS;
  } catch (...) {
    return RememberCurrentException(function);
  }
}

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H
