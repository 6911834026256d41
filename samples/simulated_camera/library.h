// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H

#include <memory>
#include <mutex>

#include "failure.h"
#include "handle_table.h"
#include "settings.h"
#include "tree.h"

namespace simulated_camera {

// Everything that exists from GCInitLib to GCCloseLib. It leaks if the consumer unloads the module
// without GCCloseLib: threads cannot be joined safely at unload.
class Library {
 public:
  // Throws GC_ERR_RESOURCE_IN_USE if the library exists already.
  static void Init();
  // Closes everything and joins all threads. Throws GC_ERR_NOT_INITIALIZED.
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

  // Locks the tree of modules. A call that opens or closes something takes this lock before it
  // looks up any handle.
  [[nodiscard]] std::unique_lock<std::mutex> LockTree() { return std::unique_lock(treeMutex_); }

  // REQUIRES: the tree lock is held. Throws GC_ERR_RESOURCE_IN_USE.
  [[nodiscard]] void* OpenTransportLayer();

 private:
  const Settings settings_;
  HandleTable handles_;
  std::mutex treeMutex_;
  bool closed_ = false;
  std::weak_ptr<TransportLayer> transportLayer_;
};

// Runs the body of a GenTL function with the current library. Turns exceptions into error codes
// and records them for GCGetLastError.
template <class Body>
[[nodiscard]] GC_ERROR Call(const char* function, const Body& body) noexcept {
  try {
    body(*Library::Current());
    return GC_ERR_SUCCESS;
  } catch (...) {
    return RememberCurrentException(function);
  }
}

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_LIBRARY_H
