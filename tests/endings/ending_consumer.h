// SPDX-License-Identifier: MIT
// What the tests and the consumer program that they start agree on.
#ifndef VEXTREL_TESTS_ENDINGS_ENDING_CONSUMER_H
#define VEXTREL_TESTS_ENDINGS_ENDING_CONSUMER_H

#include <cstddef>
#include <cstdint>

namespace vextrel_test {

// The program.
#if defined(VEXTREL_EXTENDED)
inline constexpr const char* kConsumerName = "extended_ending_consumer";
#else
inline constexpr const char* kConsumerName = "ending_consumer";
#endif

// What the consumer exits with where it says so itself.
inline constexpr int kConsumerDone = 7;
inline constexpr int kConsumerFailed = 3;

// Event handles that tell whose call a line is: the numbered calls count up from the first, the
// busy threads use the others.
inline constexpr std::uintptr_t kFirstNumber = 0x10000;
inline constexpr std::uintptr_t kBusyHandle = 0x900;
inline constexpr int kBusyThreads = 3;
inline constexpr std::size_t kBusyCalls = 20;  // at least, by each of them

// The files in the consumer's folder.
inline constexpr const char* kConfigFile = "log.properties";
inline constexpr const char* kResourcesFile = "resources.txt";
inline constexpr const char* kReadyFile = "ready";
inline constexpr const char* kGoFile = "go";

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ENDINGS_ENDING_CONSUMER_H
