// SPDX-License-Identifier: MIT
// Tells whether a heap object has been freed, without touching it.
#ifndef VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H
#define VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H

namespace vextrel_test {

// Watches one address for as long as it lives. The program's operator delete reports to it, so it
// works in every build, not just under a sanitizer. Not thread-safe.
class HeapWatch {
 public:
  explicit HeapWatch(const void* address) noexcept;
  ~HeapWatch();
  HeapWatch(const HeapWatch&) = delete;
  HeapWatch& operator=(const HeapWatch&) = delete;

  // True iff what lay at the address has been freed.
  [[nodiscard]] bool IsFreed() const noexcept { return isFreed_; }

  // For operator delete.
  static void NoteFreed(const void* address) noexcept;

 private:
  const void* address_;
  HeapWatch* previous_;
  bool isFreed_ = false;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H
