// SPDX-License-Identifier: MIT
// Every message that a log can contain besides the lines of calls.
#ifndef VEXTREL_TESTS_MODEL_MESSAGES_H
#define VEXTREL_TESTS_MODEL_MESSAGES_H

namespace vextrel_test::model {

// What one level of the registry says; null where it says nothing. "Own" is the level's own handle.
struct LevelMessages {
  const char* childAddedTwice = nullptr;       // child, own
  const char* childNotDefined = nullptr;       // child, own
  const char* childLeftOpen = nullptr;         // child, own
  const char* eventTwice = nullptr;            // type name, own
  const char* eventLeft = nullptr;             // type name unless it is a data stream, event, own
  const char* deviceNotAdded = nullptr;        // device, interface, own
  const char* deviceNotRemoved = nullptr;      // device, own
  const char* dataStreamNotAdded = nullptr;    // data stream, device, own
  const char* dataStreamNotRemoved = nullptr;  // data stream, own
  const char* bufferNotAdded = nullptr;        // buffer, data stream, own
  const char* bufferNotRemoved = nullptr;      // buffer, own
};

// Each text stands on one line, as it is written.
// clang-format off
inline constexpr LevelMessages kTransportLayer = {
    .childAddedTwice = "Interface object with the handle 0x%p has already been added on TL with handle 0x%p",
    .childNotDefined = "Interface object with the handle 0x%p is not defined on TL with handle 0x%p",
    .childLeftOpen = "Interface with handle 0x%p on TL 0x%p was not closed properly using IFClose()",
    .eventTwice = "The Event type %s has already been registered on TL with handle 0x%p",
    .eventLeft = "Event type %s with handle 0x%p on Transport Layer 0x%p was not unregistered directly using GCUnregisterEvent()",
    .deviceNotAdded = "Unable to add Device with handle 0x%p! Interface with handle 0x%p on TL 0x%p was not found!",
    .deviceNotRemoved = "Unable to remove Device with handle 0x%p on any Interface on TL 0x%p!",
    .dataStreamNotAdded = "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on TL 0x%p was not found!",
    .dataStreamNotRemoved = "Unable to remove DataStream with handle 0x%p on any Interface on TL 0x%p!",
    .bufferNotAdded = "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on TL 0x%p was not found!",
    .bufferNotRemoved = "Unable to remove Buffer with handle 0x%p on any Interface on TL 0x%p!"};

inline constexpr LevelMessages kInterface = {
    .childAddedTwice = "Device object with the handle 0x%p has already been added on Interface with handle 0x%p",
    .childNotDefined = "Device object with the handle 0x%p is not defined on Interface with handle 0x%p",
    .childLeftOpen = "Device with handle 0x%p on interface 0x%p was not closed properly using DevClose()",
    .eventTwice = "The Event type %s has already been registered on Interface with handle 0x%p",
    .eventLeft = "Event type %s with handle 0x%p on interface 0x%p was not unregistered directly using GCUnregisterEvent()",
    .dataStreamNotAdded = "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on Interface 0x%p was not found!",
    .dataStreamNotRemoved = "Unable to remove DataStream with handle 0x%p on any Device on Interface 0x%p!",
    .bufferNotAdded = "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Interface 0x%p was not found!",
    .bufferNotRemoved = "Unable to remove Buffer with handle 0x%p on any Device on Interface 0x%p!"};

inline constexpr LevelMessages kDevice = {
    .childAddedTwice = "DataStream object with the handle 0x%p has already been added on Device with handle 0x%p",
    .childNotDefined = "DataStream object with the handle 0x%p is not defined on Device with handle 0x%p",
    .childLeftOpen = "DataStream with handle 0x%p on Device 0x%p was not closed properly using DSClose()",
    .eventTwice = "The event type %s has already been registered on device with handle 0x%p",
    .eventLeft = "Event type %s with handle 0x%p on device 0x%p was not unregistered directly using GCUnregisterEvent()",
    .bufferNotAdded = "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Device 0x%p was not found!",
    .bufferNotRemoved = "Unable to remove Buffer with handle 0x%p on any DataStream on Device 0x%p!"};

inline constexpr LevelMessages kDataStream = {
    .childAddedTwice = "Buffer object with the handle 0x%p has already been added on DataStream with handle 0x%p",
    .childNotDefined = "Buffer object with the handle 0x%p is not defined on DataStream with handle 0x%p",
    .childLeftOpen = "Buffer with handle 0x%p on DataStream 0x%p was not revoked properly using DSRevokeBuffer()",
    .eventTwice = "The event type %s has already been registered on datastream with handle 0x%p",
    .eventLeft = "Event with handle 0x%p on DataStream 0x%p was not unregistered directly using GCUnregisterEvent()"};

inline constexpr LevelMessages kBuffer = {
    .eventTwice = "The event type %s has already been registered on buffer with handle 0x%p",
    .eventLeft = "Event type %s with handle 0x%p on Buffer 0x%p was not unregistered directly using GCUnregisterEvent()"};
// clang-format on

// The events' walk through the tree: type name, event source.
inline constexpr const char* kEventSourceNotFound =
    "The Event type %s has not been registered since the handle 0x%p has not been found on any "
    "Interface";
inline constexpr const char* kEventNotAdded =
    "Unable to remove Event type %s on TL 0x%p! Event was not added or already removed!";
inline constexpr const char* kEventNotFound =
    "Unable to remove Event type %s on TL 0x%p! Event was not found on any Interface!";

// Written by the entry points.
inline constexpr const char* kNoTransportLayer =
    "The Transport Layer has not been successfully opened!";
inline constexpr const char* kIllegalInterface = "Illegal Interface handle!";
inline constexpr const char* kInterfaceNotOpened =
    "The interface with handle 0x%p was not previously opened correctly using TLOpenInterface()!";
inline constexpr const char* kNoDeviceSlot = "IFOpenDevice returned a NULL handle to the device!";
inline constexpr const char* kIllegalDevice = "Illegal Device handle!";
inline constexpr const char* kDeviceNotOpened =
    "The device with handle 0x%p was not previously opened correctly using DevOpen()!";
inline constexpr const char* kNoDeviceForDataStream =
    "DevOpenDataStream returned a NULL handle to the datastream!";
inline constexpr const char* kIllegalDataStream = "Illegal Device handle in DSClose()!";
inline constexpr const char* kDataStreamNotOpened =
    "The DataStream with handle 0x%p was not previously opened correctly using "
    "DevOpenDataStream()!";
inline constexpr const char* kIllegalBuffer = "Illegal Buffer handle!";
inline constexpr const char* kBufferNotAnnounced =
    "The buffer with handle 0x%p was not previously announced correctly using "
    "DSAllocAndAnnounceBuffer() or DSAnnounceBuffer()!";
inline constexpr const char* kEventNotRegistered =
    "The event %d on handle 0x%p was not previously registered correctly using GCRegisterEvent()!";

// Written by the binding to a target.
inline constexpr const char* kNoProducerVariable =
    "Vextrel Environment variable GENICAM_GENTL64_VEXTREL_PRODUCER not found!";
inline constexpr const char* kLoading = "Loading GenTL Producer '%s'";
inline constexpr const char* kLoadFailed = "Error %d when loading the GenTL producer dll: '%s'";
inline constexpr const char* kFileVersion = "GenTL producer file version: '%s'";
inline constexpr const char* kInitializedTwice = "GCInitLib() has already been called!";
inline constexpr const char* kNotInitialized = "GCInitLib has not been called yet!";
inline constexpr const char* kTransportLayerLeftOpen =
    "Transport Layer was not closed down properly using TLClose()";

// Calls visit(message) for each message of the registry.
template <typename Visit>
void ForEachRegistryMessage(Visit visit) {
  for (const LevelMessages& level : {kTransportLayer, kInterface, kDevice, kDataStream, kBuffer}) {
    for (const char* each :
         {level.childAddedTwice, level.childNotDefined, level.childLeftOpen, level.eventTwice,
          level.eventLeft, level.deviceNotAdded, level.deviceNotRemoved, level.dataStreamNotAdded,
          level.dataStreamNotRemoved, level.bufferNotAdded, level.bufferNotRemoved}) {
      if (each != nullptr) {
        visit(each);
      }
    }
  }
  for (const char* each : {kEventSourceNotFound, kEventNotAdded, kEventNotFound}) {
    visit(each);
  }
}

// Calls visit(message) for each of all.
template <typename Visit>
void ForEachMessage(Visit visit) {
  ForEachRegistryMessage(visit);
  for (const char* each :
       {kNoTransportLayer, kIllegalInterface, kInterfaceNotOpened, kNoDeviceSlot, kIllegalDevice,
        kDeviceNotOpened, kNoDeviceForDataStream, kIllegalDataStream, kDataStreamNotOpened,
        kIllegalBuffer, kBufferNotAnnounced, kEventNotRegistered, kNoProducerVariable, kLoading,
        kLoadFailed, kFileVersion, kInitializedTwice, kNotInitialized, kTransportLayerLeftOpen}) {
    visit(each);
  }
}

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_MESSAGES_H
