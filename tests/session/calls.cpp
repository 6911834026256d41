// SPDX-License-Identifier: MIT
#include "session/calls.h"

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>

#include "model/messages.h"
#include "session/arguments.h"

namespace vextrel_test::session {
namespace {

using F = GenTLFunctions;
using Kind = HandleKind;

// The text of a line. Some functions have another one for a missing output.
struct Format {
  Format(const char* itsUsual, const char* itsWhenMissing = nullptr)
      : usual(itsUsual), whenMissing(itsWhenMissing) {}

  const char* usual;
  const char* whenMissing;
};

constexpr auto kNoStep = [](Session&, auto...) {};

// Expects the error of a call that needs an open transport layer if there is none.
bool HasRegistry(Session& session) {
  if (!session.registry.IsOpen()) {
    session.log.Error(model::kNoTransportLayer);
  }
  return session.registry.IsOpen();
}

// The registry's part leaves no trace that a log shows.
constexpr auto kUnseenStep = [](Session& session, auto...) {
  static_cast<void>(HasRegistry(session));
};

// A call with these arguments, its line, and the registry's step, step(session, arguments...), if
// it succeeds.
template <typename... Parameters, typename... Generators, typename Step>
RandomCall Call(GC_ERROR (GC_CALLTYPE* GenTLFunctions::*slot)(Parameters...), Format format,
                std::tuple<Generators...> generators, Step step, unsigned weight = 40) {
  const auto make = [=](Session& session) {
    // In braces, so that they are drawn from left to right.
    const auto arguments = std::apply(
        [&](const auto&... generate) { return std::tuple{generate(session)...}; }, generators);
    const auto given = std::apply(
        [](const auto&... argument) { return std::tuple_cat(argument.given...); }, arguments);
    const GC_ERROR result =
        std::apply([&](auto... value) { return session.Call(slot, value...); }, given);
    Values values = {model::kGcErrors.NameOf(result)};
    bool isMissing = false;
    const auto show = [&](const auto& argument) {
      const Values shown = argument.show();
      values.insert(values.end(), shown.begin(), shown.end());
      isMissing = isMissing || argument.isMissing;
    };
    std::apply([&](const auto&... argument) { (show(argument), ...); }, arguments);
    session.log.Info(isMissing ? format.whenMissing : format.usual, values);
    if (result == GC_ERR_SUCCESS) {
      std::apply([&](auto... value) { step(session, value...); }, given);
    }
  };
  return {Session::NameOf(slot), make, weight};
}

template <typename... Parameters, typename... Generators>
RandomCall Call(GC_ERROR (GC_CALLTYPE* GenTLFunctions::*slot)(Parameters...), Format format,
                std::tuple<Generators...> generators) {
  return Call(slot, format, generators, kNoStep);
}

template <typename... Generators>
std::tuple<Generators...> With(Generators... generators) {
  return {std::move(generators)...};
}

// What IFClose, DevClose and DSClose do alike.
template <typename Remove>
auto CloseStep(const char* illegal, const char* notOpened, Remove remove) {
  return [=](Session& session, void* handle) {
    if (handle == nullptr) {
      session.log.Error(illegal);
      return;
    }
    session.registry.ReleaseEvents(handle);
    if (HasRegistry(session) && !(session.registry.*remove)(handle)) {
      session.log.Error(notOpened);
    }
  };
}

// Both ways of announcing; the output, read unguarded for the line, is the last argument.
constexpr auto kAnnounceStep = [](Session& session, void* hDataStream, auto... others) {
  if (HasRegistry(session)) {
    session.registry.AddBuffer(hDataStream,
                               *std::get<sizeof...(others) - 1>(std::tuple{others...}));
  }
};

// Of every level, so that each of them gets events.
Generator<void*> EventSource() {
  return [](Session& session) {
    return OfHandle(session.random.Pick({Kind::TransportLayer, Kind::Interface, Kind::Device,
                                         Kind::DataStream, Kind::Buffer, Kind::Buffer}))(session);
  };
}

// Few enough to meet again.
Generator<EVENT_TYPE> EventType() {
  return [](Session& session) -> Argument<EVENT_TYPE> {
    const EVENT_TYPE type = session.random.OneIn(8)
                                ? session.random.Command(4)
                                : static_cast<EVENT_TYPE>(session.random.Below(3));
    return {{type}, [=] { return Values{model::kEventTypes.NameOf(type)}; }};
  };
}

}  // namespace

// Each line stands on one line, as it is written.
// clang-format off
std::vector<RandomCall> ForwardedCalls() {
  using model::Registry;
  return {
      Call(&F::GCGetInfo,
           "%s=GCGetInfo(iInfoCmd=%s, 0x%p->(iType=%s), Buffer=%s, 0x%p->(iSize=%u))",
           With(Named(model::kTlInfoCmds), Info(InfoShows::NoBufferAddress))),
      Call(&F::GCGetLastError,
           "%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), 0x%p->(iSize=%u))",
           With(LastError())),
      Call(&F::GCReadPort,
           "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%lu)",
           With(OfHandle(Kind::Port), Number<std::uint64_t>(), DataRead())),
      Call(&F::GCWritePort,
           "%s=GCWritePort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)",
           With(OfHandle(Kind::Port), Number<std::uint64_t>(), DataWritten())),
      Call(&F::GCGetPortURL,
           "%s=GCGetPortURL(hPort=0x%p, 0x%p->(URL=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Port), TextOutput())),
      Call(&F::GCGetNumPortURLs,
           "%s=GCGetNumPortURLs(hPort=0x%p, 0x%p->(iNumURLs=%u))",
           With(OfHandle(Kind::Port), CountOutput())),
      Call(&F::GCGetPortInfo,
           "%s=GCGetPortInfo(hPort=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(%u))",
           With(OfHandle(Kind::Port), Named(model::kPortInfoCmds), Info())),
      Call(&F::GCGetPortURLInfo,
           "%s=GCGetPortURLInfo(hPort=0x%p, iURLIndex=%u, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Port), Number<std::uint32_t>(), Named(model::kUrlInfoCmds), Info())),
      Call(&F::GCReadPortStacked,
           "%s=GCReadPortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)",
           With(OfHandle(Kind::Port), Stack())),
      Call(&F::GCWritePortStacked,
           "%s=GCWritePortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Entries=%s), 0x%p->(iNumEntries=%u)",
           With(OfHandle(Kind::Port), Stack())),

      Call(&F::TLOpen, "%s=TLOpen(0x%p->(pHandle=0x%p))",
           With(HandleOutput(Kind::TransportLayer)),
           [](Session& session, void** phTL) { session.registry.Open(*phTL); }, 1),
      Call(&F::TLClose, "%s=TLClose(hTL=0x%p)", With(OfHandle(Kind::TransportLayer)),
           [](Session& session, void* hTL) {
             session.registry.ReleaseEvents(hTL);
             if (session.registry.IsOpen()) {
               session.registry.Close();
             }
           }, 1),
      Call(&F::TLGetInfo,
           "%s=TLGetInfo(hTL=%p, iInfoCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::TransportLayer), Named(model::kTlInfoCmds), Info())),
      Call(&F::TLGetNumInterfaces,
           "%s=TLGetNumInterfaces(hTL=0x%p, 0x%p->(iNumInterfaces=0x%u))",
           With(OfHandle(Kind::TransportLayer), CountOutput())),
      Call(&F::TLGetInterfaceID,
           "%s=TLGetInterfaceID(hTL=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::TransportLayer), Number<std::uint32_t>(), TextOutput())),
      Call(&F::TLGetInterfaceInfo,
           "%s=TLGetInterfaceInfo(hTL=0x%p, 0x%p->(sInterfaceName=%s), iCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::TransportLayer), Text(), Named(model::kInterfaceInfoCmds),
                Info(InfoShows::NoBufferAddress, 1))),
      Call(&F::TLOpenInterface,
           "%s=TLOpenInterface(hTL=0x%p, 0x%p->(sInterfaceName=%s), 0x%p->(hInterface=%p))",
           // The output is read unguarded for the line: never null.
           With(OfHandle(Kind::TransportLayer), Text(), HandleOutput(Kind::Interface)),
           [](Session& session, void* /*hTL*/, const char* /*sIfaceID*/, void** phIface) {
             if (HasRegistry(session)) {
               session.registry.AddInterface(*phIface);
             }
           }),
      Call(&F::TLUpdateInterfaceList,
           {"%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)",
            "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p, iTimeout=%lu)"},
           With(OfHandle(Kind::TransportLayer), ChangeFlagOrNull(), Number<std::uint64_t>())),

      Call(&F::IFClose, "%s=IFClose(hInterface=0x%p)", With(OfHandle(Kind::Interface)),
           CloseStep(model::kIllegalInterface, model::kInterfaceNotOpened, &Registry::RemoveInterface), 15),
      Call(&F::IFGetInfo,
           "%s=IFGetInfo(hInterface=0x%p, iID=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Interface), Named(model::kInterfaceInfoCmds), Info())),
      Call(&F::IFGetNumDevices,
           "%s=IFGetNumDevices(hInterface=0x%p, 0x%p->(iNumDevices=0x%u))",
           With(OfHandle(Kind::Interface), CountOutput())),
      Call(&F::IFGetDeviceID,
           "%s=IFGetDeviceID(hInterface=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Interface), Number<std::uint32_t>(), TextOutput())),
      Call(&F::IFUpdateDeviceList,
           {"%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)",
            "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p, iTimeout=%lu)"},
           With(OfHandle(Kind::Interface), ChangeFlagOrNull(), Number<std::uint64_t>())),
      Call(&F::IFGetDeviceInfo,
           "%s=IFGetDeviceInfo(hInterface=0x%p, psDeviceName=%s, iID=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Interface), TextWithoutAddress(), Named(model::kDeviceInfoCmds), Info())),
      Call(&F::IFOpenDevice,
           {"%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p->(hDev=0x%x))",
            "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p)"},
           With(OfHandle(Kind::Interface), Text(), Named(model::kDeviceAccessFlags),
                HandleOutputOrNull(Kind::Device)),
           [](Session& session, void* hIface, const char* /*id*/, DEVICE_ACCESS_FLAGS /*flags*/, void** phDevice) {
             if (phDevice == nullptr) {
               session.log.Error(model::kNoDeviceSlot);
             } else if (HasRegistry(session)) {
               session.registry.AddDevice(hIface, *phDevice);
             }
           }, 100),

      Call(&F::DevGetPort, "%s=DevGetPort(hDev=0x%p, 0x%p->(pPort=0x%p))",
           With(OfHandle(Kind::Device), HandleOutput(Kind::Port))),
      Call(&F::DevGetNumDataStreams,
           "%s=DevGetNumDataStreams(hDev=0x%p, 0x%p->(piNumChannel=%u))",
           With(OfHandle(Kind::Device), CountOutput())),
      Call(&F::DevGetDataStreamID,
           "%s=DevGetDataStreamID(hDev=0x%p, iIndex=%u, 0x%p->(pBuffer=%s), 0x%p->(iSize=0x%u))",
           With(OfHandle(Kind::Device), Number<std::uint32_t>(), TextOutput())),
      Call(&F::DevOpenDataStream,
           "%s=DevOpenDataStream(hDev=0x%p, 0x%p->(pID=%s), 0x%p->(hDS=0x%p))",
           With(OfHandle(Kind::Device), Text(), HandleOutput(Kind::DataStream)),
           [](Session& session, void* hDevice, const char* /*id*/, void** phDataStream) {
             if (hDevice == nullptr) {
               session.log.Error(model::kNoDeviceForDataStream);
             } else if (HasRegistry(session)) {
               session.registry.AddDataStream(hDevice, *phDataStream);
             }
           }, 120),
      Call(&F::DevGetInfo,
           "%s=DevGetInfo(hDev=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Device), Named(model::kDeviceInfoCmds), Info())),
      Call(&F::DevClose, "%s=DevClose(hDev=0x%p)", With(OfHandle(Kind::Device)),
           CloseStep(model::kIllegalDevice, model::kDeviceNotOpened, &Registry::RemoveDevice), 25),

      Call(&F::DSAnnounceBuffer,
           "%s=DSAnnounceBuffer(hDS=0x%p, pBuffer=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))",
           With(OfHandle(Kind::DataStream), AnyAddress(), Number<std::size_t>(), AnyAddress(),
                HandleOutput(Kind::Buffer)),
           kAnnounceStep, 100),
      Call(&F::DSAllocAndAnnounceBuffer,
           "%s=DSAllocAndAnnounceBuffer(hDS=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))",
           With(OfHandle(Kind::DataStream), Number<std::size_t>(), AnyAddress(), HandleOutput(Kind::Buffer)),
           kAnnounceStep, 100),
      Call(&F::DSFlushQueue, "%s=DSFlushQueue(hDS=0x%p, QueueType=%s)",
           With(OfHandle(Kind::DataStream), Named(model::kAcqQueueTypes)), kUnseenStep),
      Call(&F::DSStartAcquisition,
           "%s=DSStartAcquisition(hDS=0x%p, Flags=%s, iNumFramesToAcquire=%lu)",
           With(OfHandle(Kind::DataStream), Named(model::kAcqStartFlags), Number<std::uint64_t>())),
      Call(&F::DSStopAcquisition, "%s=DSStopAcquisition(hDS=0x%p, Flags=%s)",
           With(OfHandle(Kind::DataStream), Named(model::kAcqStopFlags))),
      Call(&F::DSGetInfo,
           "%s=DSGetInfo(hDS=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::DataStream), Named(model::kStreamInfoCmds), Info())),
      Call(&F::DSGetBufferID,
           "%s=DSGetBufferID(hDS=0x%p, iIndex=%u, 0x%p->(hBuffer=0x%p))",
           With(OfHandle(Kind::DataStream), Number<std::uint32_t>(), HandleOutput(Kind::Buffer))),
      Call(&F::DSClose, "%s=DSClose(hDS=0x%p)", With(OfHandle(Kind::DataStream)),
           CloseStep(model::kIllegalDataStream, model::kDataStreamNotOpened, &Registry::RemoveDataStream)),
      Call(&F::DSRevokeBuffer,
           "%s=DSRevokeBuffer(hDS=0x%p, hBuffer=0x%p, pBuffer=%s, pPrivate=%s)",
           With(OfHandle(Kind::DataStream), OfHandle(Kind::Buffer), PointerSlot(), PointerSlot()),
           [](Session& session, void* hDataStream, void* hBuffer, void** /*ppBuffer*/, void** /*ppPrivate*/) {
             if (hBuffer == nullptr) {
               session.log.Error(model::kIllegalBuffer);
             } else if (HasRegistry(session) && !session.registry.RemoveBuffer(hDataStream, hBuffer)) {
               session.log.Error(model::kBufferNotAnnounced);
             }
           }, 100),
      Call(&F::DSQueueBuffer, "%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)",
           With(OfHandle(Kind::DataStream), OfHandle(Kind::Buffer)), kUnseenStep),
      Call(&F::DSGetBufferInfo,
           "%s=DSGetBufferInfo(hDS=0x%p, hBuffer=0x%p, iCommand=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::DataStream), OfHandle(Kind::Buffer), Named(model::kBufferInfoCmds),
                InfoWithOptionalType())),

      Call(&F::GCRegisterEvent,
           "%s=GCRegisterEvent(hEventSrc=0x%p, iEvent=%s, 0x%p->(hE=0x%p))",
           With(EventSource(), EventType(), HandleOutput(Kind::Event)),
           [](Session& session, void* hEventSrc, EVENT_TYPE iEventID, void** phEvent) {
             if (HasRegistry(session)) {
               session.registry.AddEvent(hEventSrc, iEventID, *phEvent);
             }
           }, 200),
      Call(&F::GCUnregisterEvent, "%s=GCUnregisterEvent(hEventSrc=0x%p, iEvent=%s)",
           With(EventSource(), EventType()),
           [](Session& session, void* hEventSrc, EVENT_TYPE iEventID) {
             if (hEventSrc == nullptr) {
               session.log.Error(model::kIllegalInterface);
             } else if (HasRegistry(session) && !session.registry.RemoveEvent(hEventSrc, iEventID)) {
               session.log.Error(model::kEventNotRegistered, {iEventID});
             }
           }),
      Call(&F::EventGetData,
           "%s=EventGetData(hEvent=0x%p, 0x%p->(Buffer=%s), 0x%p->(iSize=%u), iTimeout=%lu)",
           With(OfHandle(Kind::Event), EventData(), Number<std::uint64_t>()), kUnseenStep),
      // The size of the event's data is in the call only.
      Call(&F::EventGetDataInfo,
           "%s=EventGetDataInfo(hEvent=0x%p, pInBuffer=0x%p, iEventBufferSize=%u, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Event), AnyAddress(), UnshownSize(), Named(model::kEventDataInfoCmds),
                Info(InfoShows::Everything, 1))),
      Call(&F::EventGetInfo,
           "%s=EventGetInfo(hEvent=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
           With(OfHandle(Kind::Event), Named(model::kEventInfoCmds), Info())),
      Call(&F::EventFlush, "%s=EventFlush(hEvent=0x%p)", With(OfHandle(Kind::Event))),
      Call(&F::EventKill, "%s=EventKill(hEvent=0x%p)", With(OfHandle(Kind::Event))),
  };
}
// clang-format on

}  // namespace vextrel_test::session
