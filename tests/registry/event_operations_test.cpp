// What every level does alike with its own events; event_operations_walk_test.cpp has the walks.
#include "registry/event_operations.h"

#include <memory>
#include <string>

#include "registry/transport_layer_node.h"
#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The root needs the event source; the other levels look at the type only.
template <typename Node>
bool RemoveOwn(Node& node, EVENT_TYPE eventType) {
  return node.RemoveEvent(eventType);
}
bool RemoveOwn(TransportLayerNode& root, EVENT_TYPE eventType) {
  return root.RemoveEvent(root.handle, eventType);
}

template <typename Node>
class EventOperationsTest : public RegistryTest {
 protected:
  void* const handle = Handle(0xFEDCBA9876543210);
  std::unique_ptr<Node> node = std::make_unique<Node>(handle, logger);
};

struct LevelNames {
  template <typename Node>
  static std::string GetName(int index) {
    static const char* const names[] = {"Buffer", "DataStream", "Device", "Interface",
                                        "TransportLayer"};
    return names[index];
  }
};

using Levels =
    testing::Types<BufferNode, DataStreamNode, DeviceNode, InterfaceNode, TransportLayerNode>;
TYPED_TEST_SUITE(EventOperationsTest, Levels, LevelNames);

struct TypeWithName {
  EVENT_TYPE type;
  const char* name;
};
constexpr TypeWithName kTypes[] = {
    {0, "EVENT_ERROR"},          {1, "EVENT_NEW_BUFFER"},       {2, "EVENT_FEATURE_INVALIDATE"},
    {3, "EVENT_FEATURE_CHANGE"}, {4, "EVENT_FEATURE_DEVEVENT"}, {1000, "EVENT_CUSTOM_ID"},
};

TYPED_TEST(EventOperationsTest, ANewRecordHasItsLoggerAndHandleAndNoEvents) {
  EXPECT_EQ(this->node->logger, this->logger);
  EXPECT_EQ(this->node->handle, this->handle);
  EXPECT_THAT(TypesOf(this->node->events), IsEmpty());

  this->node->ReportEvents();
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventOperationsTest, RegistersOnItsOwnHandleInOrderAndSilently) {
  EXPECT_TRUE(this->node->AddEvent(this->handle, EVENT_FEATURE_CHANGE, Handle(0xE1)));
  EXPECT_TRUE(this->node->AddEvent(this->handle, EVENT_ERROR, Handle(0xE2)));

  EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_FEATURE_CHANGE, EVENT_ERROR));
  EXPECT_THAT(EventHandlesOf(this->node->events), ElementsAre(Handle(0xE1), Handle(0xE2)));
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventOperationsTest, ARegistrationLogsWhereItsRecordLogs) {
  auto& other = log4cpp::Category::getInstance("registry_test.other");
  TypeParam elsewhere(this->handle, &other);

  Register(elsewhere, EVENT_ERROR, Handle(0xE1));

  EXPECT_EQ(elsewhere.events.registrations()[0]->logger, &other);
}

TYPED_TEST(EventOperationsTest, RefusesADuplicateTypeWithTheLevelsLine) {
  for (const TypeWithName& each : kTypes) {
    SCOPED_TRACE(each.name);
    Register(*this->node, each.type, Handle(0xE1));

    EXPECT_FALSE(this->node->AddEvent(this->handle, each.type, Handle(0xE2)));

    EXPECT_THAT(this->TakeLines(), ElementsAre(DuplicateEvent<TypeParam>(each.name, this->handle)));
    EXPECT_EQ(this->node->events.Find(each.type)->eventHandle, Handle(0xE1));
  }
  EXPECT_EQ(this->node->events.registrations().size(), std::size(kTypes));
}

TYPED_TEST(EventOperationsTest, TakesTheSameEventHandleForAnotherType) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  Register(*this->node, EVENT_NEW_BUFFER, Handle(0xE1));

  EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_ERROR, EVENT_NEW_BUFFER));
}

TYPED_TEST(EventOperationsTest, NamesAnUndefinedTypeByItsNumber) {
  Register(*this->node, 7, Handle(0xE1));

  EXPECT_FALSE(this->node->AddEvent(this->handle, 7, Handle(0xE2)));

  EXPECT_THAT(this->TakeLines(),
              ElementsAre(DuplicateEvent<TypeParam>("(Unknown EVENT_TYPE: 7)", this->handle)));
}

TYPED_TEST(EventOperationsTest, ReportsEachRegistrationInOrderAndKeepsTheList) {
  std::vector<std::string> expected;
  std::uintptr_t eventHandle = 0xABCDEF0012345678;
  for (const TypeWithName& each : kTypes) {
    Register(*this->node, each.type, Handle(++eventHandle));
    expected.push_back(LeftEvent<TypeParam>(each.name, Handle(eventHandle), this->handle));
  }

  this->node->ReportEvents();
  EXPECT_EQ(this->TakeLines(), expected);

  this->node->ReportEvents();
  EXPECT_EQ(this->TakeLines(), expected);
}

TYPED_TEST(EventOperationsTest, RemovesAndDestroysTheRegistrationOfThatTypeSilently) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  Register(*this->node, EVENT_NEW_BUFFER, Handle(0xE2));
  Register(*this->node, EVENT_FEATURE_CHANGE, Handle(0xE3));
  const HeapWatch removed(this->node->events.Find(EVENT_NEW_BUFFER));
  const HeapWatch kept(this->node->events.Find(EVENT_ERROR));

  EXPECT_TRUE(RemoveOwn(*this->node, EVENT_NEW_BUFFER));

  EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_ERROR, EVENT_FEATURE_CHANGE));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_FALSE(kept.IsFreed());
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventOperationsTest, RegistersATypeAgainAtTheEndAfterItsRemoval) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  Register(*this->node, EVENT_NEW_BUFFER, Handle(0xE2));
  ASSERT_TRUE(RemoveOwn(*this->node, EVENT_ERROR));

  Register(*this->node, EVENT_ERROR, Handle(0xE3));

  EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_NEW_BUFFER, EVENT_ERROR));
}

TYPED_TEST(EventOperationsTest, ReleaseReportsThenForgetsItsOwnEvents) {
  Register(*this->node, EVENT_NEW_BUFFER, Handle(0xE2));
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  const EventRegistration* const first = this->node->events.registrations()[0];
  const HeapWatch firstWatch(first);
  const HeapWatch secondWatch(this->node->events.registrations()[1]);

  EXPECT_TRUE(this->node->ReleaseEvents(this->handle));

  EXPECT_THAT(this->TakeLines(),
              ElementsAre(LeftEvent<TypeParam>("EVENT_NEW_BUFFER", Handle(0xE2), this->handle),
                          LeftEvent<TypeParam>("EVENT_ERROR", Handle(0xE1), this->handle)));
  EXPECT_THAT(TypesOf(this->node->events), IsEmpty());
  EXPECT_FALSE(firstWatch.IsFreed());
  EXPECT_FALSE(secondWatch.IsFreed());
  EXPECT_EQ(first->eventHandle, Handle(0xE2));
}

TYPED_TEST(EventOperationsTest, ReleaseOfItsOwnHandleIsTrueAndSilentWithoutEvents) {
  EXPECT_TRUE(this->node->ReleaseEvents(this->handle));
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventOperationsTest, ReleaseOfAnotherHandleIsFalseAndSilentAndChangesNothing) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));

  EXPECT_FALSE(this->node->ReleaseEvents(Handle(0xBAD)));
  EXPECT_FALSE(this->node->ReleaseEvents(Handle(0xE1)));

  EXPECT_THAT(this->TakeLines(), IsEmpty());
  EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_ERROR));
}

TYPED_TEST(EventOperationsTest, AReleasedTypeMayBeRegisteredAgain) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  ASSERT_TRUE(this->node->ReleaseEvents(this->handle));
  ASSERT_EQ(this->TakeLines().size(), 1U);

  Register(*this->node, EVENT_ERROR, Handle(0xE2));

  EXPECT_THAT(EventHandlesOf(this->node->events), ElementsAre(Handle(0xE2)));
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventOperationsTest, TheEndOfARecordForgetsItsEventsSilently) {
  Register(*this->node, EVENT_ERROR, Handle(0xE1));
  const EventRegistration* const registration = this->node->events.registrations()[0];
  const HeapWatch watch(registration);

  this->node.reset();

  EXPECT_FALSE(watch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

// --- Where the root differs ---------------------------------------------------------------------

using BelowTheRootTest = RegistryTest;

template <typename Node>
void ExpectSilentRefusals(log4cpp::Category* logger) {
  Node node(Handle(0xA), logger);
  Register(node, EVENT_ERROR, Handle(0xE1));

  EXPECT_FALSE(node.AddEvent(Handle(0xB), EVENT_NEW_BUFFER, Handle(0xE2)));
  EXPECT_FALSE(node.RemoveEvent(EVENT_NEW_BUFFER));

  EXPECT_THAT(TypesOf(node.events), ElementsAre(EVENT_ERROR));
}

TEST_F(BelowTheRootTest, UnknownSourcesAndTypesAreRefusedSilently) {
  ExpectSilentRefusals<BufferNode>(logger);
  ExpectSilentRefusals<DataStreamNode>(logger);
  ExpectSilentRefusals<DeviceNode>(logger);
  ExpectSilentRefusals<InterfaceNode>(logger);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(BelowTheRootTest, DataStreamTeardownLineCarriesNoTypeName) {
  DataStreamNode dataStream(Handle(0xD5), logger);
  Register(dataStream, EVENT_NEW_BUFFER, Handle(0xE1));

  dataStream.ReportEvents();

  EXPECT_THAT(TakeLines(), ElementsAre("WARN Event with handle 0x00000000000000E1 on DataStream "
                                       "0x00000000000000D5 was not unregistered directly using "
                                       "GCUnregisterEvent()"));
}

}  // namespace
}  // namespace vextrel
