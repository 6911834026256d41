// SPDX-License-Identifier: MIT
#include "allocation/failing_heap.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace vextrel_test::failing_heap {
namespace {

constexpr long kNever = std::numeric_limits<long>::max();

bool armed = false;
bool hasFailed = false;
long remaining = kNever;
Shortage lasting = Shortage::Once;

}  // namespace

void FailAt(long number, Shortage shortage) {
  remaining = number;
  lasting = shortage;
  hasFailed = false;
}

bool HasFailed() {
  return hasFailed;
}

void Recover() {
  remaining = kNever;
}

Armed::Armed() {
  armed = true;
}
Armed::~Armed() {
  armed = false;
}

namespace {

// Null where the test wants it.
void* Allocate(std::size_t size) noexcept {
  if (armed && remaining != kNever && --remaining <= 0) {
    hasFailed = true;
    remaining = lasting == Shortage::Once ? kNever : 0;
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace
}  // namespace vextrel_test::failing_heap

using vextrel_test::failing_heap::Allocate;
using vextrel_test::failing_heap::AllocateOrThrow;

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
