// SPDX-License-Identifier: MIT
#include "model/call_counts.h"

#include <numeric>

#include "reading/line_shapes.h"

namespace vextrel::program {

CallCounts::CallCounts() : successes_(FunctionNames().size()) {}

std::size_t CallCounts::Add(std::size_t function, GC_ERROR result, const LogPlace& place,
                            std::uint32_t thread) {
  ++calls_;
  if (result == GC_ERR_SUCCESS) {
    ++successes_[function];
    return kNone;
  }
  const auto [known, isNew] = failureOf_.try_emplace({function, result}, failures_.size());
  if (isNew) {
    failures_.push_back({function, result, 1, place, thread, {}});
  } else {
    ++failures_[known->second].count;
  }
  return known->second;
}

void CallCounts::Explain(std::size_t failure, std::string_view text) {
  if (failures_[failure].text.empty()) {
    failures_[failure].text = text;
  }
}

std::uint64_t CallCounts::CallsOf(std::size_t function) const {
  return std::accumulate(failures_.begin(), failures_.end(), successes_[function],
                         [function](std::uint64_t sum, const Failure& each) {
                           return sum + (each.function == function ? each.count : 0);
                         });
}

std::map<GC_ERROR, std::uint64_t> CallCounts::Results() const {
  std::map<GC_ERROR, std::uint64_t> results;
  for (const std::uint64_t count : successes_) {
    if (count != 0) {
      results[GC_ERR_SUCCESS] += count;
    }
  }
  for (const Failure& each : failures_) {
    results[each.result] += each.count;
  }
  return results;
}

}  // namespace vextrel::program
