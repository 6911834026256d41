// Tells whether an object on the heap has been destroyed, without touching it.
#ifndef VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H
#define VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H

// Watches one address from its construction on. The program's operator delete reports to it, so it
// works in every build, not only where a sanitizer looks on. Not thread-safe.
class HeapWatch {
 public:
  explicit HeapWatch(const void* address) noexcept;
  ~HeapWatch();
  HeapWatch(const HeapWatch&) = delete;
  HeapWatch& operator=(const HeapWatch&) = delete;

  // Whether what lay at the address has been given back to the heap.
  [[nodiscard]] bool IsFreed() const noexcept { return isFreed_; }

  // For operator delete.
  static void NoteFreed(const void* address) noexcept;

 private:
  static HeapWatch* latest_;

  const void* address_;
  HeapWatch* previous_;
  bool isFreed_ = false;
};

#endif  // VEXTREL_TESTS_REGISTRY_HEAP_WATCH_H
