// SPDX-License-Identifier: MIT
#include "gentl_1_5.h"

#include <algorithm>
#include <iostream>

namespace grab {
namespace {

constexpr const char* kGenTL15Functions[] = {
    // GenTL 1.0
    "GCGetInfo", "GCGetLastError", "GCInitLib", "GCCloseLib", "GCReadPort", "GCWritePort",
    "GCGetPortURL", "GCGetPortInfo", "GCRegisterEvent", "GCUnregisterEvent", "EventGetData",
    "EventGetDataInfo", "EventGetInfo", "EventFlush", "EventKill", "TLOpen", "TLClose", "TLGetInfo",
    "TLGetNumInterfaces", "TLGetInterfaceID", "TLGetInterfaceInfo", "TLOpenInterface",
    "TLUpdateInterfaceList", "IFClose", "IFGetInfo", "IFGetNumDevices", "IFGetDeviceID",
    "IFUpdateDeviceList", "IFGetDeviceInfo", "IFOpenDevice", "DevGetPort", "DevGetNumDataStreams",
    "DevGetDataStreamID", "DevOpenDataStream", "DevGetInfo", "DevClose", "DSAnnounceBuffer",
    "DSAllocAndAnnounceBuffer", "DSFlushQueue", "DSStartAcquisition", "DSStopAcquisition",
    "DSGetInfo", "DSGetBufferID", "DSClose", "DSRevokeBuffer", "DSQueueBuffer", "DSGetBufferInfo",
    // GenTL 1.1
    "GCGetNumPortURLs", "GCGetPortURLInfo", "GCReadPortStacked", "GCWritePortStacked",
    // GenTL 1.3
    "DSGetBufferChunkData",
    // GenTL 1.4
    "IFGetParentTL", "DevGetParentIF", "DSGetParentDev",
    // GenTL 1.5
    "DSGetNumBufferParts", "DSGetBufferPartInfo"};
static_assert(std::size(kGenTL15Functions) == 57);

[[nodiscard]] std::string PartTypeText(const std::optional<std::uint64_t>& type) {
  if (!type) {
    return "-";
  }
  switch (*type) {
    case PART_DATATYPE_2D_IMAGE:
      return "2D image";
    case PART_DATATYPE_3D_IMAGE:
      return "3D image";
    case PART_DATATYPE_CONFIDENCE_MAP:
      return "confidence map";
    default:
      return "data of type " + std::to_string(*type);
  }
}

// Calls the function. Returns false if it isn't offered or has no data. Throws Error if it fails
// for another reason.
template <typename F, typename... Arguments>
[[nodiscard]] bool Get(const F& function, Arguments... arguments) {
  const GC_ERROR result = function.Try(arguments...);
  return result != GC_ERR_NO_DATA && function.Check(result);
}

template <typename F>
[[nodiscard]] std::string CompareParent(const F& getParent, void* child, void* opened) {
  void* parent = nullptr;
  if (!Get(getParent, child, &parent)) {
    return "-";
  }
  return parent == opened ? "as opened" : "not as opened";
}

}  // namespace

void DemandGenTL15(const Library& library) {
  for (const char* const name : kGenTL15Functions) {
    if (library.Find(name) == nullptr) {
      throw MissingFunction(std::string("The producer does not export ") + name +
                            ", which a consumer of GenTL 1.5 demands.");
    }
  }
}

void GenTL15::PrintParents() const {
  std::cout << "Parents: device " << CompareParent(getParentDev_, session_.stream, session_.device)
            << ", interface "
            << CompareParent(getParentIF_, session_.device, session_.interfaceHandle)
            << ", transport layer "
            << CompareParent(getParentTL_, session_.interfaceHandle, session_.transportLayer)
            << '\n';
}

void GenTL15::PrintParts(BUFFER_HANDLE buffer, const Frame& frame) const {
  std::uint32_t count = 0;
  if (!Get(getNumParts_, session_.stream, buffer, &count)) {
    std::cout << "  Parts -\n";
    return;
  }
  for (std::uint32_t part = 0; part < count; ++part) {
    const auto number = [&](BUFFER_PART_INFO_CMD command) {
      return getPartInfo_.Number(session_.stream, buffer, part, command);
    };
    constexpr int formatDigits = 8;
    const std::string type = PartTypeText(number(BUFFER_PART_INFO_DATA_TYPE));
    const auto width = number(BUFFER_PART_INFO_WIDTH);
    const auto height = number(BUFFER_PART_INFO_HEIGHT);
    const auto format = number(BUFFER_PART_INFO_DATA_FORMAT);
    const auto size = number(BUFFER_PART_INFO_DATA_SIZE);
    auto offset = number(BUFFER_PART_INFO_BASE);
    if (offset) {
      *offset -= reinterpret_cast<std::uintptr_t>(frame.base);
    }
    std::cout << "  Part " << part << ": " << type << ", " << OrDash(width) << " x "
              << OrDash(height) << ", format " << (format ? Hex(*format, formatDigits) : "-")
              << ", " << OrDash(size) << " bytes at " << OrDash(offset) << '\n';
  }
}

void GenTL15::PrintChunks(BUFFER_HANDLE buffer) const {
  std::size_t count = 0;
  std::vector<SINGLE_CHUNK_DATA> chunks;
  bool found = Get(getChunkData_, session_.stream, buffer, nullptr, &count);
  if (found && count != 0) {
    chunks.resize(count);
    found = Get(getChunkData_, session_.stream, buffer, chunks.data(), &count);
  }
  if (!found || count == 0) {
    std::cout << "  Chunks -\n";
    return;
  }
  chunks.resize(std::min(count, chunks.size()));
  for (const SINGLE_CHUNK_DATA chunk : chunks) {
    std::cout << "  Chunk " << Hex(chunk.ChunkID) << ": " << std::size_t{chunk.ChunkLength}
              << " bytes at " << std::ptrdiff_t{chunk.ChunkOffset} << '\n';
  }
}

}  // namespace grab
