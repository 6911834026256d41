// SPDX-License-Identifier: MIT
// A heap that runs out of memory when a test says so.
#ifndef VEXTREL_TESTS_ALLOCATION_FAILING_HEAP_H
#define VEXTREL_TESTS_ALLOCATION_FAILING_HEAP_H

namespace vextrel_test::failing_heap {

// How long allocations fail.
enum class Shortage { Once, FromThenOn };

// Lets the allocation of that number fail, counting from 1 those made while an Armed lives.
void FailAt(long number, Shortage shortage);
// Returns true iff one has failed since.
[[nodiscard]] bool HasFailed();
// Lets no allocation fail any more.
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
