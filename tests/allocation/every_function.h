// SPDX-License-Identifier: MIT
// Calls of every function in turn, each watched for anything that changes on its way.
#ifndef VEXTREL_TESTS_ALLOCATION_EVERY_FUNCTION_H
#define VEXTREL_TESTS_ALLOCATION_EVERY_FUNCTION_H

#include <gtest/gtest.h>

#include "allocation/failing_heap.h"
#include "support/target_script.h"
#include "transparency/consumer_call.h"

namespace vextrel_test {

// Calls the linked function, and expects that the target's answer reaches the consumer and no
// exception does. Allocations count during the call.
inline void ExpectAnswered(const UniformFunction& function, TargetScript& script) {
  SCOPED_TRACE(function.name);
  const Answer answer = {.result = GC_ERR_TIMEOUT};
  const ConsumerCall call(function, Shape::Complete);
  ConsumerMemory::Bytes answered{};
  onTargetCall = [&](const Patterns& arguments) {
    call.WriteAnswer(arguments, answer);
    answered = call.Memory();
    return answer.result;
  };
  function.play(script.functions);
  const GenTLFunctions linked = LinkedFunctions();
  GC_ERROR result = GC_ERR_SUCCESS;
  try {
    const failing_heap::Armed armed;
    result = function.call(linked, call.Arguments());
  } catch (...) {
    ADD_FAILURE() << "an exception reached the consumer";
  }
  script.functions = {};
  EXPECT_EQ(result, answer.result);
  EXPECT_TRUE(call.Memory() == answered);
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ALLOCATION_EVERY_FUNCTION_H
