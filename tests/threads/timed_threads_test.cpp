// SPDX-License-Identifier: MIT
// Eight threads call at the same time, with the timing of their calls in the log: each call has its
// two lines, whole, in order and on its own thread, and the numbers have no gaps.
#include <gmock/gmock.h>

#include <cstdint>
#include <latch>
#include <map>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "support/proxy.h"
#include "threads/traffic.h"

namespace vextrel_test {
namespace {

constexpr std::uint32_t kCallsPerThread = 3000;

struct TimedCall {
  std::string thread;
  std::string function;
  bool hasLeft = false;
};

class TimedThreads : public ProxyFiles {
 protected:
  TimedThreads() {
    UseLog({.file = LogFile(),
            .rootCategory = std::string("INFO, file") + kWithTiming,
            .pattern = "[%t] %c %m%n"});
    UseTarget(ScriptedTargetPath());
    LoadProxy();
    EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
    target.Script().functions = TrafficTarget();
  }
  ~TimedThreads() override {
    target.Script().functions = {};
    proxy.GCCloseLib();
    UnloadProxy();
  }

  void CallOnEightThreads() {
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        Caller caller(i);
        start.arrive_and_wait();
        for (std::uint32_t number = 0; number < kCallsPerThread; ++number) {
          static_cast<void>(caller.Call(proxy, number));
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

  const HeldTarget target;
};

TEST_F(TimedThreads, EveryCallHasItsTwoLinesAndItsNumber) {
  static_cast<void>(TakeLines());
  CallOnEightThreads();
  const std::regex enters(R"(\[(\d+)\] Vextrel\.Timing Call (\d+) enters (\w+)\(0x[0-9A-F]{16}\))");
  const std::regex leaves(
      R"(\[(\d+)\] Vextrel\.Timing Call (\d+) leaves (\w+) after \d+\.\d{3} us)");
  std::map<std::uint64_t, TimedCall> calls;
  std::map<std::string, std::uint64_t> insideOf;  // by the name of its thread
  std::size_t callLines = 0;
  for (const std::string& line : TakeLines()) {
    std::smatch match;
    if (std::regex_match(line, match, enters)) {
      const std::uint64_t number = std::stoull(match[2]);
      ASSERT_TRUE(calls.try_emplace(number, TimedCall{match[1], match[3]}).second) << line;
      ASSERT_TRUE(insideOf.try_emplace(match[1], number).second) << line;
    } else if (std::regex_match(line, match, leaves)) {
      const std::uint64_t number = std::stoull(match[2]);
      ASSERT_TRUE(calls.contains(number)) << line;
      TimedCall& call = calls.at(number);
      ASSERT_FALSE(call.hasLeft) << line;
      call.hasLeft = true;
      ASSERT_EQ(call.thread, match[1]) << line;
      ASSERT_EQ(call.function, match[3]) << line;
      ASSERT_EQ(insideOf.erase(match[1]), 1U) << line;
    } else {
      ASSERT_EQ(line.find("Timing"), std::string::npos) << line;
      callLines += line.find("GC_ERR_SUCCESS=") != std::string::npos ? 1U : 0U;
    }
  }
  // GCInitLib was the first.
  constexpr std::uint64_t count = std::uint64_t{kThreads} * kCallsPerThread;
  ASSERT_EQ(calls.size(), count);
  EXPECT_EQ(calls.begin()->first, 2U);
  EXPECT_EQ(calls.rbegin()->first, count + 1);
  for (const auto& [number, call] : calls) {
    EXPECT_TRUE(call.hasLeft) << number;
  }
  EXPECT_EQ(callLines, count);
}

}  // namespace
}  // namespace vextrel_test
