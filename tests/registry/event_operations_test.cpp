// SPDX-License-Identifier: MIT
#include "registry/event_operations.h"

#include <iterator>
#include <memory>
#include <string>

#include "model/value_names.h"
#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::LevelMessages;
using model::Warn;
using vextrel::BufferNode;
using vextrel::DataStreamNode;
using vextrel::DeviceNode;
using vextrel::InterfaceNode;
using vextrel::TransportLayerNode;

// --- What every level does alike with its own events --------------------------------------------

template <typename Node>
constexpr const LevelMessages* kMessages = nullptr;
template <>
constexpr const LevelMessages* kMessages<BufferNode> = &model::kBuffer;
template <>
constexpr const LevelMessages* kMessages<DataStreamNode> = &model::kDataStream;
template <>
constexpr const LevelMessages* kMessages<DeviceNode> = &model::kDevice;
template <>
constexpr const LevelMessages* kMessages<InterfaceNode> = &model::kInterface;
template <>
constexpr const LevelMessages* kMessages<TransportLayerNode> = &model::kTransportLayer;

template <typename Node>
class EventsOfALevel : public RegistryTest {
 protected:
  // A stream's line has no type.
  [[nodiscard]] std::string Left(const std::string& type, void* event) const {
    const char* format = kMessages<Node>->eventLeft;
    return std::is_same_v<Node, DataStreamNode> ? Warn(format, {event, handle})
                                                : Warn(format, {type, event, handle});
  }

  void* const handle = Handle(0xFEDCBA9876543210);
  std::unique_ptr<Node> node = std::make_unique<Node>(handle, logger);
};

struct LevelNames {
  template <typename Node>
  static std::string GetName(int index) {
    static const char* const kNames[] = {"Buffer", "DataStream", "Device", "Interface",
                                         "TransportLayer"};
    return kNames[index];
  }
};
using Levels =
    testing::Types<BufferNode, DataStreamNode, DeviceNode, InterfaceNode, TransportLayerNode>;
TYPED_TEST_SUITE(EventsOfALevel, Levels, LevelNames);

constexpr EVENT_TYPE kTypes[] = {EVENT_FEATURE_CHANGE,
                                 EVENT_ERROR,
                                 EVENT_NEW_BUFFER,
                                 EVENT_FEATURE_DEVEVENT,
                                 EVENT_FEATURE_INVALIDATE,
                                 EVENT_CUSTOM_ID,
                                 7};

TYPED_TEST(EventsOfALevel, LogWhereTheirRecordLogs) {
  EXPECT_EQ(this->node->logger, this->logger);
  EXPECT_EQ(this->node->handle, this->handle);
  EXPECT_THAT(TypesOf(this->node->events), IsEmpty());
  auto& other = log4cpp::Category::getInstance("registry_test.other");
  TypeParam elsewhere(this->handle, &other);
  Register(elsewhere, EVENT_ERROR, this->event1);
  EXPECT_EQ(elsewhere.events.Registrations()[0]->logger, &other);
}

TYPED_TEST(EventsOfALevel, RefuseADuplicateTypeWithTheLevelsLine) {
  for (const EVENT_TYPE type : kTypes) {
    Register(*this->node, type, this->event1);
    EXPECT_FALSE(this->node->AddEvent(this->handle, type, this->event2));
    EXPECT_THAT(this->TakeLines(),
                ElementsAre(Error(kMessages<TypeParam>->eventTwice,
                                  {model::kEventTypes.NameOf(type), this->handle})));
    EXPECT_EQ(this->node->events.Find(type)->eventHandle, this->event1);
  }
  EXPECT_EQ(this->node->events.Registrations().size(), std::size(kTypes));
}

TYPED_TEST(EventsOfALevel, AreReportedInOrderThenForgottenByARelease) {
  EXPECT_TRUE(this->node->ReleaseEvents(this->handle));
  std::vector<std::string> lines;
  for (const EVENT_TYPE type : kTypes) {
    Register(*this->node, type, this->event1);
    lines.push_back(this->Left(model::kEventTypes.NameOf(type), this->event1));
  }
  const HeapWatch watch(this->node->events.Registrations()[0]);

  this->node->ReportEvents();
  EXPECT_EQ(this->TakeLines(), lines);
  EXPECT_FALSE(this->node->ReleaseEvents(this->event1));
  EXPECT_THAT(this->TakeLines(), IsEmpty());
  EXPECT_TRUE(this->node->ReleaseEvents(this->handle));
  EXPECT_EQ(this->TakeLines(), lines);

  EXPECT_THAT(TypesOf(this->node->events), IsEmpty());
  EXPECT_FALSE(watch.IsFreed());
  Register(*this->node, EVENT_ERROR, this->event2);
  EXPECT_THAT(EventHandlesOf(this->node->events), ElementsAre(this->event2));
}

TYPED_TEST(EventsOfALevel, AreForgottenSilentlyWhenTheirRecordEnds) {
  Register(*this->node, EVENT_ERROR, this->event1);
  const HeapWatch watch(this->node->events.Registrations()[0]);
  this->node.reset();
  EXPECT_FALSE(watch.IsFreed());
  EXPECT_THAT(this->TakeLines(), IsEmpty());
}

TYPED_TEST(EventsOfALevel, AreRefusedSilentlyBelowTheRootForUnknownSourcesAndTypes) {
  if constexpr (!std::is_same_v<TypeParam, TransportLayerNode>) {
    Register(*this->node, EVENT_ERROR, this->event1);
    EXPECT_FALSE(this->node->AddEvent(this->unknown, EVENT_NEW_BUFFER, this->event2));
    EXPECT_FALSE(this->node->RemoveEvent(EVENT_NEW_BUFFER));
    EXPECT_THAT(TypesOf(this->node->events), ElementsAre(EVENT_ERROR));
    EXPECT_THAT(this->TakeLines(), IsEmpty());
    EXPECT_TRUE(this->node->RemoveEvent(EVENT_ERROR));
  }
}

TEST_F(RegistryTest, ADataStreamsTeardownLineCarriesNoTypeName) {
  DataStreamNode stream(stream1, logger);
  Register(stream, EVENT_NEW_BUFFER, event2);

  stream.ReportEvents();

  EXPECT_THAT(TakeLines(), ElementsAre("WARN Event with handle 0x00000000000000E2 on DataStream "
                                       "0x0000000000000D51 was not unregistered directly using "
                                       "GCUnregisterEvent()"));
}

// --- How the operations walk the tree -----------------------------------------------------------

constexpr EVENT_TYPE kType = EVENT_NEW_BUFFER;
constexpr const char* kTypeName = "EVENT_NEW_BUFFER";

// A device on each of two interfaces, a stream with a buffer on the second.
class EventWalk : public RegistryTest {
 protected:
  InterfaceNode& interface1 = Open(iface1);
  InterfaceNode& interface2 = Open(iface2);
  DeviceNode& onInterface1 = Open(interface1, device1);
  DeviceNode& onInterface2 = Open(interface2, device2);
  DataStreamNode& stream = Open(onInterface2, stream1);
  BufferNode& buffer = Announce(stream, buffer1);
};

TEST_F(EventWalk, RegisteringTwiceOnADeviceWritesTheDevicesLineThenTheRoots) {
  EXPECT_TRUE(root->AddEvent(device2, kType, event1));
  EXPECT_THAT(TakeLines(), IsEmpty());

  EXPECT_FALSE(root->AddEvent(device2, kType, event2));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kDevice.eventTwice, {kTypeName, device2}),
                                       Error(model::kEventSourceNotFound, {kTypeName, device2})));
  EXPECT_THAT(EventHandlesOf(onInterface2.events), ElementsAre(event1));
}

TEST_F(EventWalk, RegisteringTwiceOnTheRootWritesTheRootsDuplicateLineAlone) {
  Register(*root, kType, event1);
  interface1.handle = tl;

  EXPECT_FALSE(root->AddEvent(tl, kType, event2));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kTransportLayer.eventTwice, {kTypeName, tl})));
  EXPECT_THAT(TypesOf(interface1.events), IsEmpty());
}

TEST_F(EventWalk, RegisteringOnAnUnknownHandleWritesOnlyTheRootsLine) {
  EXPECT_FALSE(root->AddEvent(unknown, kType, event1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kEventSourceNotFound, {kTypeName, unknown})));
}

TEST_F(EventWalk, ARefusalDoesNotKeepALaterRecordWithTheSameHandleFromAccepting) {
  onInterface1.handle = stream1;
  EXPECT_TRUE(root->AddEvent(stream1, kType, event1));
  EXPECT_TRUE(root->AddEvent(stream1, kType, event2));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kDevice.eventTwice, {kTypeName, stream1})));

  EXPECT_FALSE(root->AddEvent(stream1, kType, event3));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kDevice.eventTwice, {kTypeName, stream1}),
                                       Error(model::kDataStream.eventTwice, {kTypeName, stream1}),
                                       Error(model::kEventSourceNotFound, {kTypeName, stream1})));
  EXPECT_THAT(EventHandlesOf(onInterface1.events), ElementsAre(event1));
  EXPECT_THAT(EventHandlesOf(stream.events), ElementsAre(event2));
}

TEST_F(EventWalk, UnregisteringOnADeviceFirstRemovesAnEarlierInterfacesRegistration) {
  Register(interface1, kType, event1);
  Register(onInterface2, kType, event2);

  EXPECT_TRUE(root->RemoveEvent(device2, kType));
  EXPECT_THAT(TypesOf(interface1.events), IsEmpty());
  EXPECT_THAT(TypesOf(onInterface2.events), ElementsAre(kType));

  EXPECT_TRUE(root->RemoveEvent(device2, kType));
  EXPECT_THAT(TypesOf(onInterface2.events), IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventWalk, UnregisteringOnTheRootReportsEvenIfALowerRecordHasTheType) {
  Register(interface1, kType, event1);

  EXPECT_FALSE(root->RemoveEvent(tl, kType));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kEventNotAdded, {kTypeName, tl})));
  EXPECT_THAT(TypesOf(interface1.events), ElementsAre(kType));
}

TEST_F(EventWalk, UnregisteringATypeThatNoLowerRecordHasNamesTheGivenEventSource) {
  Register(*root, kType, event1);

  EXPECT_FALSE(root->RemoveEvent(device1, kType));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kEventNotFound, {kTypeName, device1})));
  EXPECT_THAT(TypesOf(root->events), ElementsAre(kType));
}

TEST_F(EventWalk, ClosingADeviceWithTwoRegistrationsReportsThemInOrderAndForgetsThem) {
  Register(onInterface2, EVENT_FEATURE_CHANGE, event1);
  Register(onInterface2, EVENT_ERROR, event2);

  EXPECT_TRUE(root->ReleaseEvents(device2));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Warn(model::kDevice.eventLeft, {"EVENT_FEATURE_CHANGE", event1, device2}),
                          Warn(model::kDevice.eventLeft, {"EVENT_ERROR", event2, device2})));

  EXPECT_FALSE(root->RemoveEvent(device2, EVENT_ERROR));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(model::kEventNotFound, {"EVENT_ERROR", device2})));
}

TEST_F(EventWalk, ReleaseDoesNotDescendBelowADataStream) {
  Register(stream, kType, event1);
  Register(buffer, kType, event2);

  EXPECT_FALSE(root->ReleaseEvents(buffer1));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_TRUE(root->ReleaseEvents(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(Warn(model::kDataStream.eventLeft, {event1, stream1})));
  EXPECT_THAT(TypesOf(buffer.events), ElementsAre(kType));
}

TEST_F(EventWalk, ReleaseOnAnAbsentRootDoesNothing) {
  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(nullptr, tl));
  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(nullptr, nullptr));
  EXPECT_TRUE(TransportLayerNode::ReleaseEventsOn(root.get(), device1));
  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(root.get(), unknown));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
