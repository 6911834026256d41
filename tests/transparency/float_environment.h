// SPDX-License-Identifier: MIT
// The thread's floating-point environment, as far as a program may set it.
#ifndef VEXTREL_TESTS_TRANSPARENCY_FLOAT_ENVIRONMENT_H
#define VEXTREL_TESTS_TRANSPARENCY_FLOAT_ENVIRONMENT_H

#include <ostream>

namespace vextrel_test {

struct FloatEnvironment {
  int rounding;  // FE_DOWNWARD and its like
  int raised;    // the exception flags that are set, FE_INVALID and its like

  bool operator==(const FloatEnvironment&) const = default;

  [[nodiscard]] static FloatEnvironment Now();
  // Sets this thread's environment, without performing the operations that the flags stand for.
  void Apply() const;
};

inline std::ostream& operator<<(std::ostream& stream, const FloatEnvironment& environment) {
  return stream << "rounding " << environment.rounding << ", flags " << environment.raised;
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_FLOAT_ENVIRONMENT_H
