// SPDX-License-Identifier: MIT
#include "registry/event_list.h"

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

// What one record has at most of a type, a list may have twice.
class EventListTest : public RegistryTest {
 protected:
  EventListTest() {
    events.Append(EVENT_ERROR, event1, logger);
    events.Append(EVENT_NEW_BUFFER, event2, logger);
    events.Append(EVENT_FEATURE_CHANGE, event1, logger);
    events.Append(EVENT_NEW_BUFFER, event3, logger);
  }

  vextrel::EventList events;
};

TEST_F(EventListTest, KeepsWhatIsAppendedInOrder) {
  EXPECT_THAT(TypesOf(events),
              ElementsAre(EVENT_ERROR, EVENT_NEW_BUFFER, EVENT_FEATURE_CHANGE, EVENT_NEW_BUFFER));
  EXPECT_THAT(EventHandlesOf(events), ElementsAre(event1, event2, event1, event3));
  EXPECT_EQ(events.Registrations()[0]->logger, logger);
}

TEST_F(EventListTest, FindsTheFirstOfAType) {
  EXPECT_EQ(events.Find(EVENT_NEW_BUFFER), events.Registrations()[1]);
  EXPECT_EQ(events.Find(EVENT_CUSTOM_ID), nullptr);
}

TEST_F(EventListTest, ComparesAllBitsOfTheType) {
  for (const EVENT_TYPE other : {-1, 0x101, 0x10001, 0x1000001}) {
    EXPECT_EQ(events.Find(other), nullptr) << other;
    EXPECT_FALSE(events.Erase(other)) << other;
  }
}

TEST_F(EventListTest, EraseDestroysTheFirstOfATypeAndKeepsTheOthersInOrder) {
  const HeapWatch erased(events.Registrations()[1]);
  const HeapWatch sameType(events.Registrations()[3]);

  EXPECT_TRUE(events.Erase(EVENT_NEW_BUFFER));

  EXPECT_THAT(EventHandlesOf(events), ElementsAre(event1, event1, event3));
  EXPECT_TRUE(erased.IsFreed());
  EXPECT_FALSE(sameType.IsFreed());
}

TEST_F(EventListTest, ClearForgetsTheRegistrationsAndLeavesThemAllocated) {
  const HeapWatch watch(events.Registrations()[0]);

  events.Clear();

  EXPECT_THAT(events.Registrations(), IsEmpty());
  EXPECT_FALSE(watch.IsFreed());
}

TEST_F(EventListTest, TheEndOfTheListForgetsThemAsWell) {
  const HeapWatch watch(events.Registrations()[0]);
  { const vextrel::EventList ending = std::move(events); }
  EXPECT_FALSE(watch.IsFreed());
}

}  // namespace
}  // namespace vextrel_test
