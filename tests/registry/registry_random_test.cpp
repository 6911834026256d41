// SPDX-License-Identifier: MIT
// The whole registry under random operations, against the model: results, lines, records, and what
// is destroyed and what only forgotten.
#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <string>

#include "registry/heap_watch.h"
#include "registry/registry_fixture.h"
#include "registry/registry_pair.h"

namespace vextrel_test {
namespace {

constexpr int kTrees = 120;
constexpr int kStepsPerTree = 400;

class RegistryUnderRandomOperations : public RecordedLines {};

// A step destroys what it takes out of a record that stays, but for events that are released.
void ExpectDestroyed(const std::vector<RegistryPair::Object>& before,
                     const std::deque<HeapWatch>& watches, const RegistryPair& pair) {
  std::set<const void*> left;
  for (const RegistryPair::Object& each : pair.Objects()) {
    left.insert(each.object);
  }
  std::set<const void*> gone;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const auto [object, owner] = before[i];
    const bool isGone = left.count(object) == 0;
    if (isGone) {
      gone.insert(object);
    }
    const bool isDestroyed = isGone && gone.count(owner) == 0 && !pair.HasReleasedEvents();
    ASSERT_EQ(watches[i].IsFreed(), isDestroyed) << "object " << i;
  }
}

TEST_F(RegistryUnderRandomOperations, DoesWhatTheModelDoes) {
  std::mt19937_64 random(1);  // NOLINT: the same operations in every run
  const Dice dice = [&](std::uint64_t count) { return random() % count; };
  std::map<std::string, int> counts;
  for (int tree = 0; tree < kTrees; ++tree) {
    RegistryPair pair(Handle(tree % 2 == 0 ? 0x10 : 1), *logger, recorder);
    for (int step = 0; step < kStepsPerTree; ++step) {
      SCOPED_TRACE(testing::Message() << "tree " << tree << ", step " << step);
      const std::vector<RegistryPair::Object> before = pair.Objects();
      std::deque<HeapWatch> watches;
      for (const RegistryPair::Object& each : before) {
        watches.emplace_back(each.object);
      }
      ASSERT_NO_THROW(pair.Step(dice));
      ASSERT_NO_FATAL_FAILURE(ExpectDestroyed(before, watches, pair));
    }
    ASSERT_NO_THROW(pair.Report());
    model::ForEachRegistryMessage(
        [&](const char* message) { counts[message] += pair.CountOf(message); });
  }
  for (const auto& [message, count] : counts) {
    EXPECT_GT(count, 10) << message;
  }
}

}  // namespace
}  // namespace vextrel_test
