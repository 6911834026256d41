// SPDX-License-Identifier: MIT
// The dice of a session: the same seed gives the same numbers on every platform.
#ifndef VEXTREL_TESTS_SESSION_RANDOM_SOURCE_H
#define VEXTREL_TESTS_SESSION_RANDOM_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>

namespace vextrel_test::session {

// As they lie in memory.
template <typename T>
[[nodiscard]] std::string BytesOf(const T& value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  [[nodiscard]] std::uint64_t Bits() { return engine_(); }
  // 0 to count - 1. The library's distributions differ between platforms, a remainder does not.
  [[nodiscard]] std::uint64_t Below(std::uint64_t count) { return engine_() % count; }
  [[nodiscard]] bool OneIn(std::uint64_t count) { return Below(count) == 0; }

  template <typename T>
  [[nodiscard]] T Pick(std::initializer_list<T> values) {
    return *(values.begin() + Below(values.size()));
  }

  // Any 64-bit number, small ones and the limits of 32 bits more often than others.
  [[nodiscard]] std::uint64_t Number();
  // A command or flag: one of 0 to last mostly, or next to them, a custom one, or any.
  [[nodiscard]] std::int32_t Command(std::int32_t last);
  // A text without NUL characters, full of what a formatter might trip over.
  [[nodiscard]] std::string Text();
  // `size` bytes: a text, a number, a fraction or anything.
  [[nodiscard]] std::string Bytes(std::size_t size);

 private:
  [[nodiscard]] std::string Fraction();

  std::mt19937_64 engine_;
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_RANDOM_SOURCE_H
