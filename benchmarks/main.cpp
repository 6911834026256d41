// Runs the benchmarks that the command line asks for, see Google Benchmark's own options.
#include <benchmark/benchmark.h>

#include "benchmarks.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  vextrel_benchmark::RegisterRenderingBenchmarks();
  vextrel_benchmark::RegisterStartBenchmarks();
  const auto sessions = vextrel_benchmark::RegisterCallBenchmarks();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
