// SPDX-License-Identifier: MIT
#include "model/call_timings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

EnteredCall Call(std::uint64_t number, std::uint32_t thread, std::size_t function = 5) {
  EnteredCall call;
  call.number = number;
  call.thread = thread;
  call.function = function;
  call.time = static_cast<std::int64_t>(number) * 1'000'000;
  return call;
}

EnteredCall WithHandle(EnteredCall call, std::uint64_t value) {
  call.argumentKind = EnteredCall::Argument::Pointer;
  call.argument = value;
  return call;
}

std::vector<std::uint64_t> Numbers(const std::vector<EnteredCall>& calls) {
  std::vector<std::uint64_t> numbers;
  for (const EnteredCall& call : calls) {
    numbers.push_back(call.number);
  }
  return numbers;
}

TEST(CallTimings, ClaimsWhatLeftOnItsThreadInOrder) {
  CallTimings timings(true);
  EXPECT_FALSE(timings.Any());
  EXPECT_EQ(timings.Claim(1, 5, std::nullopt), nullptr);
  timings.Enter(Call(1, 1));
  timings.Enter(Call(2, 2));
  EXPECT_EQ(Numbers(timings.InTarget()), (std::vector<std::uint64_t>{1, 2}));
  timings.Leave(Call(2, 2), 20);
  timings.Leave(Call(1, 1), 10);
  EXPECT_EQ(timings.Claim(1, 6, std::nullopt), nullptr);
  EXPECT_EQ(timings.Claim(1, 5, std::nullopt)->nanoseconds, 10U);
  EXPECT_EQ(timings.Claim(1, 5, std::nullopt), nullptr);
  EXPECT_EQ(timings.Claim(2, 5, std::nullopt)->entered.number, 2U);
  EXPECT_TRUE(timings.Any());
  EXPECT_EQ(timings.NeverReturnedCount(), 0U);
}

TEST(CallTimings, TellsCallsApartByTheirHandlesWithoutThreads) {
  CallTimings timings(false);
  timings.Enter(WithHandle(Call(1, 0), 0xA));
  timings.Enter(WithHandle(Call(2, 0), 0xB));
  timings.Leave(Call(1, 0), 10);
  timings.Leave(Call(2, 0), 20);
  EXPECT_EQ(timings.Claim(0, 5, 0xB)->entered.number, 2U);
  EXPECT_EQ(timings.Claim(0, 5, 0xA)->entered.number, 1U);
  EXPECT_EQ(timings.NeverReturnedCount(), 0U);
}

TEST(CallTimings, KnowsWhatNeverReturned) {
  CallTimings timings(true);
  timings.Enter(Call(1, 1));
  timings.Enter(Call(2, 2));
  // A thread is in one call at a time: the first one is gone, with its process for example.
  timings.Enter(Call(3, 1));
  EXPECT_EQ(Numbers(timings.NeverReturned()), (std::vector<std::uint64_t>{1}));
  timings.Leave(Call(3, 1), 5);
  timings.Abandon();
  EXPECT_EQ(Numbers(timings.NeverReturned()), (std::vector<std::uint64_t>{1, 2}));
  EXPECT_EQ(timings.Claim(1, 5, std::nullopt), nullptr);
}

TEST(CallTimings, TakesALogThatStartsInsideACall) {
  CallTimings timings(true);
  timings.Leave(Call(9, 1), 2'000'000);
  const TimedCall* call = timings.Claim(1, 5, std::nullopt);
  ASSERT_NE(call, nullptr);
  EXPECT_EQ(call->entered.time, 9'000'000 - 2'000);
}

TEST(CallTimings, KeepsTheSlowestAndCountsByFunction) {
  CallTimings timings(true);
  for (std::uint64_t i = 1; i <= 30; ++i) {
    timings.Enter(Call(i, 1, i % 2));
    timings.Leave(Call(i, 1, i % 2), i * 7 % 31 * 1000);
  }
  ASSERT_EQ(timings.Slowest().size(), CallTimings::kMostSlowest);
  EXPECT_EQ(timings.Slowest()[0].nanoseconds, 30'000U);
  EXPECT_EQ(timings.Slowest()[9].nanoseconds, 21'000U);
  EXPECT_EQ(timings.DurationsOf(0).Count(), 15U);
  EXPECT_EQ(timings.DurationsOf(2).Count(), 0U);
}

TEST(CallTimings, NeedsBoundedMemoryForOneKindOfLine) {
  CallTimings timings(false);
  for (std::uint64_t i = 1; i <= 10'000; ++i) {
    timings.Enter(Call(i, 0));
  }
  EXPECT_EQ(timings.InTarget().size() + timings.NeverReturnedCount(), 10'000U);
  EXPECT_LT(timings.InTarget().size(), 2'000U);
  EXPECT_EQ(timings.NeverReturned().size(), CallTimings::kMostNeverReturned);
}

}  // namespace
}  // namespace vextrel_test
