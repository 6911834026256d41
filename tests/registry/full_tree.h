// A registry with two of everything on every level.
#ifndef VEXTREL_TESTS_REGISTRY_FULL_TREE_H
#define VEXTREL_TESTS_REGISTRY_FULL_TREE_H

#include <cstdint>

#include "registry/transport_layer_node.h"
#include "registry_fixture.h"

// The handles say where a record stands: Device(2, 1) is the first device of the second interface.
struct FullTree {
  static constexpr int kFanOut = 2;
  static constexpr int kRecords = 1 + 2 + 4 + 8 + 16;

  explicit FullTree(log4cpp::Category* logger) : root(Tl(), logger) {
    for (int i = 1; i <= kFanOut; ++i) {
      root.AddInterface(Interface(i));
      auto& iface = *root.interfaces.back();
      for (int d = 1; d <= kFanOut; ++d) {
        iface.AddDevice(Device(i, d));
        auto& device = *iface.devices.back();
        for (int s = 1; s <= kFanOut; ++s) {
          device.AddDataStream(DataStream(i, d, s));
          for (int b = 1; b <= kFanOut; ++b) {
            device.dataStreams.back()->AddBuffer(Buffer(i, d, s, b));
          }
        }
      }
    }
  }

  static void* Tl() { return Handle(0x10000); }
  static void* Interface(int i) { return At(0x20000, i, 0, 0, 0); }
  static void* Device(int i, int d) { return At(0x30000, i, d, 0, 0); }
  static void* DataStream(int i, int d, int s) { return At(0x40000, i, d, s, 0); }
  static void* Buffer(int i, int d, int s, int b) { return At(0x50000, i, d, s, b); }

  // Visits the record and all below it, each record before its children, in list order.
  template <typename Visit>
  void ForEachRecord(Visit visit) {
    visit(root);
    for (auto* iface : root.interfaces) {
      visit(*iface);
      for (auto* device : iface->devices) {
        visit(*device);
        for (auto* dataStream : device->dataStreams) {
          visit(*dataStream);
          for (auto* buffer : dataStream->buffers) {
            visit(*buffer);
          }
        }
      }
    }
  }

  // The handles of the records that have an event of that type, in the same order.
  [[nodiscard]] std::vector<void*> HoldersOf(EVENT_TYPE eventType) {
    std::vector<void*> holders;
    ForEachRecord([&](const auto& record) {
      if (record.events.Find(eventType) != nullptr) {
        holders.push_back(record.handle);
      }
    });
    return holders;
  }

  vextrel::TransportLayerNode root;

 private:
  static void* At(std::uintptr_t level, int i, int d, int s, int b) {
    return Handle(level + static_cast<std::uintptr_t>(i * 0x1000 + d * 0x100 + s * 0x10 + b));
  }
};

#endif  // VEXTREL_TESTS_REGISTRY_FULL_TREE_H
