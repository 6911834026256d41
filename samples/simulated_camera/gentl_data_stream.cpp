// SPDX-License-Identifier: MIT
#include "library.h"

using simulated_camera::Buffer;
using simulated_camera::Call;
using simulated_camera::DataStream;
using simulated_camera::Library;
using simulated_camera::Required;

namespace {

BUFFER_HANDLE Announce(Library& library, DataStream& stream, void* base, size_t size,
                       void* userPointer) {
  const auto buffer = stream.Announce({{{base, size}}, false}, userPointer);
  stream.Adopt(buffer);
  return library.Handles().Add(buffer);
}

}  // namespace

GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                      void* pPrivate, BUFFER_HANDLE* phBuffer) {
  return Call("DSAnnounceBuffer", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto stream = library.Get<DataStream>(hDataStream);
    BUFFER_HANDLE& handle = Required(phBuffer, "phBuffer");
    if (pBuffer == nullptr) {
      throw simulated_camera::Failure(GC_ERR_INVALID_PARAMETER, "pBuffer is null");
    }
    handle = Announce(library, *stream, pBuffer, iSize, pPrivate);
  });
}

GC_ERROR GC_CALLTYPE DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate,
                                              BUFFER_HANDLE* phBuffer) {
  return Call("DSAllocAndAnnounceBuffer", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto stream = library.Get<DataStream>(hDataStream);
    BUFFER_HANDLE& handle = Required(phBuffer, "phBuffer");
    handle = Announce(library, *stream, nullptr, iSize, pPrivate);
  });
}

GC_ERROR GC_CALLTYPE DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
  return Call("DSFlushQueue", [&](const Library& library) {
    library.Get<DataStream>(hDataStream)->Flush(iOperation);
  });
}

GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags,
                                        uint64_t iNumToAcquire) {
  return Call("DSStartAcquisition", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<DataStream>(hDataStream)->Start(iStartFlags, iNumToAcquire);
  });
}

GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
  return Call("DSStopAcquisition", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<DataStream>(hDataStream)->Stop(iStopFlags);
  });
}

GC_ERROR GC_CALLTYPE DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd,
                               INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Call("DSGetInfo", [&](const Library& library) {
    library.Get<DataStream>(hDataStream)->Info(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex,
                                   BUFFER_HANDLE* phBuffer) {
  return Call("DSGetBufferID", [&](const Library& library) {
    const auto stream = library.Get<DataStream>(hDataStream);
    Required(phBuffer, "phBuffer") = stream->BufferAt(iIndex)->Handle();
  });
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE hDataStream) {
  return Call("DSClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<DataStream>(hDataStream)->Close(library.Handles());
  });
}

GC_ERROR GC_CALLTYPE DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** ppBuffer,
                                    void** ppPrivate) {
  return Call("DSRevokeBuffer", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto stream = library.Get<DataStream>(hDataStream);
    const auto buffer = library.Get<Buffer>(hBuffer);
    stream->Revoke(buffer);
    buffer->Close(library.Handles());
    if (ppBuffer != nullptr) {
      *ppBuffer = buffer->ConsumersMemory();
    }
    if (ppPrivate != nullptr) {
      *ppPrivate = buffer->UserPointer();
    }
  });
}

GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
  return Call("DSQueueBuffer", [&](const Library& library) {
    library.Get<DataStream>(hDataStream)->Queue(library.Get<Buffer>(hBuffer));
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                     BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  return Call("DSGetBufferInfo", [&](const Library& library) {
    const auto stream = library.Get<DataStream>(hDataStream);
    stream->Inspect(*library.Get<Buffer>(hBuffer), [&](const Buffer& buffer) {
      InfoOf(buffer, iInfoCmd, library.CameraSettings().quirk).CopyTo(piType, pBuffer, piSize);
    });
  });
}
