// SPDX-License-Identifier: MIT
// The functions of GenTL 1.3 to 1.6, which only the extended camera exports.
#include <algorithm>

#include "library.h"

using simulated_camera::Buffer;
using simulated_camera::BufferLayout;
using simulated_camera::Call;
using simulated_camera::DataStream;
using simulated_camera::Device;
using simulated_camera::Failure;
using simulated_camera::Interface;
using simulated_camera::Library;
using simulated_camera::Required;

namespace {

constexpr uint32_t kFlowCount = 1;

// Calls `use` with the buffer while no frame is written to it.
template <class Use>
void WithBuffer(const Library& library, DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                const Use& use) {
  const auto stream = library.Get<DataStream>(hDataStream);
  stream->Inspect(*library.Get<Buffer>(hBuffer), use);
}

// Answers a stacked query. Each entry gets its own result, and the thread's last error stays as it
// was. `query` returns the InfoValue for an entry.
template <class Entry, class Query>
void AnswerEach(Entry* entries, size_t count, const Query& query) {
  if (count != 0) {
    static_cast<void>(Required(entries, "pInfoStacked"));
  }
  for (size_t i = 0; i < count; ++i) {
    Entry entry = entries[i];  // The array is packed: its fields have no addresses of their own.
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    size_t size = entry.iSize;
    try {
      entry.iResult = GC_ERR_SUCCESS;
      query(entry).CopyTo(&type, entry.pBuffer, &size);
    } catch (const Failure& failure) {
      entry.iResult = failure.Code();
    }
    entry.iType = type;
    entry.iSize = size;
    entries[i] = entry;
  }
}

}  // namespace

GC_ERROR GC_CALLTYPE IFGetParentTL(IF_HANDLE hIface, TL_HANDLE* phSystem) {
  return Call("IFGetParentTL", [&](const Library& library) {
    const auto interface = library.Get<Interface>(hIface);
    Required(phSystem, "phSystem") = interface->ParentHandle();
  });
}

GC_ERROR GC_CALLTYPE DevGetParentIF(DEV_HANDLE hDevice, IF_HANDLE* phIface) {
  return Call("DevGetParentIF", [&](const Library& library) {
    const auto device = library.Get<Device>(hDevice);
    Required(phIface, "phIface") = device->ParentHandle();
  });
}

GC_ERROR GC_CALLTYPE DSGetParentDev(DS_HANDLE hDataStream, DEV_HANDLE* phDevice) {
  return Call("DSGetParentDev", [&](const Library& library) {
    const auto stream = library.Get<DataStream>(hDataStream);
    Required(phDevice, "phDevice") = stream->ParentHandle();
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                          SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks) {
  return Call("DSGetBufferChunkData", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      size_t& count = Required(piNumChunks, "piNumChunks");
      const std::vector<SINGLE_CHUNK_DATA> chunks = buffer.Chunks();
      const size_t room = std::exchange(count, chunks.size());
      if (pChunkData == nullptr) {
        return;
      }
      if (room < chunks.size()) {
        throw Failure(GC_ERR_BUFFER_TOO_SMALL, "there are more chunks");
      }
      std::ranges::copy(chunks, pChunkData);
    });
  });
}

GC_ERROR GC_CALLTYPE DSGetNumBufferParts(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t* piNumParts) {
  return Call("DSGetNumBufferParts", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      Required(piNumParts, "piNumParts") = buffer.PartCount();
    });
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferPartInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t iPartIndex, BUFFER_PART_INFO_CMD iInfoCmd,
                                         INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Call("DSGetBufferPartInfo", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      buffer.InfoOfPart(iPartIndex, iInfoCmd).CopyTo(piType, pBuffer, piSize);
    });
  });
}

GC_ERROR GC_CALLTYPE DSAnnounceCompositeBuffer(DS_HANDLE hDataStream, size_t iNumSegments,
                                               void** ppSegments, size_t* piSizes, void* pPrivate,
                                               BUFFER_HANDLE* phBuffer) {
  return Call("DSAnnounceCompositeBuffer", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto stream = library.Get<DataStream>(hDataStream);
    BUFFER_HANDLE& handle = Required(phBuffer, "phBuffer");
    if (iNumSegments < kFlowCount) {
      throw Failure(GC_ERR_INVALID_PARAMETER, "a composite buffer needs a segment for each flow");
    }
    void** const bases = &Required(ppSegments, "ppSegments");
    const size_t* const sizes = &Required(piSizes, "piSizes");
    BufferLayout layout{{}, true};
    for (size_t i = 0; i < iNumSegments; ++i) {
      if (bases[i] == nullptr) {
        throw Failure(GC_ERR_INVALID_PARAMETER, "a segment is null");
      }
      layout.segments.push_back({bases[i], sizes[i]});
    }
    const auto buffer = stream->Announce(std::move(layout), pPrivate);
    stream->Adopt(buffer);
    handle = library.Handles().Add(buffer);
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            DS_BUFFER_INFO_STACKED* pInfoStacked,
                                            size_t iNumInfos) {
  return Call("DSGetBufferInfoStacked", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      AnswerEach(pInfoStacked, iNumInfos,
                 [&](const DS_BUFFER_INFO_STACKED& entry) { return buffer.Info(entry.iInfoCmd); });
    });
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferPartInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                                DS_BUFFER_PART_INFO_STACKED* pInfoStacked,
                                                size_t iNumInfos) {
  return Call("DSGetBufferPartInfoStacked", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      AnswerEach(pInfoStacked, iNumInfos, [&](const DS_BUFFER_PART_INFO_STACKED& entry) {
        return buffer.InfoOfPart(entry.iPartIndex, entry.iInfoCmd);
      });
    });
  });
}

GC_ERROR GC_CALLTYPE DSGetNumFlows(DS_HANDLE hDataStream, uint32_t* piNumFlows) {
  return Call("DSGetNumFlows", [&](const Library& library) {
    static_cast<void>(library.Get<DataStream>(hDataStream));
    Required(piNumFlows, "piNumFlows") = kFlowCount;
  });
}

GC_ERROR GC_CALLTYPE DSGetFlowInfo(DS_HANDLE hDataStream, uint32_t iFlowIndex,
                                   FLOW_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                   size_t* piSize) {
  return Call("DSGetFlowInfo", [&](const Library& library) {
    const auto stream = library.Get<DataStream>(hDataStream);
    if (iFlowIndex >= kFlowCount) {
      throw Failure(GC_ERR_INVALID_INDEX, "the stream has one flow only");
    }
    if (iInfoCmd != FLOW_INFO_SIZE) {
      simulated_camera::RefuseCommand(iInfoCmd);
    }
    stream->Info(STREAM_INFO_PAYLOAD_SIZE).CopyTo(piType, pBuffer, piSize);
  });
}

// A buffer that is not composite counts as one segment.
GC_ERROR GC_CALLTYPE DSGetNumBufferSegments(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t* piNumSegments) {
  return Call("DSGetNumBufferSegments", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      Required(piNumSegments, "piNumSegments") = static_cast<uint32_t>(buffer.Segments().size());
    });
  });
}

GC_ERROR GC_CALLTYPE DSGetBufferSegmentInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t iSegmentIndex, SEGMENT_INFO_CMD iInfoCmd,
                                            INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Call("DSGetBufferSegmentInfo", [&](const Library& library) {
    WithBuffer(library, hDataStream, hBuffer, [&](const Buffer& buffer) {
      buffer.InfoOfSegment(iSegmentIndex, iInfoCmd).CopyTo(piType, pBuffer, piSize);
    });
  });
}
