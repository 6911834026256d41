// SPDX-License-Identifier: MIT
// Exports one function, and none of a producer's.
#if defined(_WIN32)
#define NO_PRODUCER_EXPORT __declspec(dllexport)
#else
#define NO_PRODUCER_EXPORT __attribute__((visibility("default")))
#endif

extern "C" NO_PRODUCER_EXPORT int Answer() {
  return 42;
}
