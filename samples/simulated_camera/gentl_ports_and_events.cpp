// SPDX-License-Identifier: MIT
#include "library.h"

using simulated_camera::Call;
using simulated_camera::EventQueue;
using simulated_camera::Failure;
using simulated_camera::Library;
using simulated_camera::Module;
using simulated_camera::Required;

namespace {

void RequireData(const void* data, size_t size) {
  if (data == nullptr && size != 0) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "there is no buffer");
  }
}

// Calls `access` for each entry up to the first failure. *count is the number of entries done,
// after a failure as well.
template <class Access>
void ForEachEntry(PORT_REGISTER_STACK_ENTRY* entries, size_t* count, const Access& access) {
  size_t& done = Required(count, "piNumEntries");
  const size_t wanted = done;
  RequireData(entries, wanted);
  for (done = 0; done < wanted; ++done) {
    const PORT_REGISTER_STACK_ENTRY& entry = entries[done];
    RequireData(entry.pBuffer, entry.Size);
    access(entry);
  }
}

void RequireOnlyUrl(uint32_t index) {
  if (index != 0) {
    throw Failure(simulated_camera::kBadIndex, "the port has one URL only");
  }
}

}  // namespace

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                                size_t* piSize) {
  return Call("GCReadPort", [&](const Library& library) {
    const auto port = library.Get<Module>(hPort);
    const size_t size = Required(piSize, "piSize");
    RequireData(pBuffer, size);
    port->Read(iAddress, pBuffer, size);
  });
}

GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize) {
  return Call("GCWritePort", [&](const Library& library) {
    const auto port = library.Get<Module>(hPort);
    const size_t size = Required(piSize, "piSize");
    RequireData(pBuffer, size);
    port->Write(iAddress, pBuffer, size);
  });
}

GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
  return Call("GCGetPortURL", [&](const Library& library) {
    simulated_camera::CopyText(library.Get<Module>(hPort)->Url(), sURL, piSize);
  });
}

GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
  return Call("GCGetNumPortURLs", [&](const Library& library) {
    static_cast<void>(library.Get<Module>(hPort));
    Required(piNumURLs, "piNumURLs") = 1;
  });
}

GC_ERROR GC_CALLTYPE GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                   void* pBuffer, size_t* piSize) {
  return Call("GCGetPortInfo", [&](const Library& library) {
    library.Get<Module>(hPort)->PortInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd,
                                      INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Call("GCGetPortURLInfo", [&](const Library& library) {
    const auto port = library.Get<Module>(hPort);
    RequireOnlyUrl(iURLIndex);
    port->UrlInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                       size_t* piNumEntries) {
  return Call("GCReadPortStacked", [&](const Library& library) {
    const auto port = library.Get<Module>(hPort);
    ForEachEntry(pEntries, piNumEntries, [&](const PORT_REGISTER_STACK_ENTRY& entry) {
      port->Read(entry.Address, entry.pBuffer, entry.Size);
    });
  });
}

GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                        size_t* piNumEntries) {
  return Call("GCWritePortStacked", [&](const Library& library) {
    const auto port = library.Get<Module>(hPort);
    ForEachEntry(pEntries, piNumEntries, [&](const PORT_REGISTER_STACK_ENTRY& entry) {
      port->Write(entry.Address, entry.pBuffer, entry.Size);
    });
  });
}

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

// Holds no lock while it waits.
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
    simulated_camera::EventDataInfo(queue->Type(), data, iInfoCmd)
        .CopyTo(piType, pOutBuffer, piOutSize);
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
