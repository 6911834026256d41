// SPDX-License-Identifier: MIT
// A consumer's session that makes calls of every kind, and expects of each what the target answers.
#ifndef VEXTREL_TESTS_ALLOCATION_FULL_SESSION_H
#define VEXTREL_TESTS_ALLOCATION_FULL_SESSION_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "allocation/failing_heap.h"
#include "gentl/gentl.h"

namespace vextrel_test {

// Calls the functions that are linked into the test program. Allocations count during the calls.
class FullSession {
 public:
  // Everything from TLOpen to GCCloseLib, for a library that is initialised.
  void Run();

  // "RESULT=Function" for each call so far, as the log has it.
  [[nodiscard]] const std::vector<std::string>& Calls() const { return calls_; }

 private:
  template <typename... Parameters, typename... Arguments>
  void Call(GC_ERROR expected, const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
            Arguments... arguments) {
    Note(expected, name);
    GC_ERROR result = kNoResult;
    try {
      const failing_heap::Armed armed;
      result = function(arguments...);
    } catch (...) {
      ADD_FAILURE() << "an exception left " << name;
      return;
    }
    EXPECT_EQ(result, expected) << name;
  }

  // An info query, whose last three arguments are these outputs.
  template <typename... Parameters, typename... Arguments>
  void Query(INFO_DATATYPE type, const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
             Arguments... arguments);

  // A query for a text, whose last two arguments are these outputs.
  template <typename... Parameters, typename... Arguments>
  void QueryText(const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
                 Arguments... arguments);

  // A query for a number, whose last argument is the output.
  template <typename... Parameters, typename... Arguments>
  void QueryCount(const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
                  Arguments... arguments);

  // A call that yields a handle through its last argument.
  template <typename... Parameters, typename... Arguments>
  void* Open(std::uintptr_t handle, const char* name,
             GC_ERROR(GC_CALLTYPE* function)(Parameters...), Arguments... arguments);

  void Note(GC_ERROR result, const char* name);

  void OpenDevice();
  void AskForInfo();
  void AccessPort();
  void Acquire();
  void Close();

  // Never a result of the target's.
  static constexpr GC_ERROR kNoResult = 0x7FFF;

  std::vector<std::string> calls_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ALLOCATION_FULL_SESSION_H
