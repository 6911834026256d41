// Random operations on the handle registry, in step with a model: the same results, the same lines,
// the same records.
#include <fuzzer/FuzzedDataProvider.h>
#include <sanitizer/lsan_interface.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/Priority.hh>
#include <string>
#include <vector>

#include "check.h"
#include "exact_memory.h"
#include "registry/transport_layer_node.h"
#include "registry_model.h"

namespace {

using vextrel::TransportLayerNode;
using vextrel_fuzz::Check;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::Handle;
using vextrel_fuzz::Record;
using vextrel_fuzz::RegistryModel;

// Keeps each line as "PRIORITY message".
class LineRecorder : public log4cpp::AppenderSkeleton {
 public:
  LineRecorder() : AppenderSkeleton("lines") {}
  void close() override {}
  [[nodiscard]] bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

  std::vector<std::string> lines;

 protected:
  void _append(const log4cpp::LoggingEvent& event) override {
    lines.push_back((event.priority == 300   ? "ERROR "
                     : event.priority == 400 ? "WARN "
                                             : "? ") +
                    event.message);
  }
};

// One for the whole run; what the registry forgets on purpose is no leak.
struct Log {
  Log() {
    __lsan_disable();
    category.setPriority(log4cpp::Priority::DEBUG);
    category.setAdditivity(false);
    category.addAppender(recorder);
  }
  log4cpp::Category& category = log4cpp::Category::getInstance("registry");
  LineRecorder& recorder = *new LineRecorder;
};

// Few handles, the same for every level, so that they meet often. Null is one of them.
Handle AnyHandle(FuzzedDataProvider& data) {
  return reinterpret_cast<Handle>(data.ConsumeIntegralInRange<std::uintptr_t>(0, 7));
}

EVENT_TYPE AnyType(FuzzedDataProvider& data) {
  return data.PickValueInArray<EVENT_TYPE>({0, 1, 4, 1000, -1});
}

void CheckEvents(const vextrel::EventList& events, const Record& expected) {
  const auto& actual = events.registrations();
  Check(actual.size() == expected.events.size(), "as many events");
  for (std::size_t i = 0; i < actual.size(); ++i) {
    Check(actual[i]->eventType == expected.events[i].first, "an event's type");
    Check(actual[i]->eventHandle == expected.events[i].second, "an event's handle");
  }
}

void CheckOwnFields(const vextrel::BufferNode& actual, const Record& expected) {
  Check(actual.queued == expected.queued, "a buffer's queued mark");
}
void CheckOwnFields(const vextrel::DataStreamNode& actual, const Record& expected) {
  Check(actual.lastEventHandle == expected.lastEvent, "a stream's last event");
}
template <typename Node>
void CheckOwnFields(const Node& /*actual*/, const Record& /*expected*/) {}

template <typename Node>
void CheckRecord(const Node& actual, const Record& expected, const log4cpp::Category& logger) {
  Check(actual.handle == expected.handle, "a record's handle");
  Check(actual.logger == &logger, "a record's logger");
  CheckEvents(actual.events, expected);
  CheckOwnFields(actual, expected);
  const auto& children = actual.Children();
  Check(children.size() == expected.children.size(), "as many children");
  auto child = expected.children.begin();
  for (const auto* record : children) {
    CheckRecord(*record, *child++, logger);
  }
}

// The tree forgets its records; those that are still in it at the end are given back.
template <typename Node>
void DeleteBelow(Node& node) {
  for (auto* registration : node.events.registrations()) {
    delete registration;
  }
  for (auto* child : node.Children()) {
    DeleteBelow(*child);
    delete child;
  }
}

class Session {
 public:
  Session(FuzzedDataProvider& data, Log& log, Handle transportLayer)
      : data_(data), log_(log), root_(transportLayer, &log.category), model_(transportLayer) {}

  void Run() {
    log_.recorder.lines.clear();
    while (data_.remaining_bytes() > 0) {
      Step();
      CheckLines();
      CheckRecord(root_, model_.root, log_.category);
    }
    root_.ReportInterfaces();
    root_.ReportEvents();
    model_.root.ReportChildren(model_.lines);
    model_.root.ReportEvents(model_.lines);
    CheckLines();
    DeleteBelow(root_);
  }

 private:
  void Step() {
    const Handle a = AnyHandle(data_);
    const Handle b = AnyHandle(data_);
    const EVENT_TYPE type = AnyType(data_);
    switch (data_.ConsumeIntegralInRange(0, 15)) {
      case 0:
        return Same(root_.AddInterface(a), model_.AddInterface(a));
      case 1:
        return Same(root_.RemoveInterface(a), model_.RemoveInterface(a));
      case 2:
        return Same(root_.AddDevice(a, b), model_.AddDevice(a, b));
      case 3:
        return Same(root_.RemoveDevice(a), model_.RemoveDevice(a));
      case 4:
        return Same(root_.AddDataStream(a, b), model_.AddDataStream(a, b));
      case 5:
        return Same(root_.RemoveDataStream(a), model_.RemoveDataStream(a));
      case 6:
      case 7:
        return Same(root_.AddBuffer(a, b), model_.AddBuffer(a, b));
      case 8:
        return Same(root_.RemoveBuffer(a, b), model_.RemoveBuffer(a, b));
      case 9:
        return Same(root_.SetBufferQueued(a, true), model_.SetBufferQueued(a, true));
      case 10:
        return Deliver(a, b);
      case 11:
        return Flush(a);
      case 12:
        return Same(root_.AddEvent(a, type, b), model_.AddEvent(a, type, b));
      case 13:
        return Same(root_.RemoveEvent(a, type), model_.RemoveEvent(a, type));
      case 14:
        return Same(TransportLayerNode::ReleaseEventsOn(&root_, a), model_.ReleaseEvents(a));
      default:
        return AddDataStreamOnAnyDevice(a);
    }
  }

  static void Same(bool actual, bool expected) { Check(actual == expected, "the result"); }

  // Only the eight bytes of one handle are a delivery, and only then are they read.
  void Deliver(Handle event, Handle buffer) {
    const auto size = data_.PickValueInArray<std::size_t>({8, 8, 8, 0, 4, 16});
    const bool isNull = data_.ConsumeIntegralInRange(0, 7) == 0;
    const std::string_view bytes(reinterpret_cast<const char*>(&buffer), sizeof buffer);
    const vextrel_fuzz::ExactMemory memory(bytes.substr(0, size), 3);
    const void* given = isNull ? nullptr : memory.data();
    root_.OnEventData(event, given, size);
    model_.OnEventData(event, given, size);
  }

  void Flush(Handle dataStream) {
    const auto operation = data_.ConsumeIntegralInRange<ACQ_QUEUE_TYPE>(-1, 5);
    root_.OnFlushQueue(dataStream, operation);
    model_.OnFlushQueue(dataStream, operation);
  }

  // Below whatever interface: the root itself would stop at the first.
  void AddDataStreamOnAnyDevice(Handle added) {
    auto wanted = data_.ConsumeIntegralInRange(0, 7);
    auto interfaceNode = root_.interfaces.begin();
    for (Record& interface : model_.root.children) {
      auto deviceNode = (*interfaceNode++)->devices.begin();
      for (Record& device : interface.children) {
        vextrel::DeviceNode& node = **deviceNode++;
        if (wanted-- == 0) {
          Check(node.AddDataStream(added), "a duplicate is a success");
          model_.AddDataStreamOn(device, added);
        }
      }
    }
  }

  void CheckLines() {
    std::vector<std::string>& actual = log_.recorder.lines;
    for (std::size_t i = 0; i < actual.size() && i < model_.lines.size(); ++i) {
      CheckText(actual[i], model_.lines[i]);
    }
    Check(actual.size() == model_.lines.size(), "as many lines");
    actual.clear();
    model_.lines.clear();
  }

  FuzzedDataProvider& data_;
  Log& log_;
  TransportLayerNode root_;
  RegistryModel model_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static Log log;
  FuzzedDataProvider data(bytes, size);
  const Handle transportLayer = AnyHandle(data);
  Session(data, log, transportLayer).Run();
  return 0;
}
