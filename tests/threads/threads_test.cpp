// SPDX-License-Identifier: MIT
// Eight threads call at the same time, each on a stream of its own and on one that all share: every
// line is in the log, whole and once, and each thread's lines are in order.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "support/proxy.h"
#include "threads/line_checker.h"
#include "threads/traffic.h"

namespace vextrel_test {
namespace {

// How many calls all threads make together. The variable overrides it.
std::uint32_t CallCount() {
  const char* asked = std::getenv("VEXTREL_THREAD_CALLS");
  constexpr std::uint32_t usual = 100'000;
  return asked != nullptr ? static_cast<std::uint32_t>(std::stoul(asked)) : usual;
}

double SecondsSince(std::chrono::steady_clock::time_point begin) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

class Threads : public ProxyFiles {
 protected:
  Threads() {
    UseLog({.file = LogFile(),
            .rootCategory = "INFO, file",
            .pattern = "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n"});
    UseTarget(ScriptedTargetPath());
    LoadProxy();
  }
  ~Threads() override {
    script.functions = {};
    proxy.GCCloseLib();
    UnloadProxy();
    // It may be large, and a failure's message has the line.
    std::error_code ignored;
    std::filesystem::remove(LogFile(), ignored);
  }

  // Opens all streams, each with its buffers and an event.
  void Open() {
    ASSERT_EQ(proxy.GCInitLib(), 0);
    void* parent = Handle(0x1000);
    ASSERT_EQ(proxy.TLOpen(&parent), 0);
    ASSERT_EQ(proxy.TLOpenInterface(parent, "interface", &parent), 0);
    ASSERT_EQ(proxy.IFOpenDevice(parent, "device", DEVICE_ACCESS_CONTROL, &parent), 0);
    for (unsigned stream = 0; stream < kStreams; ++stream) {
      DS_HANDLE hDS = StreamHandle(stream);
      ASSERT_EQ(proxy.DevOpenDataStream(parent, "stream", &hDS), 0);
      EVENT_HANDLE hEvent = EventHandle(stream);
      ASSERT_EQ(proxy.GCRegisterEvent(hDS, EVENT_NEW_BUFFER, &hEvent), 0);
      for (unsigned thread = 0; thread < kThreads; ++thread) {
        for (unsigned i = 0; i < kBuffersPerThread; ++i) {
          BUFFER_HANDLE hBuffer = BufferHandle(stream, thread, i);
          ASSERT_EQ(proxy.DSAllocAndAnnounceBuffer(hDS, 1024, nullptr, &hBuffer), 0);
        }
      }
    }
  }

  const HeldTarget target;
  TargetScript& script = target.Script();
};

TEST_F(Threads, EveryLineIsThereWholeAndInItsThreadsOrder) {
  ASSERT_NO_FATAL_FAILURE(Open());
  const auto begin = std::filesystem::file_size(LogFile());
  script.functions = TrafficTarget();
  const std::uint32_t callsPerThread = CallCount() / kThreads;
  std::vector<Caller> callers;
  for (unsigned i = 0; i < kThreads; ++i) {
    callers.emplace_back(i);
  }

  const auto callsBegin = std::chrono::steady_clock::now();
  std::latch start(kThreads);
  std::vector<std::uint32_t> failures(kThreads);
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      std::uint32_t failed = 0;
      for (std::uint32_t number = 0; number < callsPerThread; ++number) {
        failed += callers[i].Call(proxy, number) == GC_ERR_SUCCESS ? 0U : 1U;
      }
      failures[i] = failed;
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  const double callSeconds = SecondsSince(callsBegin);
  EXPECT_THAT(failures, ::testing::Each(0U));

  const auto checkBegin = std::chrono::steady_clock::now();
  LineChecker checker(kThreads, callsPerThread, [&](std::size_t thread, std::uint32_t number) {
    return callers[thread].LineOf(number);
  });
  std::ifstream log(LogFile());
  log.seekg(static_cast<std::streamoff>(begin));
  std::uint64_t count = 0;
  for (std::string line; std::getline(log, line); ++count) {
    ASSERT_TRUE(checker.Accept(line))
        << "line " << count << " is\n  " << line << "\nbut next may come" << checker.Expected();
  }
  EXPECT_TRUE(checker.IsComplete()) << "still to come" << checker.Expected();
  EXPECT_EQ(count, std::uint64_t{callsPerThread} * kThreads);
  std::cout << count << " calls by " << kThreads << " threads in " << callSeconds
            << " s, their lines checked in " << SecondsSince(checkBegin) << " s\n";
}

}  // namespace
}  // namespace vextrel_test
