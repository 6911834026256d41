// SPDX-License-Identifier: MIT
#include "registry/heap_watch.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vextrel_test {

namespace {

// The head of the list of all watches.
HeapWatch* latest = nullptr;

}  // namespace

HeapWatch::HeapWatch(const void* address) noexcept : address_(address), previous_(latest) {
  latest = this;
}

HeapWatch::~HeapWatch() {
  // They need not end in the order in which they began: those in a container don't.
  for (HeapWatch** each = &latest; *each != nullptr; each = &(*each)->previous_) {
    if (*each == this) {
      *each = previous_;
      return;
    }
  }
}

void HeapWatch::NoteFreed(const void* address) noexcept {
  for (HeapWatch* each = latest; each != nullptr; each = each->previous_) {
    if (each->address_ == address) {
      each->isFreed_ = true;
    }
  }
}

}  // namespace vextrel_test

// The forms for arrays end in these.
void* operator new(std::size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

// A sanitizer's own would not end in the one above.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) {
    vextrel_test::HeapWatch::NoteFreed(memory);
    std::free(memory);
  }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  operator delete(memory);
}
