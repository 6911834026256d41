// SPDX-License-Identifier: MIT
// Calls and their results, by function.
#ifndef VEXTREL_PROGRAM_MODEL_CALL_COUNTS_H
#define VEXTREL_PROGRAM_MODEL_CALL_COUNTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gentl/gentl.h"
#include "reading/record_reader.h"

namespace vextrel::program {

// Calls of one function that failed in one way.
struct Failure {
  std::size_t function = 0;  // into FunctionNames()
  GC_ERROR result = GC_ERR_SUCCESS;
  std::uint64_t count = 0;
  LogPlace first;
  std::uint32_t thread = 0;
  std::string text;  // what GCGetLastError said on that thread right after, the first time
};

class CallCounts {
 public:
  CallCounts();

  // Returns the call's failure, as an index into Failures(), or kNone if it didn't fail.
  std::size_t Add(std::size_t function, GC_ERROR result, const LogPlace& place,
                  std::uint32_t thread);
  void Explain(std::size_t failure, std::string_view text);

  static constexpr std::size_t kNone = SIZE_MAX;

  [[nodiscard]] std::uint64_t Calls() const noexcept { return calls_; }
  [[nodiscard]] std::uint64_t CallsOf(std::size_t function) const;
  [[nodiscard]] std::uint64_t SuccessesOf(std::size_t function) const {
    return successes_[function];
  }
  // In the order in which they came first.
  [[nodiscard]] const std::vector<Failure>& Failures() const noexcept { return failures_; }
  // By result, the successes among them.
  [[nodiscard]] std::map<GC_ERROR, std::uint64_t> Results() const;

 private:
  std::uint64_t calls_ = 0;
  std::vector<std::uint64_t> successes_;
  std::vector<Failure> failures_;
  std::map<std::pair<std::size_t, GC_ERROR>, std::size_t> failureOf_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_CALL_COUNTS_H
