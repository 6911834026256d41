#include "heap_watch.h"

#include <cstddef>
#include <cstdlib>
#include <new>

HeapWatch* HeapWatch::latest_ = nullptr;

HeapWatch::HeapWatch(const void* address) noexcept : address_(address), previous_(latest_) {
  latest_ = this;
}

HeapWatch::~HeapWatch() {
  // They need not end in the order in which they began: those in a container don't.
  for (HeapWatch** each = &latest_; *each != nullptr; each = &(*each)->previous_) {
    if (*each == this) {
      *each = previous_;
      return;
    }
  }
}

void HeapWatch::NoteFreed(const void* address) noexcept {
  for (HeapWatch* each = latest_; each != nullptr; each = each->previous_) {
    if (each->address_ == address) {
      each->isFreed_ = true;
    }
  }
}

// The forms for arrays end in these.
void* operator new(std::size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) {
    HeapWatch::NoteFreed(memory);
    std::free(memory);
  }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  operator delete(memory);
}
