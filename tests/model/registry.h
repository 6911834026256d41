// SPDX-License-Identifier: MIT
// The tree of handles that the proxy has seen opened: one kind of record on five levels.
#ifndef VEXTREL_TESTS_MODEL_REGISTRY_H
#define VEXTREL_TESTS_MODEL_REGISTRY_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <vector>

#include "model/log.h"
#include "model/messages.h"

namespace vextrel_test::model {

enum class Level : std::uint8_t { TransportLayer, Interface, Device, DataStream, Buffer };

struct Registration {
  std::int32_t type;
  void* event;
};

struct Record {
  Level level;
  void* handle;
  std::list<Record> children;
  std::vector<Registration> events;
  bool queued = false;        // of a buffer
  void* lastEvent = nullptr;  // of a data stream
};

// Operations of the same names as the product's root has, with the same results. All but IsOpen,
// Open and ReleaseEvents REQUIRE an open root.
class Registry {
 public:
  // Writes its lines to `log`, which must outlive it.
  explicit Registry(Log& log) : log_(log) {}

  [[nodiscard]] bool IsOpen() const { return root_.has_value(); }
  // Replaces an open root without a line.
  void Open(void* hTL) { root_ = Record{Level::TransportLayer, hTL, {}, {}}; }
  // Reports what is left on the root, and forgets everything.
  void Close();
  void ReportRoot() const;

  bool AddInterface(void* hIface) { return AddChild(*root_, hIface); }
  bool RemoveInterface(void* hIface) { return RemoveChild(*root_, hIface); }
  bool AddDevice(void* hIface, void* hDevice);
  bool RemoveDevice(void* hDevice);
  bool AddDataStream(void* hDevice, void* hDataStream);
  bool RemoveDataStream(void* hDataStream);
  bool AddBuffer(void* hDataStream, void* hBuffer) {
    return AddBuffer(*root_, hDataStream, hBuffer);
  }
  bool RemoveBuffer(void* hDataStream, void* hBuffer) {
    return RemoveBuffer(*root_, hDataStream, hBuffer);
  }

  bool SetBufferQueued(void* hBuffer, bool queued) {
    return SetBufferQueued(*root_, hBuffer, queued);
  }
  void OnEventData(void* event, const void* data, std::size_t size);
  void OnFlushQueue(void* hDataStream, std::int32_t operation);

  bool AddEvent(void* source, std::int32_t type, void* event);
  bool RemoveEvent(void* source, std::int32_t type);
  // False without a root.
  bool ReleaseEvents(void* handle) { return IsOpen() && ReleaseEvents(*root_, handle); }

  // Adds a child to any record of the tree; false, with a line, on a duplicate.
  bool AddChild(Record& parent, void* child);
  [[nodiscard]] Record& Root() { return *root_; }

 private:
  bool RemoveChild(Record& parent, void* child);
  // Asks the records of the parents' level in order; each level that is passed over says so.
  bool RemoveBelow(Record& record, Level parents, void* child,
                   const char* LevelMessages::*notRemoved);
  void ReportChildren(const Record& record) const;
  void ReportEvents(const Record& record) const;
  bool AddBuffer(Record& record, void* hDataStream, void* hBuffer);
  bool RemoveBuffer(Record& record, void* hDataStream, void* hBuffer);
  bool SetBufferQueued(Record& record, void* hBuffer, bool queued);
  bool AddEvent(Record& record, void* source, std::int32_t type, void* event);
  bool ReleaseEvents(Record& record, void* handle);

  Log& log_;
  std::optional<Record> root_;
};

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_REGISTRY_H
