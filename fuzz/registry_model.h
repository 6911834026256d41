// What the handle registry is to know and to report, in the plainest way: one kind of record for
// all five levels, and a list of lines.
#ifndef VEXTREL_FUZZ_REGISTRY_MODEL_H
#define VEXTREL_FUZZ_REGISTRY_MODEL_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "gentl/gentl.h"

namespace vextrel_fuzz {

using Handle = void*;

enum class Level : std::uint8_t { TransportLayer, Interface, Device, DataStream, Buffer };

struct Record {
  Record(Level itsLevel, Handle itsHandle) : level(itsLevel), handle(itsHandle) {}

  Record* Find(Handle wanted);
  // False if there is one with that handle.
  bool Add(Handle added);
  // The lines that closing leaves behind: those of the children, then those of the events.
  void ReportChildren(std::vector<std::string>& lines) const;
  void ReportEvents(std::vector<std::string>& lines) const;
  bool EraseEvent(EVENT_TYPE type);

  Level level;
  Handle handle;
  bool queued = false;
  Handle lastEvent = nullptr;
  std::list<Record> children;
  std::vector<std::pair<EVENT_TYPE, Handle>> events;
};

class RegistryModel {
 public:
  explicit RegistryModel(Handle transportLayer) : root(Level::TransportLayer, transportLayer) {}

  // Each as the operation of the registry's root that has the same name.
  bool AddInterface(Handle added);
  bool RemoveInterface(Handle removed);
  bool AddDevice(Handle ifHandle, Handle added);
  bool RemoveDevice(Handle removed);
  bool AddDataStream(Handle devHandle, Handle added);
  bool RemoveDataStream(Handle removed);
  bool AddBuffer(Handle dsHandle, Handle added);
  bool RemoveBuffer(Handle dsHandle, Handle removed);
  bool SetBufferQueued(Handle buffer, bool queued);
  void OnEventData(Handle event, const void* data, std::size_t size);
  void OnFlushQueue(Handle dsHandle, ACQ_QUEUE_TYPE operation);
  bool AddEvent(Handle source, EVENT_TYPE type, Handle event);
  bool RemoveEvent(Handle source, EVENT_TYPE type);
  bool ReleaseEvents(Handle source) { return ReleaseEvents(root, source); }

  // A stream on a device itself, which the root does only below its first interface.
  void AddDataStreamOn(Record& device, Handle added);

  Record root;
  // Each as "PRIORITY message".
  std::vector<std::string> lines;

 private:
  void Error(const std::string& message) { lines.push_back("ERROR " + message); }
  bool AddEvent(Record& record, Handle source, EVENT_TYPE type, Handle event);
  bool ReleaseEvents(Record& record, Handle source);
  // What a device and an interface do; their lines differ in a word.
  bool ChangeBuffer(Record& record, Handle dsHandle, Handle buffer, bool adds);
};

// As a line shows it.
[[nodiscard]] std::string Shown(Handle handle);

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_REGISTRY_MODEL_H
