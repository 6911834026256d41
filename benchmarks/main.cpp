// SPDX-License-Identifier: MIT
// Runs the benchmarks. Takes Google Benchmark's options.
#include <benchmark/benchmark.h>

#include "benchmarks.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  vextrel_bench::RegisterRenderingBenchmarks();
  vextrel_bench::RegisterStartBenchmarks();
  const auto sessions = vextrel_bench::RegisterCallBenchmarks();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
