#include "registry/event_registration.h"

#include <memory>

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EventListTest : public RegistryTest {
 protected:
  EventList events;
};

TEST_F(EventListTest, KeepsTypeHandleAndLoggerOfARegistration) {
  events.Append(EVENT_NEW_BUFFER, Handle(0xE1), logger);

  ASSERT_EQ(events.registrations().size(), 1U);
  const EventRegistration& registration = *events.registrations().front();
  EXPECT_EQ(registration.logger, logger);
  EXPECT_EQ(registration.eventHandle, Handle(0xE1));
  EXPECT_EQ(registration.eventType, EVENT_NEW_BUFFER);
}

TEST_F(EventListTest, KeepsTheOrderOfRegistration) {
  events.Append(EVENT_FEATURE_CHANGE, Handle(0xE1), logger);
  events.Append(EVENT_ERROR, Handle(0xE2), logger);
  events.Append(EVENT_NEW_BUFFER, Handle(0xE3), logger);

  EXPECT_THAT(TypesOf(events), ElementsAre(EVENT_FEATURE_CHANGE, EVENT_ERROR, EVENT_NEW_BUFFER));
}

TEST_F(EventListTest, FindsByTypeWhateverTheEventHandle) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);
  events.Append(EVENT_NEW_BUFFER, Handle(0xE1), logger);

  EXPECT_EQ(events.Find(EVENT_NEW_BUFFER), events.registrations()[1]);
  EXPECT_EQ(events.Find(EVENT_FEATURE_CHANGE), nullptr);
}

TEST_F(EventListTest, FindsTheFirstOfEqualTypes) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);
  events.Append(EVENT_ERROR, Handle(0xE2), logger);

  EXPECT_EQ(events.Find(EVENT_ERROR), events.registrations()[0]);
}

TEST_F(EventListTest, ComparesAllBitsOfTheType) {
  events.Append(EVENT_NEW_BUFFER, Handle(0xE1), logger);

  for (const EVENT_TYPE other : {-1, 0x101, 0x10001, 0x1000001}) {
    SCOPED_TRACE(other);
    EXPECT_EQ(events.Find(other), nullptr);
    EXPECT_FALSE(events.Erase(other));
  }
}

TEST_F(EventListTest, EraseDestroysTheFirstOfThatTypeAndKeepsTheOthersInOrder) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);
  events.Append(EVENT_NEW_BUFFER, Handle(0xE2), logger);
  events.Append(EVENT_FEATURE_CHANGE, Handle(0xE3), logger);
  events.Append(EVENT_NEW_BUFFER, Handle(0xE4), logger);
  const HeapWatch erased(events.registrations()[1]);
  const HeapWatch sameType(events.registrations()[3]);

  EXPECT_TRUE(events.Erase(EVENT_NEW_BUFFER));

  EXPECT_THAT(EventHandlesOf(events), ElementsAre(Handle(0xE1), Handle(0xE3), Handle(0xE4)));
  EXPECT_TRUE(erased.IsFreed());
  EXPECT_FALSE(sameType.IsFreed());
}

TEST_F(EventListTest, EraseOfAnUnknownTypeIsFalseAndSilent) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);

  EXPECT_FALSE(events.Erase(EVENT_NEW_BUFFER));

  EXPECT_THAT(TypesOf(events), ElementsAre(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventListTest, ClearForgetsTheRegistrationsAndLeavesThemAllocated) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);
  const EventRegistration* const registration = events.registrations()[0];
  const HeapWatch watch(registration);

  events.Clear();

  EXPECT_THAT(events.registrations(), IsEmpty());
  EXPECT_FALSE(watch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
}

TEST_F(EventListTest, TheEndOfTheListForgetsTheRegistrationsAndLeavesThemAllocated) {
  auto list = std::make_unique<EventList>();
  list->Append(EVENT_ERROR, Handle(0xE1), logger);
  const EventRegistration* const registration = list->registrations()[0];
  const HeapWatch watch(registration);

  list.reset();

  EXPECT_FALSE(watch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
}

TEST_F(EventListTest, WritesNothing) {
  events.Append(EVENT_ERROR, Handle(0xE1), logger);
  events.Append(EVENT_ERROR, Handle(0xE2), logger);
  EXPECT_TRUE(events.Erase(EVENT_ERROR));
  events.Clear();

  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel
