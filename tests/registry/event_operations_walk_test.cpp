// How the event operations walk the tree of records.
#include <algorithm>
#include <string>

#include "full_tree.h"
#include "registry/event_operations.h"
#include "registry/transport_layer_node.h"
#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EventWalkTest : public RegistryTest {
 protected:
  FullTree tree{logger};
  TransportLayerNode& root = tree.root;

  // By position, from 1.
  InterfaceNode& InterfaceAt(int i) { return *root.interfaces[Index(i)]; }
  DeviceNode& DeviceAt(int i, int d) { return *InterfaceAt(i).devices[Index(d)]; }
  DataStreamNode& DataStreamAt(int i, int d, int s) {
    return *DeviceAt(i, d).dataStreams[Index(s)];
  }
  BufferNode& BufferAt(int i, int d, int s, int b) {
    return *DataStreamAt(i, d, s).buffers[Index(b)];
  }

 private:
  static std::size_t Index(int position) { return static_cast<std::size_t>(position - 1); }
};

constexpr EVENT_TYPE kType = EVENT_NEW_BUFFER;
constexpr const char* kTypeName = "EVENT_NEW_BUFFER";

// --- AddEvent -----------------------------------------------------------------------------------

TEST_F(EventWalkTest, AddEventReachesEveryRecordThroughTheRoot) {
  std::vector<void*> sources;
  tree.ForEachRecord([&](const auto& record) { sources.push_back(record.handle); });
  ASSERT_EQ(sources.size(), std::size_t{FullTree::kRecords});

  for (std::size_t i = 0; i < sources.size(); ++i) {
    SCOPED_TRACE(i);
    const auto type = static_cast<EVENT_TYPE>(2000 + i);

    EXPECT_TRUE(root.AddEvent(sources[i], type, Handle(0xE1)));

    EXPECT_THAT(tree.HoldersOf(type), ElementsAre(sources[i]));
  }
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventWalkTest, RegisteringOnAnUnknownHandleWritesOnlyTheRootsLine) {
  EXPECT_FALSE(root.AddEvent(Handle(0xBAD), kType, Handle(0xE1)));

  EXPECT_THAT(TakeLines(), ElementsAre(EventSourceNotFound(kTypeName, Handle(0xBAD))));
  EXPECT_THAT(tree.HoldersOf(kType), IsEmpty());
}

TEST_F(EventWalkTest, RegisteringTwiceOnADeviceWritesTheDevicesLineThenTheRoots) {
  void* const device = FullTree::Device(1, 2);
  EXPECT_TRUE(root.AddEvent(device, EVENT_NEW_BUFFER, Handle(0xE1)));

  EXPECT_FALSE(root.AddEvent(device, EVENT_NEW_BUFFER, Handle(0xE2)));

  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<DeviceNode>("EVENT_NEW_BUFFER", device),
                                       EventSourceNotFound("EVENT_NEW_BUFFER", device)));
  EXPECT_THAT(EventHandlesOf(DeviceAt(1, 2).events), ElementsAre(Handle(0xE1)));
}

TEST_F(EventWalkTest, ADuplicateOnAnyRecordBelowTheRootWritesItsLineThenTheRoots) {
  const auto linesOfDuplicateOn = [&](void* source) {
    EXPECT_TRUE(root.AddEvent(source, kType, Handle(0xE1)));
    EXPECT_FALSE(root.AddEvent(source, kType, Handle(0xE2)));
    return TakeLines();
  };

  void* const iface = FullTree::Interface(2);
  EXPECT_THAT(linesOfDuplicateOn(iface),
              ElementsAre(DuplicateEvent<InterfaceNode>(kTypeName, iface),
                          EventSourceNotFound(kTypeName, iface)));
  void* const device = FullTree::Device(2, 2);
  EXPECT_THAT(linesOfDuplicateOn(device), ElementsAre(DuplicateEvent<DeviceNode>(kTypeName, device),
                                                      EventSourceNotFound(kTypeName, device)));
  void* const dataStream = FullTree::DataStream(2, 2, 2);
  EXPECT_THAT(linesOfDuplicateOn(dataStream),
              ElementsAre(DuplicateEvent<DataStreamNode>(kTypeName, dataStream),
                          EventSourceNotFound(kTypeName, dataStream)));
  void* const buffer = FullTree::Buffer(2, 2, 2, 2);
  EXPECT_THAT(linesOfDuplicateOn(buffer), ElementsAre(DuplicateEvent<BufferNode>(kTypeName, buffer),
                                                      EventSourceNotFound(kTypeName, buffer)));
}

TEST_F(EventWalkTest, ADuplicateOnTheRootWritesTheRootsDuplicateLineAlone) {
  EXPECT_TRUE(root.AddEvent(FullTree::Tl(), kType, Handle(0xE1)));
  EXPECT_FALSE(root.AddEvent(FullTree::Tl(), kType, Handle(0xE2)));

  EXPECT_THAT(TakeLines(),
              ElementsAre(DuplicateEvent<TransportLayerNode>(kTypeName, FullTree::Tl())));
}

TEST_F(EventWalkTest, TheFirstRecordOfTheWalkTakesTheRegistrationDepthFirst) {
  BufferAt(1, 1, 2, 2).handle = Handle(0x77);
  DeviceAt(1, 2).handle = Handle(0x77);
  InterfaceAt(2).handle = Handle(0x77);

  EXPECT_TRUE(root.AddEvent(Handle(0x77), kType, Handle(0xE1)));

  EXPECT_NE(BufferAt(1, 1, 2, 2).events.Find(kType), nullptr);
  EXPECT_THAT(tree.HoldersOf(kType), ElementsAre(Handle(0x77)));
}

TEST_F(EventWalkTest, ARefusalDoesNotKeepALaterRecordWithTheSameHandleFromAccepting) {
  DeviceAt(1, 1).handle = Handle(0x77);
  DeviceAt(1, 2).handle = Handle(0x77);
  DataStreamAt(2, 2, 1).handle = Handle(0x77);
  EXPECT_TRUE(root.AddEvent(Handle(0x77), kType, Handle(0xE1)));
  EXPECT_THAT(TakeLines(), IsEmpty());

  EXPECT_TRUE(root.AddEvent(Handle(0x77), kType, Handle(0xE2)));
  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<DeviceNode>(kTypeName, Handle(0x77))));

  EXPECT_TRUE(root.AddEvent(Handle(0x77), kType, Handle(0xE3)));
  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<DeviceNode>(kTypeName, Handle(0x77)),
                                       DuplicateEvent<DeviceNode>(kTypeName, Handle(0x77))));

  EXPECT_FALSE(root.AddEvent(Handle(0x77), kType, Handle(0xE4)));
  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<DeviceNode>(kTypeName, Handle(0x77)),
                                       DuplicateEvent<DeviceNode>(kTypeName, Handle(0x77)),
                                       DuplicateEvent<DataStreamNode>(kTypeName, Handle(0x77)),
                                       EventSourceNotFound(kTypeName, Handle(0x77))));

  EXPECT_THAT(EventHandlesOf(DeviceAt(1, 1).events), ElementsAre(Handle(0xE1)));
  EXPECT_THAT(EventHandlesOf(DeviceAt(1, 2).events), ElementsAre(Handle(0xE2)));
  EXPECT_THAT(EventHandlesOf(DataStreamAt(2, 2, 1).events), ElementsAre(Handle(0xE3)));
}

TEST_F(EventWalkTest, TheRecordThatRefusesIsNotDescendedInto) {
  InterfaceAt(1).handle = Handle(0x77);
  DeviceAt(1, 1).handle = Handle(0x77);
  Register(InterfaceAt(1), kType, Handle(0xE1));

  EXPECT_FALSE(root.AddEvent(Handle(0x77), kType, Handle(0xE2)));

  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<InterfaceNode>(kTypeName, Handle(0x77)),
                                       EventSourceNotFound(kTypeName, Handle(0x77))));
  EXPECT_THAT(TypesOf(DeviceAt(1, 1).events), IsEmpty());
}

TEST_F(EventWalkTest, TheRootsOwnHandleIsNeverOfferedToTheInterfaces) {
  InterfaceAt(1).handle = FullTree::Tl();
  EXPECT_TRUE(root.AddEvent(FullTree::Tl(), kType, Handle(0xE1)));

  EXPECT_FALSE(root.AddEvent(FullTree::Tl(), kType, Handle(0xE2)));

  EXPECT_THAT(EventHandlesOf(root.events), ElementsAre(Handle(0xE1)));
  EXPECT_THAT(TypesOf(InterfaceAt(1).events), IsEmpty());
}

// --- RemoveEvent --------------------------------------------------------------------------------

TEST_F(EventWalkTest, RemoveEventTakesTheFirstOfTheTypeDepthFirstWhateverTheHandle) {
  std::vector<void*> remaining;
  tree.ForEachRecord([&](auto& record) {
    Register(record, kType, Handle(0xE1));
    remaining.push_back(record.handle);
  });
  ASSERT_EQ(remaining.size(), std::size_t{FullTree::kRecords});
  void* const named = FullTree::Buffer(2, 2, 2, 2);

  while (remaining.size() > 1) {
    SCOPED_TRACE(remaining.size());
    remaining.erase(remaining.begin() + 1);  // The root's own is never the one.
    EXPECT_TRUE(root.RemoveEvent(named, kType));
    ASSERT_EQ(tree.HoldersOf(kType), remaining);
  }
  EXPECT_THAT(TakeLines(), IsEmpty());

  EXPECT_FALSE(root.RemoveEvent(named, kType));
  EXPECT_THAT(TakeLines(), ElementsAre(EventNotOnAnyInterface(kTypeName, named)));
  EXPECT_THAT(tree.HoldersOf(kType), ElementsAre(FullTree::Tl()));
}

TEST_F(EventWalkTest, RemoveEventAcceptsAHandleThatIsNowhereInTheTree) {
  Register(DataStreamAt(2, 1, 1), kType, Handle(0xE1));

  EXPECT_TRUE(root.RemoveEvent(Handle(0xBAD), kType));

  EXPECT_THAT(tree.HoldersOf(kType), IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventWalkTest, RemoveEventDestroysTheOneItTakesAndNoOther) {
  Register(InterfaceAt(1), EVENT_ERROR, Handle(0xE1));
  Register(BufferAt(1, 1, 1, 1), kType, Handle(0xE2));
  Register(BufferAt(1, 1, 1, 2), kType, Handle(0xE3));
  const HeapWatch otherType(InterfaceAt(1).events.Find(EVENT_ERROR));
  const HeapWatch first(BufferAt(1, 1, 1, 1).events.Find(kType));
  const HeapWatch second(BufferAt(1, 1, 1, 2).events.Find(kType));

  EXPECT_TRUE(root.RemoveEvent(FullTree::Buffer(1, 1, 1, 2), kType));

  EXPECT_FALSE(otherType.IsFreed());
  EXPECT_TRUE(first.IsFreed());
  EXPECT_FALSE(second.IsFreed());
}

TEST_F(EventWalkTest, UnregisteringOnADeviceFirstRemovesAnEarlierInterfacesRegistration) {
  void* const device = FullTree::Device(2, 1);
  EXPECT_TRUE(root.AddEvent(FullTree::Interface(1), kType, Handle(0xE1)));
  EXPECT_TRUE(root.AddEvent(device, kType, Handle(0xE2)));

  EXPECT_TRUE(root.RemoveEvent(device, kType));
  EXPECT_THAT(tree.HoldersOf(kType), ElementsAre(device));

  EXPECT_TRUE(root.RemoveEvent(device, kType));
  EXPECT_THAT(tree.HoldersOf(kType), IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventWalkTest, UnregisteringOnTheRootReportsEvenIfALowerRecordHasTheType) {
  Register(InterfaceAt(1), kType, Handle(0xE1));

  EXPECT_FALSE(root.RemoveEvent(FullTree::Tl(), kType));

  EXPECT_THAT(TakeLines(), ElementsAre(EventNotOnTl(kTypeName, FullTree::Tl())));
  EXPECT_THAT(tree.HoldersOf(kType), ElementsAre(FullTree::Interface(1)));
}

TEST_F(EventWalkTest, UnregisteringOnTheRootASecondTimeIsReported) {
  Register(root, kType, Handle(0xE1));

  EXPECT_TRUE(root.RemoveEvent(FullTree::Tl(), kType));
  EXPECT_THAT(TakeLines(), IsEmpty());

  EXPECT_FALSE(root.RemoveEvent(FullTree::Tl(), kType));
  EXPECT_THAT(TakeLines(), ElementsAre(EventNotOnTl(kTypeName, FullTree::Tl())));
}

TEST_F(EventWalkTest, UnregisteringATypeNoLowerRecordHasNamesTheGivenEventSource) {
  Register(root, kType, Handle(0xE1));
  Register(DeviceAt(1, 1), EVENT_ERROR, Handle(0xE2));

  EXPECT_FALSE(root.RemoveEvent(FullTree::Device(1, 1), kType));

  EXPECT_THAT(TakeLines(), ElementsAre(EventNotOnAnyInterface(kTypeName, FullTree::Device(1, 1))));
  EXPECT_THAT(tree.HoldersOf(kType), ElementsAre(FullTree::Tl()));
}

// --- ReleaseEvents ------------------------------------------------------------------------------

// Releases one record's events in a tree that has one on every record.
class ReleaseWalkTest : public EventWalkTest {
 protected:
  ReleaseWalkTest() {
    tree.ForEachRecord([&](auto& record) {
      Register(record, kType, Handle(0xE1));
      holders.push_back(record.handle);
    });
  }

  void ExpectReleased(void* handle, const std::string& line) {
    SCOPED_TRACE(line);
    EXPECT_TRUE(root.ReleaseEvents(handle));
    EXPECT_THAT(TakeLines(), ElementsAre(line));
    holders.erase(std::ranges::find(holders, handle));
    EXPECT_EQ(tree.HoldersOf(kType), holders);
  }

  std::vector<void*> holders;
};

TEST_F(ReleaseWalkTest, ReleaseFindsEachRecordDownToTheDataStreamsAndLeavesTheOthersAlone) {
  ExpectReleased(FullTree::Tl(),
                 LeftEvent<TransportLayerNode>(kTypeName, Handle(0xE1), FullTree::Tl()));
  for (int i = 1; i <= FullTree::kFanOut; ++i) {
    void* const iface = FullTree::Interface(i);
    ExpectReleased(iface, LeftEvent<InterfaceNode>(kTypeName, Handle(0xE1), iface));
    for (int d = 1; d <= FullTree::kFanOut; ++d) {
      void* const device = FullTree::Device(i, d);
      ExpectReleased(device, LeftEvent<DeviceNode>(kTypeName, Handle(0xE1), device));
      for (int s = 1; s <= FullTree::kFanOut; ++s) {
        void* const dataStream = FullTree::DataStream(i, d, s);
        ExpectReleased(dataStream, LeftEvent<DataStreamNode>(kTypeName, Handle(0xE1), dataStream));
      }
    }
  }
}

TEST_F(ReleaseWalkTest, ReleaseDoesNotDescendBelowADataStream) {
  void* const buffer = FullTree::Buffer(1, 1, 1, 1);

  EXPECT_FALSE(root.ReleaseEvents(buffer));
  EXPECT_FALSE(InterfaceAt(1).ReleaseEvents(buffer));
  EXPECT_FALSE(DeviceAt(1, 1).ReleaseEvents(buffer));
  EXPECT_FALSE(DataStreamAt(1, 1, 1).ReleaseEvents(buffer));

  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_EQ(tree.HoldersOf(kType), holders);
}

TEST_F(ReleaseWalkTest, ReleaseOfAnUnknownHandleIsFalseAndSilent) {
  EXPECT_FALSE(root.ReleaseEvents(Handle(0xBAD)));

  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_EQ(tree.HoldersOf(kType), holders);
}

TEST_F(ReleaseWalkTest, ReleaseStopsAtTheFirstRecordOfTheWalkWithThatHandle) {
  DataStreamAt(1, 2, 1).handle = Handle(0x77);
  InterfaceAt(2).handle = Handle(0x77);

  EXPECT_TRUE(root.ReleaseEvents(Handle(0x77)));
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DataStreamNode>(kTypeName, Handle(0xE1), Handle(0x77))));

  EXPECT_TRUE(root.ReleaseEvents(Handle(0x77)));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_THAT(TypesOf(InterfaceAt(2).events), ElementsAre(kType));
}

TEST_F(EventWalkTest, ClosingADeviceReportsItsRegistrationsInOrderAndForgetsThem) {
  void* const device = FullTree::Device(1, 1);
  EXPECT_TRUE(root.AddEvent(device, EVENT_FEATURE_CHANGE, Handle(0xE1)));
  EXPECT_TRUE(root.AddEvent(device, EVENT_ERROR, Handle(0xE2)));

  EXPECT_TRUE(root.ReleaseEvents(device));
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DeviceNode>("EVENT_FEATURE_CHANGE", Handle(0xE1), device),
                          LeftEvent<DeviceNode>("EVENT_ERROR", Handle(0xE2), device)));

  EXPECT_FALSE(root.RemoveEvent(device, EVENT_ERROR));
  EXPECT_THAT(TakeLines(), ElementsAre(EventNotOnAnyInterface("EVENT_ERROR", device)));
}

TEST_F(EventWalkTest, ReleaseOnAnAbsentRootDoesNothing) {
  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(nullptr, FullTree::Tl()));
  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(nullptr, nullptr));

  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(EventWalkTest, ReleaseOnAPresentRootIsItsReleaseEvents) {
  Register(DeviceAt(1, 2), kType, Handle(0xE1));

  EXPECT_TRUE(TransportLayerNode::ReleaseEventsOn(&root, FullTree::Device(1, 2)));
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DeviceNode>(kTypeName, Handle(0xE1), FullTree::Device(1, 2))));

  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(&root, Handle(0xBAD)));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// --- ReportEvents -------------------------------------------------------------------------------

TEST_F(ReleaseWalkTest, ReportEventsDoesNotDescend) {
  root.ReportEvents();
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<TransportLayerNode>(kTypeName, Handle(0xE1), FullTree::Tl())));
  DeviceAt(1, 1).ReportEvents();
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DeviceNode>(kTypeName, Handle(0xE1), FullTree::Device(1, 1))));
  DataStreamAt(1, 1, 1).ReportEvents();
  EXPECT_THAT(TakeLines(), ElementsAre(LeftEvent<DataStreamNode>(kTypeName, Handle(0xE1),
                                                                 FullTree::DataStream(1, 1, 1))));
}

}  // namespace
}  // namespace vextrel
