// SPDX-License-Identifier: MIT
// Random sessions: every function in any order with any result, and the log compared with what a
// plain model of the proxy expects.
//
// VEXTREL_SESSION_SEED sets another seed than the fixed one; the first difference is shown with the
// number of its call, which is the same in every run with that seed.
#include "session/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/messages.h"
#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {
namespace {

constexpr int kCalls = 100000;
constexpr int kCallsPerComparison = 1000;
// Reaches the rarest situation: records that share a handle keep registrations until they are
// removed.
constexpr std::uint64_t kDefaultSeed = 2;
constexpr std::string_view kLineEnd = kOnWindows ? "\r\n" : "\n";

// One of every function, in the order of the interface. Of those of GenTL 1.3 to 1.6, the info
// queries and the stacked ones are left to tests of their own.
const std::vector<RandomCall>& AllCalls() {
  static const std::vector<RandomCall> kAll = [] {
    std::vector<RandomCall> calls = LifecycleCalls();
    for (RandomCall& call : ForwardedCalls()) {
      calls.push_back(std::move(call));
    }
    for (RandomCall& call : NewerCalls()) {
      calls.push_back(std::move(call));
    }
    std::vector<RandomCall> sorted;
    for (const std::string& name : FunctionNames()) {
      const auto found = std::ranges::find(calls, name, &RandomCall::function);
      if (found != calls.end()) {
        sorted.push_back(*found);
      } else if (!IsNewer(name)) {
        throw std::logic_error("no random call of " + name);
      }
    }
    return sorted;
  }();
  return kAll;
}

// The weights favor calls that build the tree over those that tear it down; few end it all.
const RandomCall& Choose(Session& session) {
  std::uint64_t weights = 0;
  for (const RandomCall& call : AllCalls()) {
    weights += call.weight;
  }
  std::uint64_t choice = session.random.Below(weights);
  auto chosen = AllCalls().begin();
  while (choice >= chosen->weight) {
    choice -= chosen->weight;
    ++chosen;
  }
  return *chosen;
}

const RandomCall& Find(std::string_view function) {
  return *std::ranges::find(AllCalls(), function, &RandomCall::function);
}

// Soon leaves the states in which little is logged: no target, no transport layer, a failed load.
const RandomCall& ChooseFor(Session& session) {
  if (session.tables == nullptr && session.random.OneIn(10)) {
    return Find(session.random.OneIn(3) ? "GCCloseLib" : "GCInitLib");
  }
  if (session.tables != nullptr && !session.isTargetLoaded && session.random.OneIn(20)) {
    return Find("GCCloseLib");
  }
  if (!session.registry.IsOpen() && session.random.OneIn(25)) {
    return Find("TLOpen");
  }
  return Choose(session);
}

struct ExpectedCall {
  int number;
  std::string_view function;
  std::vector<model::ExpectedText> lines;
};

std::string ReadFrom(const std::filesystem::path& path, std::size_t position) {
  std::ifstream file(path, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(position));
  return {std::istreambuf_iterator<char>(file), {}};
}

// Succeeds iff `text` is what the calls wrote, one after another, and nothing else.
::testing::AssertionResult Matches(std::string_view text, const std::vector<ExpectedCall>& calls) {
  std::size_t position = 0;
  for (const ExpectedCall& call : calls) {
    for (const model::ExpectedText& line : call.lines) {
      std::string_view rest = text.substr(position);
      const std::size_t size = line.Match(rest, kLineEnd);
      rest.remove_prefix(std::min(size, rest.size()));
      if (size == std::string_view::npos || !rest.starts_with(kLineEnd)) {
        return ::testing::AssertionFailure()
               << "call " << call.number << ", " << call.function << ", expected\n"
               << line.Describe() << "\nbut the log goes on with\n"
               << model::Printable(text.substr(position, 2000));
      }
      position += size + kLineEnd.size();
    }
  }
  if (position != text.size()) {
    return ::testing::AssertionFailure() << "the last of these calls wrote more than expected:\n"
                                         << model::Printable(text.substr(position, 2000));
  }
  return ::testing::AssertionSuccess();
}

std::uint64_t Seed() {
  const char* seed = std::getenv("VEXTREL_SESSION_SEED");
  return seed != nullptr ? std::strtoull(seed, nullptr, 10) : kDefaultSeed;
}

void ExpectThatEverythingOccurred(const Session& session) {
  for (const std::string& name : FunctionNames()) {
    EXPECT_TRUE(session.calls.count(name) == 1) << name << " was never called";
    if (!IsNewer(name)) {
      EXPECT_GT(session.log.CountOf(NotExported(name)), 0) << name;
    }
  }
  if (!NewerCalls().empty()) {
    EXPECT_GT(session.log.CountOf(kNewerNotExported), 0);
  }
  model::ForEachMessage(
      [&](const char* message) { EXPECT_GT(session.log.CountOf(message), 0) << message; });
  for (GC_ERROR result = -1016; result <= -1000; ++result) {
    EXPECT_TRUE(session.results.count(result) == 1) << result << " was never returned";
  }
  for (const GC_ERROR result : {0, 1, -10000, -10001, INT32_MAX, INT32_MIN}) {
    EXPECT_TRUE(session.results.count(result) == 1) << result << " was never returned";
  }
}

}  // namespace

class RandomSession : public ProxyFiles {};

TEST_F(RandomSession, LogsLineByLineWhatItsCallsDictate) {
  const std::uint64_t seed = Seed();
  RecordProperty("seed", std::to_string(seed));
  std::cout << "VEXTREL_SESSION_SEED=" << seed << std::endl;
  UseLogFile();
  ASSERT_NO_FATAL_FAILURE(LoadProxy());
  Session session(seed, proxy);
  std::vector<ExpectedCall> calls;
  std::size_t compared = 0;
  for (int number = 1; number <= kCalls; ++number) {
    // The first call gives the proxy its logger.
    const RandomCall& call = number == 1 ? Find("GCInitLib") : ChooseFor(session);
    call.make(session);
    ASSERT_FALSE(HasFailure()) << "call " << number << ", " << call.function;
    session.memory.Clear();
    calls.push_back({number, call.function, session.log.Take()});
    if (number % kCallsPerComparison == 0 || number == kCalls) {
      const std::string text = ReadFrom(LogFile(), compared);
      ASSERT_TRUE(Matches(text, calls));
      compared += text.size();
      calls.clear();
    }
  }
  ExpectThatEverythingOccurred(session);
  UnloadProxy();
}

}  // namespace vextrel_test::session
