// SPDX-License-Identifier: MIT
// The time from the start of a consumer's process to its end after the first calls, "start/...".
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "benchmarks.h"
#include "session.h"
#include "start.h"
#include "support/system.h"

namespace vextrel_bench {
namespace {

constexpr int kStarts = 20;

void RunStarts(benchmark::State& state, const std::string& module, Mode mode) {
  const auto build = vextrel_test::ProgramFolder().parent_path();
  const auto config = ScratchFolder() / "start.properties";
  const auto logFile = ScratchFolder() / "start.log";
  std::ofstream(config) << "rootCategory=INFO, file\nappender.file=FileAppender\n"
                           "appender.file.fileName="
                        << logFile.string() << '\n'
                        << LayoutOf(mode);
  vextrel_test::SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER",
                            (build / "do_nothing_target.cti").string().c_str());
  vextrel_test::SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", config.string().c_str());
  for (auto _ : state) {
    if (!RunProgram(vextrel_test::ProgramFolder() / FirstCallProgram(), build / module)) {
      state.SkipWithError("the consumer failed");
      break;
    }
  }
  std::filesystem::remove(logFile);
}

}  // namespace

void RegisterStartBenchmarks() {
  const auto add = [](const char* name, const char* module) {
    benchmark::RegisterBenchmark(
        name, [module](benchmark::State& state) { RunStarts(state, module, Mode::Basic); })
        ->UseRealTime()
        ->Iterations(kStarts);
  };
  add("start/direct", "do_nothing_target.cti");
  add("start/basic", "vextrel.cti");
}

}  // namespace vextrel_bench
