// SPDX-License-Identifier: MIT
// An exception that any function of a target lets out reaches the consumer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

using ::testing::IsEmpty;

template <typename... Arguments>
GC_ERROR GC_CALLTYPE ThrowSomething(Arguments... /*arguments*/) {
  throw std::runtime_error("something");
}

template <typename... Arguments>
auto Throwing(GC_ERROR(GC_CALLTYPE* /*like*/)(Arguments...)) {
  return &ThrowSomething<Arguments...>;
}

class EveryFunction : public BoundProxy {};

TEST_F(EveryFunction, LetsTheTargetsExceptionOutAndWritesNoLine) {
  ForEachFunction([this](const std::string& name, auto slot) {
    SCOPED_TRACE(name);
    if (name == "GCInitLib") {
      // It writes lines of its own before it calls the target.
      return;
    }
    script.functions.*slot = Throwing(proxy.*slot);
    script.calls = 0;
    EXPECT_THROW(static_cast<void>(CallWithZeros(proxy.*slot)), std::runtime_error);
    EXPECT_EQ(script.calls, 1);
    EXPECT_THAT(TakeLines(), IsEmpty());
  });
}

}  // namespace
}  // namespace vextrel_test
