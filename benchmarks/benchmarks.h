// SPDX-License-Identifier: MIT
// The groups of benchmarks.
#ifndef VEXTREL_BENCHMARKS_BENCHMARKS_H
#define VEXTREL_BENCHMARKS_BENCHMARKS_H

#include <memory>

namespace vextrel_bench {

// The sessions that the call benchmarks run in. Must outlive their run.
struct CallSessions;
struct DeleteCallSessions {
  void operator()(CallSessions* sessions) const;
};
[[nodiscard]] std::unique_ptr<CallSessions, DeleteCallSessions> RegisterCallBenchmarks();

void RegisterRenderingBenchmarks();
void RegisterStartBenchmarks();

}  // namespace vextrel_bench

#endif  // VEXTREL_BENCHMARKS_BENCHMARKS_H
