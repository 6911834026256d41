#include "library.h"

using simcam::Call;
using simcam::Failure;
using simcam::Library;
using simcam::Module;
using simcam::Required;

namespace {

void RequireData(const void* data, size_t size) {
  if (data == nullptr && size != 0) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "there is no buffer");
  }
}

// Does `access` with one entry after the other, up to the first failure; *count tells how many
// were done, which is right after a failure, too.
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
    throw Failure(GC_ERR_INVALID_PARAMETER, "the port has one URL only");
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
    simcam::CopyText(library.Get<Module>(hPort)->Url(), sURL, piSize);
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
