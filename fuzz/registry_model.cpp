#include "registry_model.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace vextrel_fuzz {
namespace {

// Only the types that the fuzzer uses.
std::string TypeName(EVENT_TYPE type) {
  switch (type) {
    case 0:
      return "EVENT_ERROR";
    case 1:
      return "EVENT_NEW_BUFFER";
    case 4:
      return "EVENT_FEATURE_DEVEVENT";
    case 1000:
      return "EVENT_CUSTOM_ID";
    default:
      return "(Unknown EVENT_TYPE: " + std::to_string(type) + ")";
  }
}

// The words of each level's own lines, which differ in capitals, too.
struct Words {
  const char* duplicateEvent;
  const char* event;
  const char* object;
  const char* leftOpen;
};

const Words& WordsOf(Level level) {
  static const Words words[] = {
      {"The Event type % has already been registered on TL with handle ",
       "Event type % with handle # on Transport Layer ", "", ""},
      {"The Event type % has already been registered on Interface with handle ",
       "Event type % with handle # on interface ", "Interface",
       "Interface with handle # on TL @ was not closed properly using IFClose()"},
      {"The event type % has already been registered on device with handle ",
       "Event type % with handle # on device ", "Device",
       "Device with handle # on interface @ was not closed properly using DevClose()"},
      {"The event type % has already been registered on datastream with handle ",
       "Event with handle # on DataStream ", "DataStream",
       "DataStream with handle # on Device @ was not closed properly using DSClose()"},
      {"The event type % has already been registered on buffer with handle ",
       "Event type % with handle # on Buffer ", "Buffer",
       "Buffer with handle # on DataStream @ was not revoked properly using DSRevokeBuffer()"}};
  return words[static_cast<std::size_t>(level)];
}

std::string Fill(std::string text, char place, const std::string& value) {
  const std::size_t at = text.find(place);
  return at == std::string::npos ? text : text.replace(at, 1, value);
}

const char* ParentWord(Level level) {
  switch (level) {
    case Level::Interface:
      return "TL";
    case Level::Device:
      return "Interface";
    case Level::DataStream:
      return "Device";
    default:
      return "DataStream";
  }
}

std::string AlreadyAdded(Level level, Handle added, Handle parent) {
  return std::string(WordsOf(level).object) + " object with the handle " + Shown(added) +
         " has already been added on " + ParentWord(level) + " with handle " + Shown(parent);
}

std::string NotDefined(Level level, Handle wanted, Handle parent) {
  return std::string(WordsOf(level).object) + " object with the handle " + Shown(wanted) +
         " is not defined on " + ParentWord(level) + " with handle " + Shown(parent);
}

std::string UnableToAdd(Level level, Handle added, Handle parent, const char* where,
                        Handle whereHandle) {
  return std::string("Unable to add ") + WordsOf(level).object + " with handle " + Shown(added) +
         "! " + ParentWord(level) + " with handle " + Shown(parent) + " on " + where + " " +
         Shown(whereHandle) + " was not found!";
}

std::string UnableToRemove(Level level, Handle removed, const char* where, Handle whereHandle) {
  return std::string("Unable to remove ") + WordsOf(level).object + " with handle " +
         Shown(removed) + " on any " + where + " " + Shown(whereHandle) + "!";
}

// Closes a child, if it is there, with the lines that this leaves behind.
bool Close(Record& parent, Handle wanted, std::vector<std::string>& lines) {
  for (auto child = parent.children.begin(); child != parent.children.end(); ++child) {
    if (child->handle == wanted) {
      child->ReportChildren(lines);
      child->ReportEvents(lines);
      parent.children.erase(child);
      return true;
    }
  }
  const auto level = static_cast<Level>(static_cast<int>(parent.level) + 1);
  lines.push_back("ERROR " + NotDefined(level, wanted, parent.handle));
  return false;
}

bool RemoveFirstEvent(Record& record, EVENT_TYPE type) {
  if (record.EraseEvent(type)) {
    return true;
  }
  for (Record& child : record.children) {
    if (RemoveFirstEvent(child, type)) {
      return true;
    }
  }
  return false;
}

// Every data stream, in the order of the walk.
template <typename Visit>
void ForEachDataStream(Record& record, Visit visit) {
  if (record.level == Level::DataStream) {
    visit(record);
    return;
  }
  for (Record& child : record.children) {
    ForEachDataStream(child, visit);
  }
}

}  // namespace

std::string Shown(Handle handle) {
  char text[32] = {};
  std::snprintf(text, sizeof text, "0x%016" PRIXPTR, reinterpret_cast<std::uintptr_t>(handle));
  return text;
}

Record* Record::Find(Handle wanted) {
  for (Record& child : children) {
    if (child.handle == wanted) {
      return &child;
    }
  }
  return nullptr;
}

bool Record::Add(Handle added) {
  if (Find(added) != nullptr) {
    return false;
  }
  children.emplace_back(static_cast<Level>(static_cast<int>(level) + 1), added);
  return true;
}

void Record::ReportChildren(std::vector<std::string>& lines) const {
  for (const Record& child : children) {
    lines.push_back("ERROR " + Fill(Fill(WordsOf(child.level).leftOpen, '#', Shown(child.handle)),
                                    '@', Shown(handle)));
  }
}

void Record::ReportEvents(std::vector<std::string>& lines) const {
  for (const auto& [type, event] : events) {
    lines.push_back("WARN " +
                    Fill(Fill(WordsOf(level).event, '#', Shown(event)), '%', TypeName(type)) +
                    Shown(handle) + " was not unregistered directly using GCUnregisterEvent()");
  }
}

bool Record::EraseEvent(EVENT_TYPE type) {
  for (auto event = events.begin(); event != events.end(); ++event) {
    if (event->first == type) {
      events.erase(event);
      return true;
    }
  }
  return false;
}

bool RegistryModel::AddInterface(Handle added) {
  if (!root.Add(added)) {
    Error(AlreadyAdded(Level::Interface, added, root.handle));
    return false;
  }
  return true;
}

bool RegistryModel::RemoveInterface(Handle removed) {
  return Close(root, removed, lines);
}

bool RegistryModel::AddDevice(Handle ifHandle, Handle added) {
  Record* interface = root.Find(ifHandle);
  if (interface == nullptr) {
    Error(UnableToAdd(Level::Device, added, ifHandle, "TL", root.handle));
  } else if (!interface->Add(added)) {
    Error(AlreadyAdded(Level::Device, added, ifHandle));
  }
  return true;
}

bool RegistryModel::RemoveDevice(Handle removed) {
  for (Record& interface : root.children) {
    if (Close(interface, removed, lines)) {
      return true;
    }
  }
  Error(UnableToRemove(Level::Device, removed, "Interface on TL", root.handle));
  return false;
}

bool RegistryModel::AddDataStream(Handle devHandle, Handle added) {
  if (root.children.empty()) {
    Error(UnableToAdd(Level::DataStream, added, devHandle, "TL", root.handle));
    return false;
  }
  Record& first = root.children.front();
  Record* device = first.Find(devHandle);
  if (device == nullptr) {
    Error(UnableToAdd(Level::DataStream, added, devHandle, "Interface", first.handle));
  } else {
    AddDataStreamOn(*device, added);
  }
  return true;
}

void RegistryModel::AddDataStreamOn(Record& device, Handle added) {
  if (!device.Add(added)) {
    Error(AlreadyAdded(Level::DataStream, added, device.handle));
  }
}

bool RegistryModel::RemoveDataStream(Handle removed) {
  for (Record& interface : root.children) {
    for (Record& device : interface.children) {
      if (Close(device, removed, lines)) {
        return true;
      }
    }
    Error(UnableToRemove(Level::DataStream, removed, "Device on Interface", interface.handle));
  }
  Error(UnableToRemove(Level::DataStream, removed, "Interface on TL", root.handle));
  return false;
}

bool RegistryModel::ChangeBuffer(Record& record, Handle dsHandle, Handle buffer, bool adds) {
  static constexpr const char* words[] = {"TL", "Interface", "Device"};
  static constexpr const char* chains[] = {"Interface on TL", "Device on Interface",
                                           "DataStream on Device"};
  const auto depth = static_cast<std::size_t>(record.level);
  if (record.level == Level::Device) {
    Record* stream = record.Find(dsHandle);
    if (stream != nullptr && !adds) {
      return Close(*stream, buffer, lines);
    }
    if (stream != nullptr) {
      if (!stream->Add(buffer)) {
        Error(AlreadyAdded(Level::Buffer, buffer, dsHandle));
      }
      return true;
    }
  } else {
    for (Record& child : record.children) {
      if (ChangeBuffer(child, dsHandle, buffer, adds)) {
        return true;
      }
    }
  }
  Error(adds ? UnableToAdd(Level::Buffer, buffer, dsHandle, words[depth], record.handle)
             : UnableToRemove(Level::Buffer, buffer, chains[depth], record.handle));
  return false;
}

bool RegistryModel::AddBuffer(Handle dsHandle, Handle added) {
  return ChangeBuffer(root, dsHandle, added, true);
}

bool RegistryModel::RemoveBuffer(Handle dsHandle, Handle removed) {
  return ChangeBuffer(root, dsHandle, removed, false);
}

bool RegistryModel::SetBufferQueued(Handle buffer, bool queued) {
  bool found = false;
  ForEachDataStream(root, [&](Record& stream) {
    Record* record = found ? nullptr : stream.Find(buffer);
    if (record != nullptr) {
      record->queued = queued;
      found = true;
    }
  });
  return found;
}

void RegistryModel::OnEventData(Handle event, const void* data, std::size_t size) {
  if (data == nullptr || size != 8) {
    return;
  }
  Handle delivered = nullptr;
  std::memcpy(&delivered, data, sizeof delivered);
  ForEachDataStream(root, [&](Record& stream) {
    Record* buffer = stream.Find(delivered);
    if (stream.lastEvent == event && buffer != nullptr) {
      buffer->queued = false;
    }
  });
}

void RegistryModel::OnFlushQueue(Handle dsHandle, ACQ_QUEUE_TYPE operation) {
  for (Record& interface : root.children) {
    for (Record& device : interface.children) {
      Record* stream = device.Find(dsHandle);
      if (stream != nullptr && operation == 4) {
        for (Record& buffer : stream->children) {
          buffer.queued = false;
        }
      }
    }
  }
}

bool RegistryModel::AddEvent(Record& record, Handle source, EVENT_TYPE type, Handle event) {
  if (record.handle != source) {
    for (Record& child : record.children) {
      if (AddEvent(child, source, type, event)) {
        return true;
      }
    }
    return false;
  }
  for (const auto& [registered, unused] : record.events) {
    if (registered == type) {
      Error(Fill(WordsOf(record.level).duplicateEvent, '%', TypeName(type)) + Shown(source));
      return false;
    }
  }
  record.events.emplace_back(type, event);
  if (record.level == Level::DataStream) {
    record.lastEvent = event;
  }
  return true;
}

bool RegistryModel::AddEvent(Handle source, EVENT_TYPE type, Handle event) {
  if (AddEvent(root, source, type, event)) {
    return true;
  }
  if (source != root.handle) {
    Error("The Event type " + TypeName(type) + " has not been registered since the handle " +
          Shown(source) + " has not been found on any Interface");
  }
  return false;
}

bool RegistryModel::RemoveEvent(Handle source, EVENT_TYPE type) {
  const std::string unable =
      "Unable to remove Event type " + TypeName(type) + " on TL " + Shown(source) + "! Event was ";
  if (source == root.handle) {
    if (root.EraseEvent(type)) {
      return true;
    }
    Error(unable + "not added or already removed!");
    return false;
  }
  for (Record& interface : root.children) {
    if (RemoveFirstEvent(interface, type)) {
      return true;
    }
  }
  Error(unable + "not found on any Interface!");
  return false;
}

bool RegistryModel::ReleaseEvents(Record& record, Handle source) {
  if (record.handle == source) {
    record.ReportEvents(lines);
    record.events.clear();
    return true;
  }
  if (record.level == Level::DataStream) {
    return false;  // A stream does not ask its buffers.
  }
  for (Record& child : record.children) {
    if (ReleaseEvents(child, source)) {
      return true;
    }
  }
  return false;
}

}  // namespace vextrel_fuzz
