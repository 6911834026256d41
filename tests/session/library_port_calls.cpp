#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "session/calls.h"
#include "session/port_data.h"
#include "session/reference_rendering.h"

namespace vextrel_test::session {
namespace {

struct Stack {
  PORT_REGISTER_STACK_ENTRY* pEntries;
  std::size_t* piNumEntries;
};

// Up to twenty register accesses. Only the low half of their number counts, as a signed one.
Stack RandomStack(Session& session) {
  const std::uint64_t size = session.random.Below(21);
  std::vector<PORT_REGISTER_STACK_ENTRY> entries;
  for (std::uint64_t i = 0; i < size; ++i) {
    const std::uint64_t address = session.random.Number();
    if (session.random.OneIn(8)) {
      entries.push_back({address, nullptr, session.random.Number()});
      continue;
    }
    const std::size_t capacity = session.random.Below(71);
    unsigned char* data = session.memory.Add(session.random.Bytes(capacity));
    session.memory.WriteLater(data, session.random.Bytes(capacity));
    entries.push_back({address, data, session.random.Below(capacity + 1)});
  }
  std::string bytes(entries.size() * sizeof(PORT_REGISTER_STACK_ENTRY), '\0');
  if (!entries.empty()) {
    std::memcpy(bytes.data(), entries.data(), bytes.size());
  }
  Stack stack{};
  if (!entries.empty() || !session.random.OneIn(3)) {
    stack.pEntries = reinterpret_cast<PORT_REGISTER_STACK_ENTRY*>(session.memory.Add(bytes));
  }
  stack.piNumEntries = session.Output([&]() -> std::size_t {
    switch (session.random.Below(8)) {
      case 0:
        return 0x80000000U + session.random.Below(0x80000000U);
      case 1:
        return (session.random.Bits() << 32U) + session.random.Below(size + 1);
      default:
        return session.random.Below(size + 1);
    }
  });
  return stack;
}

Value AccessesOf(const Stack&) {
  return Value::Text("shown only as the address at which it lies");
}

}  // namespace

void CallGCGetInfo(Session& session) {
  const TL_INFO_CMD iInfoCmd = session.random.Command(7);
  const InfoOutputs info = session.Info();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCGetInfo, iInfoCmd, info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=GCGetInfo(iInfoCmd=%s, 0x%p->(iType=%s), Buffer=%s, 0x%p->(iSize=%u))",
      {Result(result), Value::Text(NameOfTlInfoCmd(iInfoCmd)), Value::At(info.piType), info.Type(),
       info.Rendered(), Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallGCGetLastError(Session& session) {
  GC_ERROR* piErrorCode = session.Output([&]() -> GC_ERROR {
    return session.random.Pick({0, -1001, -1010, 7});
  });
  char* sErrText = session.OutText();
  std::size_t* piSize = session.SizeOutput(1);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCGetLastError, piErrorCode, sErrText, piSize);
  session.log.Info(
      "%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::Text(NameOfGcError(*piErrorCode)), Value::At(sErrText),
       Value::TextOrNull(sErrText), Value::At(piSize), Value::Number(*piSize)});
}

void CallGCReadPort(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const std::uint64_t iAddress = session.random.Number();
  const PortData data = RandomPortData(session, DataFrom::Target, 1);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCReadPort, hPort, iAddress, data.pBuffer, data.piSize);
  session.log.Info(
      "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%lu)",
      {Result(result), Value::At(hPort), Value::Number(iAddress), Value::At(data.pBuffer),
       Value::At(data.pBuffer), data.Dump(), Value::At(data.piSize), Value::Number(*data.piSize)});
}

void CallGCWritePort(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const std::uint64_t iAddress = session.random.Number();
  const PortData data = RandomPortData(session, DataFrom::Consumer, 0);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCWritePort, hPort, iAddress, data.pBuffer, data.piSize);
  session.log.Info(
      "%s=GCWritePort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)",
      {Result(result), Value::At(hPort), Value::Number(iAddress), Value::At(data.pBuffer),
       data.Dump(), Value::At(data.piSize), Value::Number(*data.piSize)});
}

void CallGCGetPortURL(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  char* sURL = session.OutText();
  std::size_t* piSize = session.SizeOutput();
  const GC_ERROR result = session.Call(&GenTLFunctions::GCGetPortURL, hPort, sURL, piSize);
  session.log.Info("%s=GCGetPortURL(hPort=0x%p, 0x%p->(URL=%s), 0x%p->(iSize=%u))",
                   {Result(result), Value::At(hPort), Value::At(sURL), Value::TextOrNull(sURL),
                    Value::At(piSize), Value::Number(*piSize)});
}

void CallGCGetNumPortURLs(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  std::uint32_t* piNumURLs = session.CountOutput();
  const GC_ERROR result = session.Call(&GenTLFunctions::GCGetNumPortURLs, hPort, piNumURLs);
  session.log.Info(
      "%s=GCGetNumPortURLs(hPort=0x%p, 0x%p->(iNumURLs=%u))",
      {Result(result), Value::At(hPort), Value::At(piNumURLs), Value::Number(*piNumURLs)});
}

void CallGCGetPortInfo(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const PORT_INFO_CMD iInfoCmd = session.random.Command(12);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::GCGetPortInfo, hPort, iInfoCmd, info.piType,
                                       info.pBuffer, info.piSize);
  session.log.Info(
      "%s=GCGetPortInfo(hPort=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(%u))",
      {Result(result), Value::At(hPort), Value::Text(NameOfPortInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallGCGetPortURLInfo(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const auto iURLIndex = static_cast<std::uint32_t>(session.random.Number());
  const URL_INFO_CMD iInfoCmd = session.random.Command(5);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::GCGetPortURLInfo, hPort, iURLIndex,
                                       iInfoCmd, info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=GCGetPortURLInfo(hPort=0x%p, iURLIndex=%u, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
      "0x%p->(iSize=%u))",
      {Result(result), Value::At(hPort), Value::Number(iURLIndex),
       Value::Text(NameOfUrlInfoCmd(iInfoCmd)), Value::At(info.piType), info.Type(),
       Value::At(info.pBuffer), info.Rendered(), Value::At(info.piSize),
       Value::Number(*info.piSize)});
}

void CallGCReadPortStacked(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const Stack stack = RandomStack(session);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCReadPortStacked, hPort, stack.pEntries, stack.piNumEntries);
  session.log.Info(
      "%s=GCReadPortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)",
      {Result(result), Value::At(hPort), AccessesOf(stack), Value::At(stack.piNumEntries),
       Value::Number(*stack.piNumEntries)});
}

void CallGCWritePortStacked(Session& session) {
  void* hPort = session.Handle(HandleKind::Port);
  const Stack stack = RandomStack(session);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCWritePortStacked, hPort, stack.pEntries, stack.piNumEntries);
  session.log.Info(
      "%s=GCWritePortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Entries=%s), "
      "0x%p->(iNumEntries=%u)",
      {Result(result), Value::At(hPort), AccessesOf(stack), Value::At(stack.piNumEntries),
       Value::Number(*stack.piNumEntries)});
}

}  // namespace vextrel_test::session
