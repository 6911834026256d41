// SPDX-License-Identifier: MIT
#include "threads/traffic.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

using Bytes = std::array<std::uint8_t, 8>;

enum class Kind : std::uint8_t { Queue, GetData, BufferInfo, ReadPort, WritePort, EventInfo };
constexpr std::uint32_t kKinds = 6;

Kind KindOf(std::uint32_t number) {
  return static_cast<Kind>(number % kKinds);
}
// The delivery that follows a queueing is of the same buffer of the same stream.
unsigned StreamOf(unsigned thread, std::uint32_t number) {
  return number / kKinds % 2 == 0 ? thread : kSharedStream;
}
unsigned BufferIndexOf(std::uint32_t number) {
  return number / (2 * kKinds) % kBuffersPerThread;
}

void* PortHandle(unsigned thread) {
  return Handle(0x7007000000000000U + thread);
}

// Seven digits and a zero: a text, and its own dump.
Bytes TextOf(unsigned thread, std::uint32_t number) {
  Bytes text{};
  std::uint32_t rest = number;
  for (std::size_t i = 7; i-- > 1; rest /= 10) {
    text[i] = static_cast<std::uint8_t>('0' + rest % 10);
  }
  text[0] = static_cast<std::uint8_t>('0' + thread);
  return text;
}

Bytes LittleEndian(std::uint64_t value) {
  Bytes bytes{};
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(value & 0xFFU);
    value >>= 8U;
  }
  return bytes;
}

std::string LowerHex(std::uint64_t value) {
  std::string text;
  do {
    text.insert(text.begin(), "0123456789abcdef"[value % 16]);
    value /= 16;
  } while (value != 0);
  return text;
}

std::string Dump(const Bytes& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += text.empty() ? "0x" : ",0x";
    text += "0123456789abcdef"[byte / 16];
    text += "0123456789abcdef"[byte % 16];
  }
  return text;
}

// `format` with each conversion replaced by the next text.
template <typename... Texts>
std::string Fill(std::string_view format, const Texts&... texts) {
  std::string line;
  line.reserve(256);
  const auto next = [&](std::string_view text) {
    const std::size_t at = format.find('%');
    line.append(format.substr(0, at)).append(text);
    // The conversions in use are one letter long, or end in one of these.
    format.remove_prefix(format.find_first_of("spux", at) + 1);
  };
  (next(texts), ...);
  return line.append(format);
}

// What the thread that is in the target asks for.
struct Question {
  std::uint32_t number = 0;
  Bytes answer{};
};
thread_local Question question;

GC_ERROR AnswerInfo(INFO_DATATYPE* piType, void* pBuffer, std::size_t* piSize) {
  *piType = INFO_DATATYPE_UINT64;
  const std::uint64_t value = question.number;
  std::memcpy(pBuffer, &value, sizeof value);
  *piSize = sizeof value;
  return GC_ERR_SUCCESS;
}

GC_ERROR AnswerBytes(void* pBuffer, std::size_t* piSize) {
  std::memcpy(pBuffer, question.answer.data(), question.answer.size());
  *piSize = question.answer.size();
  return GC_ERR_SUCCESS;
}

}  // namespace

DS_HANDLE StreamHandle(unsigned stream) {
  return Handle(0x7005000000000000U + stream);
}
EVENT_HANDLE EventHandle(unsigned stream) {
  return Handle(0x700E000000000000U + stream);
}
BUFFER_HANDLE BufferHandle(unsigned stream, unsigned thread, unsigned index) {
  return Handle(0x700B000000000000U + (stream << 16U) + (thread << 8U) + index);
}

std::uint64_t Caller::Address(std::uint32_t number) const {
  return (std::uint64_t{thread_ + 0xA0} << 32U) + number;
}

GC_ERROR Caller::Call(const GenTLFunctions& proxy, std::uint32_t number) {
  const unsigned stream = StreamOf(thread_, number);
  BUFFER_HANDLE buffer = BufferHandle(stream, thread_, BufferIndexOf(number));
  question.number = number;
  size_ = buffer_.size();
  switch (KindOf(number)) {
    case Kind::Queue:
      return proxy.DSQueueBuffer(StreamHandle(stream), buffer);
    case Kind::GetData:
      question.answer = LittleEndian(reinterpret_cast<std::uintptr_t>(buffer));
      return proxy.EventGetData(EventHandle(stream), buffer_.data(), &size_, number);
    case Kind::BufferInfo:
      return proxy.DSGetBufferInfo(StreamHandle(stream), buffer, BUFFER_INFO_FRAMEID, &type_,
                                   buffer_.data(), &size_);
    case Kind::ReadPort:
      question.answer = TextOf(thread_, number);
      return proxy.GCReadPort(PortHandle(thread_), Address(number), buffer_.data(), &size_);
    case Kind::WritePort:
      buffer_ = LittleEndian(~Address(number));
      return proxy.GCWritePort(PortHandle(thread_), Address(number), buffer_.data(), &size_);
    case Kind::EventInfo:
      return proxy.EventGetInfo(EventHandle(stream), EVENT_NUM_FIRED, &type_, buffer_.data(),
                                &size_);
  }
  return GC_ERR_ERROR;
}

std::string Caller::LineOf(std::uint32_t number) const {
  constexpr std::string_view result = "GC_ERR_SUCCESS";
  const unsigned stream = StreamOf(thread_, number);
  const std::string hDS = Hex16(StreamHandle(stream));
  const std::string hEvent = Hex16(EventHandle(stream));
  const std::string hPort = Hex16(PortHandle(thread_));
  BUFFER_HANDLE buffer = BufferHandle(stream, thread_, BufferIndexOf(number));
  const std::string hBuffer = Hex16(buffer);
  const std::string piType = Hex16(&type_);
  const std::string pBuffer = Hex16(buffer_.data());
  const std::string piSize = Hex16(&size_);
  const std::string decimal = std::to_string(number);
  switch (KindOf(number)) {
    case Kind::Queue:
      return Fill("%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)", result, hDS, hBuffer);
    case Kind::GetData:
      return Fill("%s=EventGetData(hEvent=0x%p, 0x%p->(Buffer=%s), 0x%p->(iSize=%u), iTimeout=%lu)",
                  result, hEvent, pBuffer,
                  Dump(LittleEndian(reinterpret_cast<std::uintptr_t>(buffer))), piSize, "8",
                  decimal);
    case Kind::BufferInfo:
      return Fill(
          "%s=DSGetBufferInfo(hDS=0x%p, hBuffer=0x%p, iCommand=%s, 0x%p->(iType=%s) "
          "0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
          result, hDS, hBuffer, "BUFFER_INFO_FRAMEID", piType, "INFO_DATATYPE_UINT64", pBuffer,
          decimal, piSize, "8");
    case Kind::ReadPort: {
      const Bytes text = TextOf(thread_, number);
      return Fill(
          "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%lu)",
          result, hPort, LowerHex(Address(number)), pBuffer,
          std::string(text.begin(), text.end() - 1), Dump(text), piSize, "8");
    }
    case Kind::WritePort:
      return Fill("%s=GCWritePort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)",
                  result, hPort, LowerHex(Address(number)), pBuffer,
                  Dump(LittleEndian(~Address(number))), piSize, "8");
    case Kind::EventInfo:
      return Fill(
          "%s=EventGetInfo(hEvent=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
          "0x%p->(iSize=%u))",
          result, hEvent, "EVENT_NUM_FIRED", piType, "INFO_DATATYPE_UINT64", pBuffer, decimal,
          piSize, "8");
  }
  return "no such call";
}

GenTLFunctions TrafficTarget() {
  GenTLFunctions functions;
  functions.EventGetData = [](EVENT_HANDLE, void* pBuffer, std::size_t* piSize, std::uint64_t) {
    return AnswerBytes(pBuffer, piSize);
  };
  functions.GCReadPort = [](PORT_HANDLE, std::uint64_t, void* pBuffer, std::size_t* piSize) {
    return AnswerBytes(pBuffer, piSize);
  };
  functions.DSGetBufferInfo = [](DS_HANDLE, BUFFER_HANDLE, BUFFER_INFO_CMD, INFO_DATATYPE* piType,
                                 void* pBuffer, std::size_t* piSize) {
    return AnswerInfo(piType, pBuffer, piSize);
  };
  functions.EventGetInfo = [](EVENT_HANDLE, EVENT_INFO_CMD, INFO_DATATYPE* piType, void* pBuffer,
                              std::size_t* piSize) { return AnswerInfo(piType, pBuffer, piSize); };
  return functions;
}

}  // namespace vextrel_test
