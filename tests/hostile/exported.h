// SPDX-License-Identifier: MIT
// What a module of its own making exports on Linux; Windows has a list for that.
#ifndef VEXTREL_TESTS_HOSTILE_EXPORTED_H
#define VEXTREL_TESTS_HOSTILE_EXPORTED_H

#if defined(__GNUC__) && !defined(_WIN32)
#define VEXTREL_TEST_EXPORT extern "C" [[gnu::visibility("default")]]
#else
#define VEXTREL_TEST_EXPORT extern "C"
#endif

#endif  // VEXTREL_TESTS_HOSTILE_EXPORTED_H
