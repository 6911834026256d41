// Every message that a log can hold besides the lines of the calls.
#ifndef VEXTREL_TESTS_SESSION_MISUSE_MESSAGES_H
#define VEXTREL_TESTS_SESSION_MISUSE_MESSAGES_H

namespace vextrel_test::session {

// What one level of the registry says of itself and of its children.
struct LevelMessages {
  const char* childAddedTwice;  // child, own handle
  const char* childNotDefined;  // child, own handle
  const char* childLeftOpen;    // child, own handle
  const char* eventTwice;       // type name, own handle
  const char* eventLeft;        // type name unless it is a data stream, event, own handle
};

inline constexpr LevelMessages kTransportLayerMessages = {
    "Interface object with the handle 0x%p has already been added on TL with handle 0x%p",
    "Interface object with the handle 0x%p is not defined on TL with handle 0x%p",
    "Interface with handle 0x%p on TL 0x%p was not closed properly using IFClose()",
    "The Event type %s has already been registered on TL with handle 0x%p",
    "Event type %s with handle 0x%p on Transport Layer 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"};

inline constexpr LevelMessages kInterfaceMessages = {
    "Device object with the handle 0x%p has already been added on Interface with handle 0x%p",
    "Device object with the handle 0x%p is not defined on Interface with handle 0x%p",
    "Device with handle 0x%p on interface 0x%p was not closed properly using DevClose()",
    "The Event type %s has already been registered on Interface with handle 0x%p",
    "Event type %s with handle 0x%p on interface 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"};

inline constexpr LevelMessages kDeviceMessages = {
    "DataStream object with the handle 0x%p has already been added on Device with handle 0x%p",
    "DataStream object with the handle 0x%p is not defined on Device with handle 0x%p",
    "DataStream with handle 0x%p on Device 0x%p was not closed properly using DSClose()",
    "The event type %s has already been registered on device with handle 0x%p",
    "Event type %s with handle 0x%p on device 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"};

inline constexpr LevelMessages kDataStreamMessages = {
    "Buffer object with the handle 0x%p has already been added on DataStream with handle 0x%p",
    "Buffer object with the handle 0x%p is not defined on DataStream with handle 0x%p",
    "Buffer with handle 0x%p on DataStream 0x%p was not revoked properly using DSRevokeBuffer()",
    "The event type %s has already been registered on datastream with handle 0x%p",
    "Event with handle 0x%p on DataStream 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"};

inline constexpr LevelMessages kBufferMessages = {
    nullptr, nullptr, nullptr,
    "The event type %s has already been registered on buffer with handle 0x%p",
    "Event type %s with handle 0x%p on Buffer 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"};

// Written by a walk through the whole tree.
inline constexpr const char* kEventSourceNotFound =
    "The Event type %s has not been registered since the handle 0x%p has not been found on any "
    "Interface";
inline constexpr const char* kEventNotAdded =
    "Unable to remove Event type %s on TL 0x%p! Event was not added or already removed!";
inline constexpr const char* kEventNotFound =
    "Unable to remove Event type %s on TL 0x%p! Event was not found on any Interface!";
inline constexpr const char* kDeviceNotAdded =
    "Unable to add Device with handle 0x%p! Interface with handle 0x%p on TL 0x%p was not found!";
inline constexpr const char* kDeviceNotRemoved =
    "Unable to remove Device with handle 0x%p on any Interface on TL 0x%p!";
inline constexpr const char* kDataStreamNotAddedOnInterface =
    "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on Interface 0x%p was not "
    "found!";
inline constexpr const char* kDataStreamNotAdded =
    "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on TL 0x%p was not found!";
inline constexpr const char* kDataStreamNotRemovedOnInterface =
    "Unable to remove DataStream with handle 0x%p on any Device on Interface 0x%p!";
inline constexpr const char* kDataStreamNotRemoved =
    "Unable to remove DataStream with handle 0x%p on any Interface on TL 0x%p!";
inline constexpr const char* kBufferNotAddedOnDevice =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Device 0x%p was not "
    "found!";
inline constexpr const char* kBufferNotAddedOnInterface =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Interface 0x%p was not "
    "found!";
inline constexpr const char* kBufferNotAdded =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on TL 0x%p was not found!";
inline constexpr const char* kBufferNotRemovedOnDevice =
    "Unable to remove Buffer with handle 0x%p on any DataStream on Device 0x%p!";
inline constexpr const char* kBufferNotRemovedOnInterface =
    "Unable to remove Buffer with handle 0x%p on any Device on Interface 0x%p!";
inline constexpr const char* kBufferNotRemoved =
    "Unable to remove Buffer with handle 0x%p on any Interface on TL 0x%p!";

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

// All of them.
inline constexpr const char* kEveryMessage[] = {kTransportLayerMessages.childAddedTwice,
                                                kTransportLayerMessages.childNotDefined,
                                                kTransportLayerMessages.childLeftOpen,
                                                kTransportLayerMessages.eventTwice,
                                                kTransportLayerMessages.eventLeft,
                                                kInterfaceMessages.childAddedTwice,
                                                kInterfaceMessages.childNotDefined,
                                                kInterfaceMessages.childLeftOpen,
                                                kInterfaceMessages.eventTwice,
                                                kInterfaceMessages.eventLeft,
                                                kDeviceMessages.childAddedTwice,
                                                kDeviceMessages.childNotDefined,
                                                kDeviceMessages.childLeftOpen,
                                                kDeviceMessages.eventTwice,
                                                kDeviceMessages.eventLeft,
                                                kDataStreamMessages.childAddedTwice,
                                                kDataStreamMessages.childNotDefined,
                                                kDataStreamMessages.childLeftOpen,
                                                kDataStreamMessages.eventTwice,
                                                kDataStreamMessages.eventLeft,
                                                kBufferMessages.eventTwice,
                                                kBufferMessages.eventLeft,
                                                kEventSourceNotFound,
                                                kEventNotAdded,
                                                kEventNotFound,
                                                kDeviceNotAdded,
                                                kDeviceNotRemoved,
                                                kDataStreamNotAddedOnInterface,
                                                kDataStreamNotAdded,
                                                kDataStreamNotRemovedOnInterface,
                                                kDataStreamNotRemoved,
                                                kBufferNotAddedOnDevice,
                                                kBufferNotAddedOnInterface,
                                                kBufferNotAdded,
                                                kBufferNotRemovedOnDevice,
                                                kBufferNotRemovedOnInterface,
                                                kBufferNotRemoved,
                                                kNoTransportLayer,
                                                kIllegalInterface,
                                                kInterfaceNotOpened,
                                                kNoDeviceSlot,
                                                kIllegalDevice,
                                                kDeviceNotOpened,
                                                kNoDeviceForDataStream,
                                                kIllegalDataStream,
                                                kDataStreamNotOpened,
                                                kIllegalBuffer,
                                                kBufferNotAnnounced,
                                                kEventNotRegistered,
                                                kNoProducerVariable,
                                                kLoading,
                                                kLoadFailed,
                                                kFileVersion,
                                                kInitializedTwice,
                                                kNotInitialized,
                                                kTransportLayerLeftOpen};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_MISUSE_MESSAGES_H
