// SPDX-License-Identifier: MIT
#include "registry/registry_pair.h"

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace vextrel_test {
namespace {

using model::Record;

void Require(bool holds, const std::string& what) {
  if (!holds) {
    throw std::runtime_error("not the same: " + what);
  }
}

template <typename T, std::size_t size>
T Pick(const Dice& dice, const T (&values)[size]) {
  return values[dice(size)];
}

using model::Level;

// Few handles, so that they meet often: three that all levels share, null among them, and three of
// each level's own. Two of these differ in the high half only.
void* AnyHandle(const Dice& dice, Level level) {
  const auto own = std::uintptr_t{0x10} << static_cast<unsigned>(level);
  const std::uintptr_t handles[] = {0, 1, 2, own, own + 1, own + 0x100000000};
  return reinterpret_cast<void*>(Pick(dice, handles));
}

void* AnyEventSource(const Dice& dice) {
  return AnyHandle(dice, static_cast<Level>(dice(5)));
}

// Two have no name, and two differ from another one in their high bits only.
EVENT_TYPE AnyType(const Dice& dice) {
  constexpr EVENT_TYPE types[] = {0, 1, 1, 2, 3, 4, 1000, -1, 0x101, 0x10001};
  return Pick(dice, types);
}

void CompareEvents(const vextrel::EventList& events, const Record& expected,
                   const log4cpp::Category& logger) {
  const auto& actual = events.Registrations();
  Require(actual.size() == expected.events.size(), "the number of events");
  for (std::size_t i = 0; i < actual.size(); ++i) {
    Require(actual[i]->eventType == expected.events[i].type, "an event's type");
    Require(actual[i]->eventHandle == expected.events[i].event, "an event's handle");
    Require(actual[i]->logger == &logger, "an event's logger");
  }
}

void CompareOwnFields(const vextrel::BufferNode& actual, const Record& expected) {
  Require(actual.queued == expected.queued, "a buffer's queued mark");
}
void CompareOwnFields(const vextrel::DataStreamNode& actual, const Record& expected) {
  Require(actual.lastEventHandle == expected.lastEvent, "a stream's last event");
}
template <typename Node>
void CompareOwnFields(const Node& /*actual*/, const Record& /*expected*/) {}

template <typename Node>
void CompareRecord(const Node& actual, const Record& expected, const log4cpp::Category& logger) {
  Require(actual.handle == expected.handle, "a record's handle");
  Require(actual.logger == &logger, "a record's logger");
  CompareEvents(actual.events, expected, logger);
  CompareOwnFields(actual, expected);
  Require(actual.Children().size() == expected.children.size(), "the number of children");
  auto child = expected.children.begin();
  for (const auto* record : actual.Children()) {
    CompareRecord(*record, *child++, logger);
  }
}

template <typename Node>
void Collect(const Node& node, std::vector<RegistryPair::Object>& objects) {
  for (const auto* registration : node.events.Registrations()) {
    objects.push_back({registration, &node});
  }
  for (const auto* child : node.Children()) {
    objects.push_back({child, &node});
    Collect(*child, objects);
  }
}

template <typename Node>
void DeleteBelow(Node& node) {
  for (auto* registration : node.events.Registrations()) {
    delete registration;
  }
  for (auto* child : node.Children()) {
    DeleteBelow(*child);
    delete child;
  }
}

}  // namespace

RegistryPair::RegistryPair(void* transportLayer, log4cpp::Category& logger, LineRecorder& recorder)
    : logger_(logger), recorder_(recorder), root_(transportLayer, &logger) {
  model_.Open(transportLayer);
}

void RegistryPair::Step(const Dice& dice) {
  hasReleasedEvents_ = false;
  Operate(dice);
  Compare();
}

void RegistryPair::Operate(const Dice& dice) {
  const auto same = [](bool actual, bool expected) { Require(actual == expected, "the result"); };
  void* iface = AnyHandle(dice, Level::Interface);
  void* device = AnyHandle(dice, Level::Device);
  void* stream = AnyHandle(dice, Level::DataStream);
  void* buffer = AnyHandle(dice, Level::Buffer);
  void* event = AnyHandle(dice, Level::TransportLayer);
  void* source = AnyEventSource(dice);
  const EVENT_TYPE type = AnyType(dice);
  // What builds the tree up comes more often than what tears it down.
  switch (dice(32)) {
    case 0:
    case 1:
      return same(root_.AddInterface(iface), model_.AddInterface(iface));
    case 2:
      return same(root_.RemoveInterface(iface), model_.RemoveInterface(iface));
    case 3:
    case 4:
    case 5:
      return same(root_.AddDevice(iface, device), model_.AddDevice(iface, device));
    case 6:
      return same(root_.RemoveDevice(device), model_.RemoveDevice(device));
    case 7:
    case 8:
    case 9:
      return same(root_.AddDataStream(device, stream), model_.AddDataStream(device, stream));
    case 10:
    case 11:
      return AddDataStreamOnAnyDevice(dice, stream);
    case 12:
      return same(root_.RemoveDataStream(stream), model_.RemoveDataStream(stream));
    case 13:
    case 14:
    case 15:
    case 16:
      return same(root_.AddBuffer(stream, buffer), model_.AddBuffer(stream, buffer));
    case 17:
    case 18:
      return same(root_.RemoveBuffer(stream, buffer), model_.RemoveBuffer(stream, buffer));
    case 19:
    case 20: {
      const bool queued = dice(4) != 0;
      return same(root_.SetBufferQueued(buffer, queued), model_.SetBufferQueued(buffer, queued));
    }
    case 21:
    case 22:
      return Deliver(dice, event, buffer);
    case 23: {
      constexpr ACQ_QUEUE_TYPE operations[] = {-1, 0, 1, 2, 3, 4, 4, 4, 5, 1000, 0x104};
      const ACQ_QUEUE_TYPE operation = Pick(dice, operations);
      root_.OnFlushQueue(stream, operation);
      return model_.OnFlushQueue(stream, operation);
    }
    case 24:
      return same(root_.RemoveEvent(source, type), model_.RemoveEvent(source, type));
    case 25:
      hasReleasedEvents_ = true;
      return same(vextrel::TransportLayerNode::ReleaseEventsOn(&root_, source),
                  model_.ReleaseEvents(source));
    default:
      return same(root_.AddEvent(source, type, event), model_.AddEvent(source, type, event));
  }
}

// Only the eight bytes of one handle are a delivery, and only then are they read.
void RegistryPair::Deliver(const Dice& dice, void* event, void* buffer) {
  constexpr std::uint64_t sizes[] = {8, 8, 8, 8,  8,  8,  0,           1,
                                     4, 7, 9, 15, 16, 24, 0x100000008, ~std::uint64_t{0}};
  const std::uint64_t size = Pick(dice, sizes);
  // Neither aligned nor a byte longer.
  std::vector<char> data(3 + (size < 8 ? size : 8));
  data.shrink_to_fit();
  std::memcpy(data.data() + 3, &buffer, data.size() - 3);
  const void* given = dice(8) == 0 ? nullptr : data.data() + 3;
  root_.OnEventData(event, given, size);
  model_.OnEventData(event, given, size);
}

// Below any interface: the root itself would stop at the first.
void RegistryPair::AddDataStreamOnAnyDevice(const Dice& dice, void* added) {
  std::uint64_t wanted = dice(8);
  auto interfaceNode = root_.interfaces.begin();
  for (Record& interface : model_.Root().children) {
    auto deviceNode = (*interfaceNode++)->devices.begin();
    for (Record& device : interface.children) {
      vextrel::DeviceNode& node = **deviceNode++;
      if (wanted-- == 0) {
        Require(node.AddDataStream(added), "the success of a duplicate");
        model_.AddChild(device, added);
      }
    }
  }
}

void RegistryPair::Report() {
  root_.ReportInterfaces();
  root_.ReportEvents();
  model_.ReportRoot();
  Compare();
}

void RegistryPair::Compare() {
  CompareLines();
  CompareRecord(root_, model_.Root(), logger_);
}

void RegistryPair::CompareLines() {
  const std::vector<std::string> actual = recorder_.TakeLines();
  const std::vector<std::string> expected = log_.TakeTexts();
  for (std::size_t i = 0; i < actual.size() || i < expected.size(); ++i) {
    const std::string line = i < actual.size() ? actual[i] : "(nothing)";
    const std::string wanted = i < expected.size() ? expected[i] : "(nothing)";
    Require(line == wanted, "a line\nis       '" + line + "'\nought to be '" + wanted + "'");
  }
}

std::vector<RegistryPair::Object> RegistryPair::Objects() const {
  std::vector<Object> objects;
  Collect(root_, objects);
  return objects;
}

void RegistryPair::DeleteRecords() {
  DeleteBelow(root_);
}

}  // namespace vextrel_test
