// The groups of benchmarks, by what they measure.
#ifndef VEXTREL_BENCHMARKS_BENCHMARKS_H
#define VEXTREL_BENCHMARKS_BENCHMARKS_H

#include <memory>

namespace vextrel_benchmark {

// What the call benchmarks run in; must live until they have run.
struct CallSessions;
struct DeleteCallSessions {
  void operator()(CallSessions* sessions) const;
};
[[nodiscard]] std::unique_ptr<CallSessions, DeleteCallSessions> RegisterCallBenchmarks();

void RegisterRenderingBenchmarks();
void RegisterStartBenchmarks();

}  // namespace vextrel_benchmark

#endif  // VEXTREL_BENCHMARKS_BENCHMARKS_H
