#include "library.h"

using simcam::Call;
using simcam::Library;
using simcam::Required;
using simcam::TransportLayer;

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  return Call("TLOpen", [&](Library& library) {
    TL_HANDLE& handle = Required(phTL, "phTL");
    const auto lock = library.LockTree();
    handle = library.OpenTransportLayer();
  });
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL) {
  return Call("TLClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<TransportLayer>(hTL)->Close(library.Handles());
  });
}

GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Call("TLGetInfo", [&](const Library& library) {
    static_cast<void>(library.Get<TransportLayer>(hTL));
    simcam::TransportLayerInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
  return Call("TLGetNumInterfaces", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto interfaces = library.Get<TransportLayer>(hTL)->InterfaceList();
    Required(piNumIfaces, "piNumIfaces") = static_cast<uint32_t>(interfaces.size());
  });
}

GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
  return Call("TLGetInterfaceID", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto transportLayer = library.Get<TransportLayer>(hTL);
    simcam::CopyText(simcam::AtIndex(transportLayer->InterfaceList(), iIndex).id, sID, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID,
                                        INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                        void* pBuffer, size_t* piSize) {
  return Call("TLGetInterfaceInfo", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<TransportLayer>(hTL)
        ->InfoOfInterface(&Required(sIfaceID, "sIfaceID"), iInfoCmd)
        .CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
  return Call("TLOpenInterface", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto transportLayer = library.Get<TransportLayer>(hTL);
    IF_HANDLE& handle = Required(phIface, "phIface");
    handle = library.Handles().Add(transportLayer->OpenInterface(&Required(sIfaceID, "sIfaceID")));
  });
}

GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged,
                                           uint64_t /*iTimeout*/) {
  return Call("TLUpdateInterfaceList", [&](Library& library) {
    const auto lock = library.LockTree();
    const bool changed = library.Get<TransportLayer>(hTL)->UpdateInterfaceList();
    if (pbChanged != nullptr) {
      *pbChanged = changed ? 1 : 0;
    }
  });
}
