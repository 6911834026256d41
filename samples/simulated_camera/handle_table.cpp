#include "handle_table.h"

namespace simcam {

void* HandleTable::Add(const std::shared_ptr<Object>& object) {
  const std::scoped_lock lock(mutex_);
  void* const handle = object->Handle();
  objects_.insert_or_assign(handle, object);
  return handle;
}

void HandleTable::Remove(void* handle) {
  std::shared_ptr<Object> removed;  // destroyed after the lock is gone
  const std::scoped_lock lock(mutex_);
  if (const auto found = objects_.find(handle); found != objects_.end()) {
    removed = std::move(found->second);
    objects_.erase(found);
  }
}

std::shared_ptr<Object> HandleTable::Find(void* handle) const {
  const std::scoped_lock lock(mutex_);
  const auto found = objects_.find(handle);
  return found != objects_.end() ? found->second : nullptr;
}

}  // namespace simcam
