// The functions of a producer that this program calls, found by name.
#ifndef VEXTREL_SAMPLES_GRAB_GENTL_FUNCTIONS_H
#define VEXTREL_SAMPLES_GRAB_GENTL_FUNCTIONS_H

#include <string>
#include <string_view>

#include "error.h"
#include "gentl/gentl.h"
#include "module.h"

namespace grab {

enum class Need { kRequired, kOptional };

// One function of the producer. One that the module lacks answers GC_ERR_NOT_IMPLEMENTED.
template <typename Signature>
class Function;

template <typename... Parameters>
class Function<GC_ERROR GC_CALLTYPE(Parameters...)> {
 public:
  // Throws Error when the module lacks a required function.
  Function(const Module& module, const char* functionName, Need need = Need::kRequired)
      : name(functionName), address(reinterpret_cast<Address>(module.Find(functionName))) {
    if (address == nullptr && need == Need::kRequired) {
      throw Error(std::string("The producer does not export the function ") + name + ".");
    }
  }

  GC_ERROR operator()(Parameters... arguments) const {
    return address != nullptr ? address(arguments...) : GC_ERR_NOT_IMPLEMENTED;
  }

  [[nodiscard]] const char* Name() const { return name; }

 private:
  using Address = GC_ERROR(GC_CALLTYPE*)(Parameters...);

  const char* name;
  Address address;
};

// The function table. The module must outlive it.
struct GenTl {
  explicit GenTl(const Module& producer) : module(producer) {}

  // Calls a function and throws Error unless it succeeds.
  template <typename F, typename... Arguments>
  void Do(const F& function, Arguments... arguments) const {
    const GC_ERROR result = function(arguments...);
    if (result != GC_ERR_SUCCESS) {
      throw Error(Describe(function.Name(), result) + ".");
    }
  }

  // What failed and why, with the producer's own text. To be called right after the failing call:
  // the producer forgets the reason at the next one.
  [[nodiscard]] std::string Describe(std::string_view function, GC_ERROR result) const;

  const Module& module;

  Function<decltype(::GCInitLib)> GCInitLib{module, "GCInitLib"};
  Function<decltype(::GCCloseLib)> GCCloseLib{module, "GCCloseLib"};
  Function<decltype(::GCGetInfo)> GCGetInfo{module, "GCGetInfo", Need::kOptional};
  Function<decltype(::GCGetLastError)> GCGetLastError{module, "GCGetLastError", Need::kOptional};

  Function<decltype(::TLOpen)> TLOpen{module, "TLOpen"};
  Function<decltype(::TLClose)> TLClose{module, "TLClose"};
  Function<decltype(::TLGetInfo)> TLGetInfo{module, "TLGetInfo", Need::kOptional};
  Function<decltype(::TLUpdateInterfaceList)> TLUpdateInterfaceList{module,
                                                                    "TLUpdateInterfaceList"};
  Function<decltype(::TLGetNumInterfaces)> TLGetNumInterfaces{module, "TLGetNumInterfaces"};
  Function<decltype(::TLGetInterfaceID)> TLGetInterfaceID{module, "TLGetInterfaceID"};
  Function<decltype(::TLGetInterfaceInfo)> TLGetInterfaceInfo{module, "TLGetInterfaceInfo",
                                                              Need::kOptional};
  Function<decltype(::TLOpenInterface)> TLOpenInterface{module, "TLOpenInterface"};

  Function<decltype(::IFClose)> IFClose{module, "IFClose"};
  Function<decltype(::IFGetInfo)> IFGetInfo{module, "IFGetInfo", Need::kOptional};
  Function<decltype(::IFUpdateDeviceList)> IFUpdateDeviceList{module, "IFUpdateDeviceList"};
  Function<decltype(::IFGetNumDevices)> IFGetNumDevices{module, "IFGetNumDevices"};
  Function<decltype(::IFGetDeviceID)> IFGetDeviceID{module, "IFGetDeviceID"};
  Function<decltype(::IFGetDeviceInfo)> IFGetDeviceInfo{module, "IFGetDeviceInfo", Need::kOptional};
  Function<decltype(::IFOpenDevice)> IFOpenDevice{module, "IFOpenDevice"};

  Function<decltype(::DevClose)> DevClose{module, "DevClose"};
  Function<decltype(::DevGetInfo)> DevGetInfo{module, "DevGetInfo", Need::kOptional};
  Function<decltype(::DevGetPort)> DevGetPort{module, "DevGetPort"};
  Function<decltype(::DevGetNumDataStreams)> DevGetNumDataStreams{module, "DevGetNumDataStreams"};
  Function<decltype(::DevGetDataStreamID)> DevGetDataStreamID{module, "DevGetDataStreamID"};
  Function<decltype(::DevOpenDataStream)> DevOpenDataStream{module, "DevOpenDataStream"};

  Function<decltype(::GCGetNumPortURLs)> GCGetNumPortURLs{module, "GCGetNumPortURLs",
                                                          Need::kOptional};
  Function<decltype(::GCGetPortURL)> GCGetPortURL{module, "GCGetPortURL"};
  Function<decltype(::GCGetPortURLInfo)> GCGetPortURLInfo{module, "GCGetPortURLInfo",
                                                          Need::kOptional};
  Function<decltype(::GCGetPortInfo)> GCGetPortInfo{module, "GCGetPortInfo", Need::kOptional};
  Function<decltype(::GCReadPort)> GCReadPort{module, "GCReadPort"};
  Function<decltype(::GCWritePort)> GCWritePort{module, "GCWritePort"};
  Function<decltype(::GCReadPortStacked)> GCReadPortStacked{module, "GCReadPortStacked",
                                                            Need::kOptional};

  Function<decltype(::DSClose)> DSClose{module, "DSClose"};
  Function<decltype(::DSGetInfo)> DSGetInfo{module, "DSGetInfo"};
  Function<decltype(::DSAnnounceBuffer)> DSAnnounceBuffer{module, "DSAnnounceBuffer"};
  Function<decltype(::DSAllocAndAnnounceBuffer)> DSAllocAndAnnounceBuffer{
      module, "DSAllocAndAnnounceBuffer", Need::kOptional};
  Function<decltype(::DSQueueBuffer)> DSQueueBuffer{module, "DSQueueBuffer"};
  Function<decltype(::DSGetBufferInfo)> DSGetBufferInfo{module, "DSGetBufferInfo"};
  Function<decltype(::DSFlushQueue)> DSFlushQueue{module, "DSFlushQueue"};
  Function<decltype(::DSRevokeBuffer)> DSRevokeBuffer{module, "DSRevokeBuffer"};
  Function<decltype(::DSStartAcquisition)> DSStartAcquisition{module, "DSStartAcquisition"};
  Function<decltype(::DSStopAcquisition)> DSStopAcquisition{module, "DSStopAcquisition"};

  Function<decltype(::GCRegisterEvent)> GCRegisterEvent{module, "GCRegisterEvent"};
  Function<decltype(::GCUnregisterEvent)> GCUnregisterEvent{module, "GCUnregisterEvent"};
  Function<decltype(::EventGetData)> EventGetData{module, "EventGetData"};
  Function<decltype(::EventKill)> EventKill{module, "EventKill", Need::kOptional};
};

// A GenTL error that means "this producer does not offer it" and is no reason to stop.
[[nodiscard]] constexpr bool MeansAbsent(GC_ERROR result) {
  return result == GC_ERR_NOT_IMPLEMENTED || result == GC_ERR_NOT_AVAILABLE;
}

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_GENTL_FUNCTIONS_H
