#include "session/reference_registry.h"

#include "session/reference_names.h"

namespace vextrel_test::session {
namespace {

const LevelMessages kMessages[] = {kTransportLayerMessages, kInterfaceMessages, kDeviceMessages,
                                   kDataStreamMessages, kBufferMessages};

Value Type(std::int32_t type) {
  return Value::Text(NameOfEventType(type));
}

Record* FindChild(Record& record, void* handle) {
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

}  // namespace

void ReferenceRegistry::Close() {
  ReportChildren(TransportLayer, *root_);
  ReportEvents(TransportLayer, *root_);
  root_.reset();
}

// --- One level ----------------------------------------------------------------------------------

void ReferenceRegistry::AddChild(Level level, Record& record, void* child) {
  if (FindChild(record, child) != nullptr) {
    log_.Error(kMessages[level].childAddedTwice, {Value::At(child), Value::At(record.handle)});
    return;
  }
  record.children.push_back({child, {}, {}});
}

bool ReferenceRegistry::RemoveChild(Level level, Record& record, void* child) {
  for (auto found = record.children.begin(); found != record.children.end(); ++found) {
    if (found->handle == child) {
      const Record removed = *found;
      record.children.erase(found);
      const Level below = static_cast<Level>(level + 1);
      ReportChildren(below, removed);
      ReportEvents(below, removed);
      return true;
    }
  }
  log_.Error(kMessages[level].childNotDefined, {Value::At(child), Value::At(record.handle)});
  return false;
}

void ReferenceRegistry::ReportChildren(Level level, const Record& record) {
  for (const Record& child : record.children) {
    log_.Error(kMessages[level].childLeftOpen, {Value::At(child.handle), Value::At(record.handle)});
  }
}

void ReferenceRegistry::ReportEvents(Level level, const Record& record) {
  for (const Registration& event : record.events) {
    if (level == DataStream) {
      log_.Warn(kMessages[level].eventLeft, {Value::At(event.event), Value::At(record.handle)});
    } else {
      log_.Warn(kMessages[level].eventLeft,
                {Type(event.type), Value::At(event.event), Value::At(record.handle)});
    }
  }
}

// --- Opening and closing ------------------------------------------------------------------------

void ReferenceRegistry::AddInterface(void* hIface) {
  AddChild(TransportLayer, *root_, hIface);
}

bool ReferenceRegistry::RemoveInterface(void* hIface) {
  return RemoveChild(TransportLayer, *root_, hIface);
}

void ReferenceRegistry::AddDevice(void* hIface, void* hDevice) {
  Record* interface = FindChild(*root_, hIface);
  if (interface == nullptr) {
    log_.Error(kDeviceNotAdded, {Value::At(hDevice), Value::At(hIface), Value::At(root_->handle)});
    return;
  }
  AddChild(Interface, *interface, hDevice);
}

bool ReferenceRegistry::RemoveDevice(void* hDevice) {
  for (Record& interface : root_->children) {
    if (RemoveChild(Interface, interface, hDevice)) {
      return true;
    }
  }
  log_.Error(kDeviceNotRemoved, {Value::At(hDevice), Value::At(root_->handle)});
  return false;
}

void ReferenceRegistry::AddDataStream(void* hDevice, void* hDataStream) {
  if (root_->children.empty()) {
    log_.Error(kDataStreamNotAdded,
               {Value::At(hDataStream), Value::At(hDevice), Value::At(root_->handle)});
    return;
  }
  // The first interface accepts every stream, even one whose device it does not have.
  Record& interface = root_->children.front();
  Record* device = FindChild(interface, hDevice);
  if (device == nullptr) {
    log_.Error(kDataStreamNotAddedOnInterface,
               {Value::At(hDataStream), Value::At(hDevice), Value::At(interface.handle)});
    return;
  }
  AddChild(Device, *device, hDataStream);
}

bool ReferenceRegistry::RemoveDataStreamFromInterface(Record& interface, void* hDataStream) {
  for (Record& device : interface.children) {
    if (RemoveChild(Device, device, hDataStream)) {
      return true;
    }
  }
  log_.Error(kDataStreamNotRemovedOnInterface,
             {Value::At(hDataStream), Value::At(interface.handle)});
  return false;
}

bool ReferenceRegistry::RemoveDataStream(void* hDataStream) {
  for (Record& interface : root_->children) {
    if (RemoveDataStreamFromInterface(interface, hDataStream)) {
      return true;
    }
  }
  log_.Error(kDataStreamNotRemoved, {Value::At(hDataStream), Value::At(root_->handle)});
  return false;
}

bool ReferenceRegistry::AddBufferToDevice(Record& device, void* hDataStream, void* hBuffer) {
  Record* stream = FindChild(device, hDataStream);
  if (stream == nullptr) {
    log_.Error(kBufferNotAddedOnDevice,
               {Value::At(hBuffer), Value::At(hDataStream), Value::At(device.handle)});
    return false;
  }
  AddChild(DataStream, *stream, hBuffer);
  return true;
}

bool ReferenceRegistry::AddBufferToInterface(Record& interface, void* hDataStream, void* hBuffer) {
  for (Record& device : interface.children) {
    if (AddBufferToDevice(device, hDataStream, hBuffer)) {
      return true;
    }
  }
  log_.Error(kBufferNotAddedOnInterface,
             {Value::At(hBuffer), Value::At(hDataStream), Value::At(interface.handle)});
  return false;
}

void ReferenceRegistry::AddBuffer(void* hDataStream, void* hBuffer) {
  for (Record& interface : root_->children) {
    if (AddBufferToInterface(interface, hDataStream, hBuffer)) {
      return;
    }
  }
  log_.Error(kBufferNotAdded,
             {Value::At(hBuffer), Value::At(hDataStream), Value::At(root_->handle)});
}

bool ReferenceRegistry::RemoveBufferFromDevice(Record& device, void* hDataStream, void* hBuffer) {
  Record* stream = FindChild(device, hDataStream);
  if (stream == nullptr) {
    log_.Error(kBufferNotRemovedOnDevice, {Value::At(hBuffer), Value::At(device.handle)});
    return false;
  }
  return RemoveChild(DataStream, *stream, hBuffer);
}

bool ReferenceRegistry::RemoveBufferFromInterface(Record& interface, void* hDataStream,
                                                  void* hBuffer) {
  for (Record& device : interface.children) {
    if (RemoveBufferFromDevice(device, hDataStream, hBuffer)) {
      return true;
    }
  }
  log_.Error(kBufferNotRemovedOnInterface, {Value::At(hBuffer), Value::At(interface.handle)});
  return false;
}

bool ReferenceRegistry::RemoveBuffer(void* hDataStream, void* hBuffer) {
  for (Record& interface : root_->children) {
    if (RemoveBufferFromInterface(interface, hDataStream, hBuffer)) {
      return true;
    }
  }
  log_.Error(kBufferNotRemoved, {Value::At(hBuffer), Value::At(root_->handle)});
  return false;
}

// --- Events -------------------------------------------------------------------------------------

bool ReferenceRegistry::AddEventBelow(Level level, Record& record, void* source, std::int32_t type,
                                      void* event) {
  if (record.handle != source) {
    for (Record& child : record.children) {
      if (AddEventBelow(static_cast<Level>(level + 1), child, source, type, event)) {
        return true;
      }
    }
    if (level == TransportLayer) {
      log_.Error(kEventSourceNotFound, {Type(type), Value::At(source)});
    }
    return false;
  }
  for (const Registration& registration : record.events) {
    if (registration.type == type) {
      log_.Error(kMessages[level].eventTwice, {Type(type), Value::At(source)});
      return false;
    }
  }
  record.events.push_back({type, event});
  return true;
}

void ReferenceRegistry::AddEvent(void* source, std::int32_t type, void* event) {
  AddEventBelow(TransportLayer, *root_, source, type, event);
}

bool ReferenceRegistry::RemoveEvent(void* source, std::int32_t type) {
  if (source == root_->handle) {
    if (EraseOwnEvent(*root_, type)) {
      return true;
    }
    log_.Error(kEventNotAdded, {Type(type), Value::At(source)});
    return false;
  }
  for (Record& interface : root_->children) {
    if (EraseFirstEvent(interface, type)) {
      return true;
    }
  }
  log_.Error(kEventNotFound, {Type(type), Value::At(source)});
  return false;
}

bool ReferenceRegistry::ReleaseEventsBelow(Level level, Record& record, void* handle) {
  if (record.handle == handle) {
    ReportEvents(level, record);
    record.events.clear();
    return true;
  }
  if (level == DataStream) {
    return false;
  }
  for (Record& child : record.children) {
    if (ReleaseEventsBelow(static_cast<Level>(level + 1), child, handle)) {
      return true;
    }
  }
  return false;
}

void ReferenceRegistry::ReleaseEvents(void* handle) {
  if (root_.has_value()) {
    ReleaseEventsBelow(TransportLayer, *root_, handle);
  }
}

}  // namespace vextrel_test::session
