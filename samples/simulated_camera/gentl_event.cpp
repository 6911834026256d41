#include "event_data.h"
#include "library.h"

using simcam::Call;
using simcam::EventQueue;
using simcam::Library;
using simcam::Module;
using simcam::Required;

GC_ERROR GC_CALLTYPE GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID,
                                     EVENT_HANDLE* phEvent) {
  return Call("GCRegisterEvent", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto source = library.Get<Module>(hEventSrc);
    EVENT_HANDLE& handle = Required(phEvent, "phEvent");
    handle = library.Handles().Add(source->RegisterEvent(iEventID));
  });
}

GC_ERROR GC_CALLTYPE GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
  return Call("GCUnregisterEvent", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto queue = library.Get<Module>(hEventSrc)->UnregisterEvent(iEventID);
    library.Handles().Remove(queue->Handle());
  });
}

// No lock is held while it waits.
GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize,
                                  uint64_t iTimeout) {
  return Call("EventGetData", [&](const Library& library) {
    library.Get<EventQueue>(hEvent)->Take(pBuffer, piSize, iTimeout);
  });
}

GC_ERROR GC_CALLTYPE EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize,
                                      EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                      void* pOutBuffer, size_t* piOutSize) {
  return Call("EventGetDataInfo", [&](const Library& library) {
    const auto queue = library.Get<EventQueue>(hEvent);
    const std::string_view data(&Required(static_cast<const char*>(pInBuffer), "pInBuffer"),
                                iInSize);
    simcam::EventDataInfo(queue->Type(), data, iInfoCmd).CopyTo(piType, pOutBuffer, piOutSize);
  });
}

GC_ERROR GC_CALLTYPE EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd,
                                  INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Call("EventGetInfo", [&](const Library& library) {
    library.Get<EventQueue>(hEvent)->Info(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE hEvent) {
  return Call("EventFlush",
              [&](const Library& library) { library.Get<EventQueue>(hEvent)->Discard(); });
}

GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE hEvent) {
  return Call("EventKill",
              [&](const Library& library) { library.Get<EventQueue>(hEvent)->Kill(); });
}
