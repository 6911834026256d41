// SPDX-License-Identifier: MIT
// An exception that the throwing target and its consumer both know.
#ifndef VEXTREL_TESTS_HOSTILE_THROWN_H
#define VEXTREL_TESTS_HOSTILE_THROWN_H

namespace vextrel_test {

#if defined(__GNUC__) && !defined(_WIN32)
#pragma GCC visibility push(default)
#endif
struct Thrown {
  void* handle;
  int code;
};
#if defined(__GNUC__) && !defined(_WIN32)
#pragma GCC visibility pop
#endif

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_HOSTILE_THROWN_H
