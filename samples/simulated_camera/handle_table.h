#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H

#include <memory>
#include <mutex>
#include <unordered_map>

#include "failure.h"

namespace simcam {

// Anything that a GenTL handle can stand for. The handle is the object's address.
class Object {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  [[nodiscard]] void* Handle() noexcept { return this; }
};

// The live handles. It owns the objects; calls under way keep theirs alive until they end, so a
// handle value is only used again once nobody works with its former object. Thread-safe.
class HandleTable {
 public:
  // Returns the object's handle.
  void* Add(const std::shared_ptr<Object>& object);
  void Remove(void* handle);

  // The object of a handle. An unknown handle is never followed. Throws GC_ERR_INVALID_HANDLE
  // unless it is live and stands for a T.
  template <class T>
  [[nodiscard]] std::shared_ptr<T> Get(void* handle) const {
    auto object = std::dynamic_pointer_cast<T>(Find(handle));
    if (object == nullptr) {
      throw Failure(GC_ERR_INVALID_HANDLE, "the handle is not open, or not of this kind");
    }
    return object;
  }

 private:
  [[nodiscard]] std::shared_ptr<Object> Find(void* handle) const;

  mutable std::mutex mutex_;
  std::unordered_map<void*, std::shared_ptr<Object>> objects_;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H
