// SPDX-License-Identifier: MIT
#include <cfenv>

#include "transparency/float_environment.h"

namespace vextrel_test {

FloatEnvironment FloatEnvironment::Now() {
  return {std::fegetround(), std::fetestexcept(FE_ALL_EXCEPT)};
}

void FloatEnvironment::Apply() const {
  std::fesetround(rounding);
  std::feclearexcept(FE_ALL_EXCEPT);
  // feraiseexcept might carry the operation out, which raises others as well.
  std::fexcept_t all{};
  std::fegetexceptflag(&all, FE_ALL_EXCEPT);
  all = static_cast<std::fexcept_t>(all | raised);
  std::fesetexceptflag(&all, FE_ALL_EXCEPT);
}

}  // namespace vextrel_test
