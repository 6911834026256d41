// SPDX-License-Identifier: MIT
// Functions of GenTL 1.3 to 1.6 that answer with values: info queries one by one and stacked, and
// chunks. Any of their pointers may be null.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "model/newer_rendering.h"
#include "session/arguments.h"
#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {

#if defined(VEXTREL_EXTENDED)
namespace {

using F = GenTLFunctions;
using Kind = HandleKind;
using model::Answer;

// In memory that is not aligned for it, like the packed structures of GenTL.
template <typename T>
T ReadFrom(const void* memory) {
  T value;
  std::memcpy(&value, memory, sizeof value);
  return value;
}

constexpr std::size_t kMostRoom = 80;

// Room for an answer, which the target fills, or none, of which any size may be claimed.
struct Room {
  void* buffer;
  std::size_t size;
};

Room RandomRoom(Session& session) {
  if (session.random.OneIn(8)) {
    return {nullptr, session.random.Number()};
  }
  const std::size_t size = session.random.Below(41);
  unsigned char* buffer = session.memory.Add(session.random.Bytes(size), session.random.Below(4));
  if (!session.random.OneIn(5)) {
    session.memory.WriteLater(buffer, session.random.Bytes(size));
  }
  return {buffer, size};
}

// The size that comes back: within the room mostly.
std::size_t RandomSize(Session& session, std::size_t room) {
  return session.random.OneIn(4) ? session.random.Number()
                                 : session.random.Below(std::min(room, kMostRoom) + 1);
}

// A size argument that offers `room`, or null.
std::size_t* SizeOrNull(Session& session, std::size_t room, std::size_t after) {
  if (session.random.OneIn(8)) {
    return nullptr;
  }
  unsigned char* piSize = session.memory.Add(BytesOf(room));
  if (!session.random.OneIn(5)) {
    session.memory.WriteLater(piSize, BytesOf(after));
  }
  return reinterpret_cast<std::size_t*>(piSize);
}

std::string TextOf(const INFO_DATATYPE* piType) {
  return piType == nullptr ? "NULL" : model::kNewerInfoDatatypes.NameOf(*piType);
}
std::string TextOf(const std::size_t* piSize) {
  return piSize == nullptr ? "NULL" : std::to_string(*piSize);
}

// The outputs of an info query.
class InfoOutputs {
 public:
  explicit InfoOutputs(Session& session) : room_(RandomRoom(session)) {
    if (!session.random.OneIn(8)) {
      type = session.Output([&] { return RandomType(session); });
    }
    size = SizeOrNull(session, room_.size, RandomSize(session, room_.size));
    buffer = room_.buffer;
  }

  // REQUIRES: `result` is what the query returned.
  [[nodiscard]] bool HasAnswer() const { return type != nullptr && size != nullptr; }
  [[nodiscard]] Answer AnswerOf(GC_ERROR result) const {
    return {*type, result, buffer, room_.size, *size};
  }
  [[nodiscard]] std::string Value(GC_ERROR result) const {
    return HasAnswer() ? model::RenderAnswer(AnswerOf(result)) : "NULL";
  }

  INFO_DATATYPE* type = nullptr;
  void* buffer = nullptr;
  std::size_t* size = nullptr;

 private:
  Room room_;
};

void CallDSGetBufferPartInfo(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  const auto part = static_cast<std::uint32_t>(session.random.Number());
  const BUFFER_PART_INFO_CMD command =
      session.random.OneIn(3) ? BUFFER_PART_INFO_DATA_TYPE : session.random.Command(13);
  const InfoOutputs outputs(session);
  const GC_ERROR result = session.Call(&F::DSGetBufferPartInfo, hDS, hBuffer, part, command,
                                       outputs.type, outputs.buffer, outputs.size);
  const std::string value =
      outputs.HasAnswer() ? model::RenderPartAnswer(command, outputs.AnswerOf(result)) : "NULL";
  session.log.Info(
      "%s=DSGetBufferPartInfo(hDS=0x%p, hBuffer=0x%p, iPartIndex=%u, iCmd=%s, 0x%p->(iType=%s), "
      "0x%p->(Buffer=%s), 0x%p->(iSize=%s))",
      {ResultName(result), hDS, hBuffer, part, model::kBufferPartInfoCmds.NameOf(command),
       outputs.type, TextOf(outputs.type), outputs.buffer, value, outputs.size,
       TextOf(outputs.size)});
}

void CallDSGetFlowInfo(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  const auto flow = static_cast<std::uint32_t>(session.random.Number());
  const FLOW_INFO_CMD command = session.random.Command(0);
  const InfoOutputs outputs(session);
  const GC_ERROR result = session.Call(&F::DSGetFlowInfo, hDS, flow, command, outputs.type,
                                       outputs.buffer, outputs.size);
  session.log.Info(
      "%s=DSGetFlowInfo(hDS=0x%p, iFlowIndex=%u, iCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
      "0x%p->(iSize=%s))",
      {ResultName(result), hDS, flow, model::kFlowInfoCmds.NameOf(command), outputs.type,
       TextOf(outputs.type), outputs.buffer, outputs.Value(result), outputs.size,
       TextOf(outputs.size)});
}

void CallDSGetBufferSegmentInfo(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  const auto segment = static_cast<std::uint32_t>(session.random.Number());
  const SEGMENT_INFO_CMD command = session.random.Command(4);
  const InfoOutputs outputs(session);
  const GC_ERROR result = session.Call(&F::DSGetBufferSegmentInfo, hDS, hBuffer, segment, command,
                                       outputs.type, outputs.buffer, outputs.size);
  session.log.Info(
      "%s=DSGetBufferSegmentInfo(hDS=0x%p, hBuffer=0x%p, iSegmentIndex=%u, iCmd=%s, "
      "0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%s))",
      {ResultName(result), hDS, hBuffer, segment, model::kSegmentInfoCmds.NameOf(command),
       outputs.type, TextOf(outputs.type), outputs.buffer, outputs.Value(result), outputs.size,
       TextOf(outputs.size)});
}

void CallDSGetBufferChunkData(Session& session) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  const std::size_t room =
      session.random.OneIn(20) ? 60 + session.random.Below(10) : session.random.Below(6);
  unsigned char* memory = nullptr;
  if (!session.random.OneIn(8)) {
    memory = session.memory.Add(session.random.Bytes(room * sizeof(SINGLE_CHUNK_DATA)));
    session.memory.WriteLater(memory, session.random.Bytes(room * sizeof(SINGLE_CHUNK_DATA)));
  }
  auto* chunks = reinterpret_cast<SINGLE_CHUNK_DATA*>(memory);
  std::size_t* piNumChunks = SizeOrNull(session, room, RandomSize(session, room + 2));
  const GC_ERROR result = session.Call(&F::DSGetBufferChunkData, hDS, hBuffer, chunks, piNumChunks);
  const bool hasAnswer = result == GC_ERR_SUCCESS && chunks != nullptr && piNumChunks != nullptr;
  session.log.Info(
      "%s=DSGetBufferChunkData(hDS=0x%p, hBuffer=0x%p, 0x%p->(Chunks=%s), 0x%p->(iNumChunks=%s))",
      {ResultName(result), hDS, hBuffer, chunks,
       hasAnswer ? model::RenderChunks({chunks, room}, *piNumChunks) : "NULL", piNumChunks,
       TextOf(piNumChunks)});
}

// The number of entries of a stacked query, more than are shown now and then.
std::size_t RandomCount(Session& session) {
  return session.random.OneIn(20) ? 63 + session.random.Below(5) : session.random.Below(4);
}

GC_ERROR RandomEntryResult(Session& session) {
  return session.random.Pick({0, 0, 0, 0, -1003, -1014, -1016, -1023, -1024, -10000});
}

// A list of entries of a stacked query, each of which offers a room of its own. The target writes
// to all of them, or to none.
template <typename Info>
class Entries {
 public:
  template <typename Make>
  Entries(Session& session, Make make) : count_(RandomCount(session)) {
    std::string before;
    std::string after;
    for (std::size_t i = 0; i < count_; ++i) {
      rooms_.push_back(RandomRoom(session));
      const Info offered = make(rooms_.back());
      Info left = make({session.AnyHandle(), RandomSize(session, rooms_.back().size)});
      left.iInfoCmd = offered.iInfoCmd;
      before += BytesOf(offered);
      after += BytesOf(left);
    }
    memory_ = session.memory.Add(before);
    if (!session.random.OneIn(5)) {
      session.memory.WriteLater(memory_, after);
    }
  }

  [[nodiscard]] Info* Data() const { return reinterpret_cast<Info*>(memory_); }
  [[nodiscard]] std::size_t Count() const { return count_; }

  // `render(index, entry, room)` of what the entries hold now.
  template <typename Render>
  [[nodiscard]] std::string Show(Render render) const {
    std::string text;
    for (std::size_t i = 0; i < count_ && i < 64; ++i) {
      text += render(i, ReadFrom<Info>(memory_ + i * sizeof(Info)), rooms_[i]);
    }
    return text + model::RenderRest(count_, 64);
  }

 private:
  std::size_t count_;
  std::vector<Room> rooms_;
  unsigned char* memory_ = nullptr;
};

// A query as a whole: of these entries, of none, or of more than can be.
template <typename Info, typename Render>
void CallStacked(Session& session, const char* name,
                 GC_ERROR (GC_CALLTYPE* F::*slot)(DS_HANDLE, BUFFER_HANDLE, Info*, std::size_t),
                 const Entries<Info>& entries, Render render) {
  void* hDS = session.Handle(Kind::DataStream);
  void* hBuffer = session.Handle(Kind::Buffer);
  Info* infos = entries.Data();
  std::size_t count = entries.Count();
  const bool isNull = session.random.OneIn(8);
  const bool isAbsurd = !isNull && session.random.OneIn(12);
  if (isNull) {
    infos = nullptr;
  }
  if (isAbsurd) {
    count = 4097 + session.random.Bits() % (1ULL << 48U);
  }
  const GC_ERROR result = session.Call(slot, hDS, hBuffer, infos, count);
  std::string shown = "NULL";
  if (isAbsurd) {
    shown = model::RenderRest(count, 0);
  } else if (!isNull) {
    shown = entries.Show(render);
  }
  const std::string format =
      std::string("%s=") + name + "(hDS=0x%p, hBuffer=0x%p, 0x%p->(Infos=%s), iNumInfos=%s)";
  session.log.Info(format.c_str(),
                   {ResultName(result), hDS, hBuffer, infos, shown, std::to_string(count)});
}

void CallDSGetBufferInfoStacked(Session& session) {
  const Entries<DS_BUFFER_INFO_STACKED> entries(session, [&](const Room& room) {
    return DS_BUFFER_INFO_STACKED{session.random.Command(31), RandomType(session), room.buffer,
                                  room.size, RandomEntryResult(session)};
  });
  CallStacked(session, "DSGetBufferInfoStacked", &F::DSGetBufferInfoStacked, entries,
              [](std::size_t i, const DS_BUFFER_INFO_STACKED& info, const Room& room) {
                return model::RenderInfoEntry(
                    i, info.iInfoCmd,
                    {info.iType, info.iResult, room.buffer, room.size, info.iSize});
              });
}

void CallDSGetBufferPartInfoStacked(Session& session) {
  const Entries<DS_BUFFER_PART_INFO_STACKED> entries(session, [&](const Room& room) {
    const INFO_DATATYPE type = RandomType(session);
    const GC_ERROR result = RandomEntryResult(session);
    const bool isTypeFirst = session.random.OneIn(2);
    return DS_BUFFER_PART_INFO_STACKED{static_cast<std::uint32_t>(session.random.Number()),
                                       session.random.Command(13),
                                       isTypeFirst ? type : result,
                                       isTypeFirst ? result : type,
                                       room.buffer,
                                       room.size};
  });
  CallStacked(session, "DSGetBufferPartInfoStacked", &F::DSGetBufferPartInfoStacked, entries,
              [](std::size_t i, const DS_BUFFER_PART_INFO_STACKED& info, const Room& room) {
                return model::RenderPartInfoEntry(i, info.iPartIndex, info.iInfoCmd, info.iResult,
                                                  info.iType,
                                                  {0, 0, room.buffer, room.size, info.iSize});
              });
}

}  // namespace

std::vector<RandomCall> NewerCalls() {
  std::vector<RandomCall> calls = CallsOfHandlesAndCounts();
  calls.insert(calls.end(), {{"DSGetBufferPartInfo", &CallDSGetBufferPartInfo, 20},
                             {"DSGetFlowInfo", &CallDSGetFlowInfo, 20},
                             {"DSGetBufferSegmentInfo", &CallDSGetBufferSegmentInfo, 20},
                             {"DSGetBufferChunkData", &CallDSGetBufferChunkData, 20},
                             {"DSGetBufferInfoStacked", &CallDSGetBufferInfoStacked, 20},
                             {"DSGetBufferPartInfoStacked", &CallDSGetBufferPartInfoStacked, 20}});
  return calls;
}
#else
std::vector<RandomCall> NewerCalls() {
  return {};
}
#endif

}  // namespace vextrel_test::session
