// SPDX-License-Identifier: MIT
// A GenTL producer: its module, its functions, and their answers.
#ifndef VEXTREL_SAMPLES_GRAB_PRODUCER_H
#define VEXTREL_SAMPLES_GRAB_PRODUCER_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "gentl/gentl.h"

namespace grab {

// What went wrong, as one sentence for the user, without a line end.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A dynamic library; the destructor unloads it.
class Library {
 public:
  // Throws Error with the system's reason.
  explicit Library(const std::filesystem::path& file);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Returns null if the library does not export `name`.
  [[nodiscard]] void* Find(const char* name) const;

 private:
  void* handle_ = nullptr;
};

class Producer;
enum class Need { Required, Optional };
using InfoQuery = std::function<GC_ERROR(INFO_DATATYPE* type, void* buffer, std::size_t* size)>;

// The common part of all functions.
class AnyFunction {
 public:
  AnyFunction(const Producer& producer, const char* name) : producer_(producer), name_(name) {}

  // Returns what failed and why, in the producer's own words if it has any. REQUIRES: no other call
  // since the failed one on this thread, because the producer keeps only its last error.
  [[nodiscard]] std::string Describe(GC_ERROR result) const;

  // Returns false if `result` says that the producer does not offer this. Throws Error for any
  // other failure.
  [[nodiscard]] bool Check(GC_ERROR result) const;

  // Returns `handle`. Throws Error if it is null: some producers report success and give none.
  [[nodiscard]] void* CheckHandle(void* handle) const;

 protected:
  // Throws Error if a required function is missing.
  [[nodiscard]] void* Find(Need need) const;
  [[noreturn]] void Fail(GC_ERROR result) const;
  [[nodiscard]] std::optional<std::string> ReadText(const InfoQuery& query) const;
  [[nodiscard]] std::optional<std::uint64_t> ReadNumber(const InfoQuery& query) const;
  [[nodiscard]] std::string ReadId(const InfoQuery& query) const;

 private:
  const Producer& producer_;
  const char* name_;
};

// One function of the producer.
template <typename Signature>
class Function;

template <typename... Parameters>
class Function<GC_ERROR GC_CALLTYPE(Parameters...)> : public AnyFunction {
 public:
  Function(const Producer& producer, const char* name, Need need = Need::Required)
      : AnyFunction(producer, name), address_(reinterpret_cast<Address>(Find(need))) {}

  // Calls the function. Throws Error if it fails.
  void operator()(Parameters... arguments) const {
    if (const GC_ERROR result = Try(arguments...); result != GC_ERR_SUCCESS) {
      Fail(result);
    }
  }

  // Calls the function. Returns GC_ERR_NOT_IMPLEMENTED if the producer does not export it.
  [[nodiscard]] GC_ERROR Try(Parameters... arguments) const {
    return address_ != nullptr ? address_(arguments...) : GC_ERR_NOT_IMPLEMENTED;
  }

  // Calls the function and ignores failure, because cleanup has to go on.
  void Quietly(Parameters... arguments) const { static_cast<void>(Try(arguments...)); }

  // Calls the function. Returns false if the producer does not offer it; throws Error if it fails
  // for another reason.
  [[nodiscard]] bool IfOffered(Parameters... arguments) const { return Check(Try(arguments...)); }

  // Calls a function whose last parameter receives a new handle, and returns the handle.
  template <typename... Arguments>
  [[nodiscard]] void* Open(Arguments... arguments) const {
    void* handle = nullptr;
    (*this)(arguments..., &handle);
    return CheckHandle(handle);
  }

  // Queries an info function; the arguments are all but type, buffer and size. Returns nothing if
  // the producer has no answer. Negative numbers are sign-extended.
  template <typename... Arguments>
  [[nodiscard]] std::optional<std::string> Text(Arguments... arguments) const {
    return ReadText([&](INFO_DATATYPE* type, void* buffer, std::size_t* size) {
      return Try(arguments..., type, buffer, size);
    });
  }
  template <typename... Arguments>
  [[nodiscard]] std::optional<std::uint64_t> Number(Arguments... arguments) const {
    return ReadNumber([&](INFO_DATATYPE* type, void* buffer, std::size_t* size) {
      return Try(arguments..., type, buffer, size);
    });
  }

  // Queries an ID or URL, which every producer has; the arguments are all but buffer and size.
  template <typename... Arguments>
  [[nodiscard]] std::string Id(Arguments... arguments) const {
    return ReadId([&](INFO_DATATYPE*, void* buffer, std::size_t* size) {
      return Try(arguments..., static_cast<char*>(buffer), size);
    });
  }

 private:
  using Address = GC_ERROR(GC_CALLTYPE*)(Parameters...);

  const Address address_;
};

// An initialized producer; the destructor closes it.
class Producer {
 public:
  // Throws Error if the library lacks a required function or refuses to start. REQUIRES: `library`
  // outlives the producer.
  explicit Producer(const Library& library);
  ~Producer() { GCCloseLib.Quietly(); }
  Producer(const Producer&) = delete;
  Producer& operator=(const Producer&) = delete;

 private:
  friend class AnyFunction;

  const Library& loaded_;

 public:
  const Function<decltype(::GCInitLib)> GCInitLib{*this, "GCInitLib"};
  const Function<decltype(::GCCloseLib)> GCCloseLib{*this, "GCCloseLib"};
  const Function<decltype(::GCGetInfo)> GCGetInfo{*this, "GCGetInfo", Need::Optional};
  const Function<decltype(::GCGetLastError)> GCGetLastError{*this, "GCGetLastError",
                                                            Need::Optional};

  const Function<decltype(::TLOpen)> TLOpen{*this, "TLOpen"};
  const Function<decltype(::TLClose)> TLClose{*this, "TLClose"};
  const Function<decltype(::TLGetInfo)> TLGetInfo{*this, "TLGetInfo", Need::Optional};
  const Function<decltype(::TLUpdateInterfaceList)> TLUpdateInterfaceList{*this,
                                                                          "TLUpdateInterfaceList"};
  const Function<decltype(::TLGetNumInterfaces)> TLGetNumInterfaces{*this, "TLGetNumInterfaces"};
  const Function<decltype(::TLGetInterfaceID)> TLGetInterfaceID{*this, "TLGetInterfaceID"};
  const Function<decltype(::TLGetInterfaceInfo)> TLGetInterfaceInfo{*this, "TLGetInterfaceInfo",
                                                                    Need::Optional};
  const Function<decltype(::TLOpenInterface)> TLOpenInterface{*this, "TLOpenInterface"};

  const Function<decltype(::IFClose)> IFClose{*this, "IFClose"};
  const Function<decltype(::IFGetInfo)> IFGetInfo{*this, "IFGetInfo", Need::Optional};
  const Function<decltype(::IFUpdateDeviceList)> IFUpdateDeviceList{*this, "IFUpdateDeviceList"};
  const Function<decltype(::IFGetNumDevices)> IFGetNumDevices{*this, "IFGetNumDevices"};
  const Function<decltype(::IFGetDeviceID)> IFGetDeviceID{*this, "IFGetDeviceID"};
  const Function<decltype(::IFGetDeviceInfo)> IFGetDeviceInfo{*this, "IFGetDeviceInfo",
                                                              Need::Optional};
  const Function<decltype(::IFOpenDevice)> IFOpenDevice{*this, "IFOpenDevice"};

  const Function<decltype(::DevClose)> DevClose{*this, "DevClose"};
  const Function<decltype(::DevGetPort)> DevGetPort{*this, "DevGetPort"};
  const Function<decltype(::DevGetNumDataStreams)> DevGetNumDataStreams{*this,
                                                                        "DevGetNumDataStreams"};
  const Function<decltype(::DevGetDataStreamID)> DevGetDataStreamID{*this, "DevGetDataStreamID"};
  const Function<decltype(::DevOpenDataStream)> DevOpenDataStream{*this, "DevOpenDataStream"};

  const Function<decltype(::GCGetNumPortURLs)> GCGetNumPortURLs{*this, "GCGetNumPortURLs",
                                                                Need::Optional};
  const Function<decltype(::GCGetPortURL)> GCGetPortURL{*this, "GCGetPortURL"};
  const Function<decltype(::GCGetPortURLInfo)> GCGetPortURLInfo{*this, "GCGetPortURLInfo",
                                                                Need::Optional};
  const Function<decltype(::GCGetPortInfo)> GCGetPortInfo{*this, "GCGetPortInfo", Need::Optional};
  const Function<decltype(::GCReadPort)> GCReadPort{*this, "GCReadPort"};
  const Function<decltype(::GCWritePort)> GCWritePort{*this, "GCWritePort"};
  const Function<decltype(::GCReadPortStacked)> GCReadPortStacked{*this, "GCReadPortStacked",
                                                                  Need::Optional};

  const Function<decltype(::DSClose)> DSClose{*this, "DSClose"};
  const Function<decltype(::DSGetInfo)> DSGetInfo{*this, "DSGetInfo"};
  const Function<decltype(::DSAnnounceBuffer)> DSAnnounceBuffer{*this, "DSAnnounceBuffer"};
  const Function<decltype(::DSAllocAndAnnounceBuffer)> DSAllocAndAnnounceBuffer{
      *this, "DSAllocAndAnnounceBuffer", Need::Optional};
  const Function<decltype(::DSQueueBuffer)> DSQueueBuffer{*this, "DSQueueBuffer"};
  const Function<decltype(::DSGetBufferInfo)> DSGetBufferInfo{*this, "DSGetBufferInfo"};
  const Function<decltype(::DSFlushQueue)> DSFlushQueue{*this, "DSFlushQueue"};
  const Function<decltype(::DSRevokeBuffer)> DSRevokeBuffer{*this, "DSRevokeBuffer"};
  const Function<decltype(::DSStartAcquisition)> DSStartAcquisition{*this, "DSStartAcquisition"};
  const Function<decltype(::DSStopAcquisition)> DSStopAcquisition{*this, "DSStopAcquisition"};

  const Function<decltype(::GCRegisterEvent)> GCRegisterEvent{*this, "GCRegisterEvent"};
  const Function<decltype(::GCUnregisterEvent)> GCUnregisterEvent{*this, "GCUnregisterEvent"};
  const Function<decltype(::EventGetData)> EventGetData{*this, "EventGetData"};
  const Function<decltype(::EventFlush)> EventFlush{*this, "EventFlush", Need::Optional};
  const Function<decltype(::EventKill)> EventKill{*this, "EventKill", Need::Optional};
};

// Returns "-" if there is no value.
[[nodiscard]] std::string OrDash(const std::optional<std::string>& text);
[[nodiscard]] std::string OrDash(const std::optional<std::uint64_t>& number);

// Convert file names from and to the encoding of the command line.
[[nodiscard]] std::filesystem::path PathFromText(const char* text);
[[nodiscard]] std::string PathText(const std::filesystem::path& path);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_PRODUCER_H
