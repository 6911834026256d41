// SPDX-License-Identifier: MIT
// Functions of GenTL 1.3 to 1.6 whose outputs are handles and counts. They may be null.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "model/messages.h"
#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {

#if defined(VEXTREL_EXTENDED)
namespace {

using F = GenTLFunctions;
using Kind = HandleKind;

void** HandleOrNull(Session& session, Kind kind) {
  return session.random.OneIn(6) ? nullptr : session.HandleOutput(kind);
}
std::uint32_t* CountOrNull(Session& session) {
  return session.random.OneIn(6)
             ? nullptr
             : session.Output([&] { return static_cast<std::uint32_t>(session.random.Bits()); });
}

std::string TextOf(void* const* output) {
  return output == nullptr ? "NULL" : "0x" + Hex16(*output);
}
std::string TextOf(const std::uint32_t* output) {
  return output == nullptr ? "NULL" : std::to_string(*output);
}

void CallIFGetParentTL(Session& session) {
  void* hInterface = session.Handle(Kind::Interface);
  void** output = HandleOrNull(session, Kind::TransportLayer);
  const GC_ERROR result = session.Call(&F::IFGetParentTL, hInterface, output);
  session.log.Info("%s=IFGetParentTL(hInterface=0x%p, 0x%p->(hTL=%s))",
                   {ResultName(result), hInterface, output, TextOf(output)});
}

void CallDevGetParentIF(Session& session) {
  void* hDev = session.Handle(Kind::Device);
  void** output = HandleOrNull(session, Kind::Interface);
  const GC_ERROR result = session.Call(&F::DevGetParentIF, hDev, output);
  session.log.Info("%s=DevGetParentIF(hDev=0x%p, 0x%p->(hInterface=%s))",
                   {ResultName(result), hDev, output, TextOf(output)});
}

void CallDSGetParentDev(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void** output = HandleOrNull(session, Kind::Device);
  const GC_ERROR result = session.Call(&F::DSGetParentDev, hDS, output);
  session.log.Info("%s=DSGetParentDev(hDS=0x%p, 0x%p->(hDev=%s))",
                   {ResultName(result), hDS, output, TextOf(output)});
}

void CallDSGetNumBufferParts(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  std::uint32_t* output = CountOrNull(session);
  const GC_ERROR result = session.Call(&F::DSGetNumBufferParts, hDS, hBuffer, output);
  session.log.Info("%s=DSGetNumBufferParts(hDS=0x%p, hBuffer=0x%p, 0x%p->(iNumParts=%s))",
                   {ResultName(result), hDS, hBuffer, output, TextOf(output)});
}

void CallDSGetNumFlows(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  std::uint32_t* output = CountOrNull(session);
  const GC_ERROR result = session.Call(&F::DSGetNumFlows, hDS, output);
  session.log.Info("%s=DSGetNumFlows(hDS=0x%p, 0x%p->(iNumFlows=%s))",
                   {ResultName(result), hDS, output, TextOf(output)});
}

void CallDSGetNumBufferSegments(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  std::uint32_t* output = CountOrNull(session);
  const GC_ERROR result = session.Call(&F::DSGetNumBufferSegments, hDS, hBuffer, output);
  session.log.Info("%s=DSGetNumBufferSegments(hDS=0x%p, hBuffer=0x%p, 0x%p->(iNumSegments=%s))",
                   {ResultName(result), hDS, hBuffer, output, TextOf(output)});
}

template <typename Element>
Element* AddList(Session& session, const std::vector<Element>& list) {
  return reinterpret_cast<Element*>(session.memory.Add(
      std::string(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(Element))));
}

void CallDSAnnounceCompositeBuffer(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* pPrivate = session.AnyHandle();
  std::vector<void*> addresses;
  std::vector<std::size_t> sizes;
  std::string shown;
  const std::size_t count = session.random.Below(4);
  for (std::size_t i = 0; i < count; ++i) {
    addresses.push_back(session.AnyHandle());
    sizes.push_back(session.random.Number());
    shown += "Segment[" + std::to_string(i) + "]=(pBuffer=0x" + Hex16(addresses[i]) +
             ", iSize=" + std::to_string(sizes[i]) + ");";
  }
  void** ppSegments = session.random.OneIn(8) ? nullptr : AddList(session, addresses);
  std::size_t* piSizes = session.random.OneIn(8) ? nullptr : AddList(session, sizes);
  void** output = HandleOrNull(session, Kind::Buffer);
  const GC_ERROR result = session.Call(&F::DSAnnounceCompositeBuffer, hDS, count, ppSegments,
                                       piSizes, pPrivate, output);
  session.log.Info(
      "%s=DSAnnounceCompositeBuffer(hDS=0x%p, iNumSegments=%s, ppSegments=0x%p, piSizes=0x%p, "
      "Segments=%s, pPrivate=0x%p, 0x%p->(hBuffer=%s))",
      {ResultName(result), hDS, std::to_string(count), ppSegments, piSizes,
       ppSegments == nullptr || piSizes == nullptr ? "NULL" : shown, pPrivate, output,
       TextOf(output)});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (output == nullptr) {
    session.log.Error("DSAnnounceCompositeBuffer returned a NULL handle to the buffer!");
  } else if (!session.registry.IsOpen()) {
    session.log.Error(model::kNoTransportLayer);
  } else {
    session.registry.AddBuffer(hDS, *output);
  }
}

}  // namespace

std::vector<RandomCall> CallsOfHandlesAndCounts() {
  return {{"IFGetParentTL", &CallIFGetParentTL, 20},
          {"DevGetParentIF", &CallDevGetParentIF, 20},
          {"DSGetParentDev", &CallDSGetParentDev, 20},
          {"DSGetNumBufferParts", &CallDSGetNumBufferParts, 20},
          {"DSAnnounceCompositeBuffer", &CallDSAnnounceCompositeBuffer, 40},
          {"DSGetNumFlows", &CallDSGetNumFlows, 20},
          {"DSGetNumBufferSegments", &CallDSGetNumBufferSegments, 20}};
}
#endif

}  // namespace vextrel_test::session
