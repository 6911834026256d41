// A heap that runs out of memory when a test says so.
#ifndef VEXTREL_TESTS_ALLOCATION_FAILING_HEAP_H
#define VEXTREL_TESTS_ALLOCATION_FAILING_HEAP_H

namespace vextrel_test::failing_heap {

// How long the memory is gone.
enum class Shortage { kOnce, kFromThenOn };

// Of the allocations made while an Armed lives, the one of that number (the first is 1) fails.
void FailAt(long number, Shortage shortage);
// Whether it has failed since.
[[nodiscard]] bool HasFailed();
// No allocation fails any more.
void Recover();

// Allocations by operator new count while it lives. Not thread-safe.
class Armed {
 public:
  Armed();
  ~Armed();
  Armed(const Armed&) = delete;
  Armed& operator=(const Armed&) = delete;
};

}  // namespace vextrel_test::failing_heap

#endif  // VEXTREL_TESTS_ALLOCATION_FAILING_HEAP_H
