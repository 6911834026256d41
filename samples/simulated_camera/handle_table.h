// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H

#include <memory>
#include <mutex>
#include <unordered_map>

#include "failure.h"

namespace simulated_camera {

// Anything with a GenTL handle. The handle is the object's address.
class Object {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  [[nodiscard]] void* Handle() noexcept { return this; }
};

// Owns the objects behind all live handles. A running call keeps its objects alive, so no handle
// value is reused while somebody still works with its former object. Thread-safe.
class HandleTable {
 public:
  // Returns the object's handle.
  void* Add(const std::shared_ptr<Object>& object);
  void Remove(void* handle);

  // Throws GC_ERR_INVALID_HANDLE unless `handle` is live and its object is a T. Never dereferences
  // an unknown handle.
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

inline void* HandleTable::Add(const std::shared_ptr<Object>& object) {
  const std::scoped_lock lock(mutex_);
  void* const handle = object->Handle();
  objects_.insert_or_assign(handle, object);
  return handle;
}

inline void HandleTable::Remove(void* handle) {
  std::shared_ptr<Object> removed;  // Destroyed after the lock is released.
  const std::scoped_lock lock(mutex_);
  if (const auto found = objects_.find(handle); found != objects_.end()) {
    removed = std::move(found->second);
    objects_.erase(found);
  }
}

inline std::shared_ptr<Object> HandleTable::Find(void* handle) const {
  const std::scoped_lock lock(mutex_);
  const auto found = objects_.find(handle);
  return found != objects_.end() ? found->second : nullptr;
}

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_HANDLE_TABLE_H
