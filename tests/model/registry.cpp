// SPDX-License-Identifier: MIT
#include "model/registry.h"

#include <cstring>

#include "model/value_names.h"

namespace vextrel_test::model {
namespace {

const LevelMessages& Messages(const Record& record) {
  static const LevelMessages kLevels[] = {kTransportLayer, kInterface, kDevice, kDataStream,
                                          kBuffer};
  return kLevels[static_cast<std::size_t>(record.level)];
}

Value Type(std::int32_t type) {
  return kEventTypes.NameOf(type);
}

Record* FindChild(Record& record, const void* handle) {
  for (Record& child : record.children) {
    if (child.handle == handle) {
      return &child;
    }
  }
  return nullptr;
}

bool EraseOwnEvent(Record& record, std::int32_t type) {
  for (auto event = record.events.begin(); event != record.events.end(); ++event) {
    if (event->type == type) {
      record.events.erase(event);
      return true;
    }
  }
  return false;
}

// The first of that type in pre-order, whatever record it is on.
bool EraseFirstEvent(Record& record, std::int32_t type) {
  if (EraseOwnEvent(record, type)) {
    return true;
  }
  for (Record& child : record.children) {
    if (EraseFirstEvent(child, type)) {
      return true;
    }
  }
  return false;
}

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

// --- One record ---------------------------------------------------------------------------------

bool Registry::AddChild(Record& parent, void* child) {
  if (FindChild(parent, child) != nullptr) {
    log_.Error(Messages(parent).childAddedTwice, {child, parent.handle});
    return false;
  }
  parent.children.push_back(
      {static_cast<Level>(static_cast<int>(parent.level) + 1), child, {}, {}});
  return true;
}

bool Registry::RemoveChild(Record& parent, void* child) {
  for (auto found = parent.children.begin(); found != parent.children.end(); ++found) {
    if (found->handle == child) {
      const Record removed = *found;
      parent.children.erase(found);
      ReportChildren(removed);
      ReportEvents(removed);
      return true;
    }
  }
  log_.Error(Messages(parent).childNotDefined, {child, parent.handle});
  return false;
}

void Registry::ReportChildren(const Record& record) const {
  for (const Record& child : record.children) {
    log_.Error(Messages(record).childLeftOpen, {child.handle, record.handle});
  }
}

void Registry::ReportEvents(const Record& record) const {
  for (const Registration& each : record.events) {
    if (record.level == Level::DataStream) {
      log_.Warn(Messages(record).eventLeft, {each.event, record.handle});
    } else {
      log_.Warn(Messages(record).eventLeft, {Type(each.type), each.event, record.handle});
    }
  }
}

void Registry::ReportRoot() const {
  ReportChildren(*root_);
  ReportEvents(*root_);
}

void Registry::Close() {
  ReportRoot();
  root_.reset();
}

// --- Opening and closing ------------------------------------------------------------------------

bool Registry::RemoveBelow(Record& record, Level parents, void* child,
                           const char* LevelMessages::*notRemoved) {
  if (record.level == parents) {
    return RemoveChild(record, child);
  }
  for (Record& below : record.children) {
    if (RemoveBelow(below, parents, child, notRemoved)) {
      return true;
    }
  }
  log_.Error(Messages(record).*notRemoved, {child, record.handle});
  return false;
}

bool Registry::AddDevice(void* hIface, void* hDevice) {
  Record* interface = FindChild(*root_, hIface);
  if (interface == nullptr) {
    log_.Error(kTransportLayer.deviceNotAdded, {hDevice, hIface, root_->handle});
  } else {
    AddChild(*interface, hDevice);
  }
  return true;
}

bool Registry::RemoveDevice(void* hDevice) {
  return RemoveBelow(*root_, Level::Interface, hDevice, &LevelMessages::deviceNotRemoved);
}

bool Registry::AddDataStream(void* hDevice, void* hDataStream) {
  if (root_->children.empty()) {
    log_.Error(kTransportLayer.dataStreamNotAdded, {hDataStream, hDevice, root_->handle});
    return false;
  }
  // The first interface accepts every stream, even one whose device it does not have.
  Record& interface = root_->children.front();
  Record* device = FindChild(interface, hDevice);
  if (device == nullptr) {
    log_.Error(kInterface.dataStreamNotAdded, {hDataStream, hDevice, interface.handle});
  } else {
    AddChild(*device, hDataStream);
  }
  return true;
}

bool Registry::RemoveDataStream(void* hDataStream) {
  return RemoveBelow(*root_, Level::Device, hDataStream, &LevelMessages::dataStreamNotRemoved);
}

bool Registry::AddBuffer(Record& record, void* hDataStream, void* hBuffer) {
  if (record.level == Level::Device) {
    Record* stream = FindChild(record, hDataStream);
    if (stream != nullptr) {
      AddChild(*stream, hBuffer);
      return true;
    }
  } else {
    for (Record& child : record.children) {
      if (AddBuffer(child, hDataStream, hBuffer)) {
        return true;
      }
    }
  }
  log_.Error(Messages(record).bufferNotAdded, {hBuffer, hDataStream, record.handle});
  return false;
}

bool Registry::RemoveBuffer(Record& record, void* hDataStream, void* hBuffer) {
  if (record.level == Level::Device) {
    Record* stream = FindChild(record, hDataStream);
    if (stream != nullptr) {
      return RemoveChild(*stream, hBuffer);
    }
  } else {
    for (Record& child : record.children) {
      if (RemoveBuffer(child, hDataStream, hBuffer)) {
        return true;
      }
    }
  }
  log_.Error(Messages(record).bufferNotRemoved, {hBuffer, record.handle});
  return false;
}

// --- Queued marks -------------------------------------------------------------------------------

bool Registry::SetBufferQueued(Record& record, void* hBuffer, bool queued) {
  if (record.level == Level::DataStream) {
    Record* buffer = FindChild(record, hBuffer);
    if (buffer != nullptr) {
      buffer->queued = queued;
    }
    return buffer != nullptr;
  }
  for (Record& child : record.children) {
    if (SetBufferQueued(child, hBuffer, queued)) {
      return true;
    }
  }
  return false;
}

void Registry::OnEventData(void* event, const void* data, std::size_t size) {
  if (data == nullptr || size != 8) {
    return;
  }
  void* delivered = nullptr;
  std::memcpy(&delivered, data, sizeof delivered);
  ForEachDataStream(*root_, [&](Record& stream) {
    Record* buffer = FindChild(stream, delivered);
    if (stream.lastEvent == event && buffer != nullptr) {
      buffer->queued = false;
    }
  });
}

void Registry::OnFlushQueue(void* hDataStream, std::int32_t operation) {
  for (Record& interface : root_->children) {
    for (Record& device : interface.children) {
      Record* stream = FindChild(device, hDataStream);
      if (stream != nullptr && operation == 4) {
        for (Record& buffer : stream->children) {
          buffer.queued = false;
        }
      }
    }
  }
}

// --- Events -------------------------------------------------------------------------------------

bool Registry::AddEvent(Record& record, void* source, std::int32_t type, void* event) {
  if (record.handle != source) {
    for (Record& child : record.children) {
      if (AddEvent(child, source, type, event)) {
        return true;
      }
    }
    return false;
  }
  for (const Registration& each : record.events) {
    if (each.type == type) {
      log_.Error(Messages(record).eventTwice, {Type(type), source});
      return false;
    }
  }
  record.events.push_back({type, event});
  if (record.level == Level::DataStream) {
    record.lastEvent = event;
  }
  return true;
}

bool Registry::AddEvent(void* source, std::int32_t type, void* event) {
  const bool isAdded = AddEvent(*root_, source, type, event);
  if (!isAdded && source != root_->handle) {
    log_.Error(kEventSourceNotFound, {Type(type), source});
  }
  return isAdded;
}

bool Registry::RemoveEvent(void* source, std::int32_t type) {
  if (source == root_->handle) {
    if (EraseOwnEvent(*root_, type)) {
      return true;
    }
    log_.Error(kEventNotAdded, {Type(type), source});
    return false;
  }
  for (Record& interface : root_->children) {
    if (EraseFirstEvent(interface, type)) {
      return true;
    }
  }
  log_.Error(kEventNotFound, {Type(type), source});
  return false;
}

bool Registry::ReleaseEvents(Record& record, void* handle) {
  if (record.handle == handle) {
    ReportEvents(record);
    record.events.clear();
    return true;
  }
  if (record.level == Level::DataStream) {
    return false;  // A stream does not ask its buffers.
  }
  for (Record& child : record.children) {
    if (ReleaseEvents(child, handle)) {
      return true;
    }
  }
  return false;
}

}  // namespace vextrel_test::model
