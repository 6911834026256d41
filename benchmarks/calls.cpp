// SPDX-License-Identifier: MIT
#include "calls.h"

namespace vextrel_bench {

Consumer::Consumer(const Session& session, std::size_t bufferIndex)
    : functions_(session.Functions()),
      buffer_(BufferHandle(bufferIndex % session.Buffers())),
      delivered_(buffer_) {
  SetPortSize(4);
}

void Consumer::SetPortSize(std::size_t bytes) {
  // Text ends with a zero byte, or the log reads on.
  portData_.assign(bytes + 1, 0);
  for (std::size_t i = 1; i < bytes; ++i) {
    portData_[i] = static_cast<std::uint8_t>(i * 7);
  }
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    entries_[i] = {0x1000 + 4 * i, portData_.data(), 4};
  }
}

void Consumer::QueueBuffer() {
  functions_.DSQueueBuffer(Handle(kStream), buffer_);
}

void Consumer::GetEventData() {
  size_ = sizeof delivered_;
  functions_.EventGetData(event_, &delivered_, &size_, 5000);
}

void Consumer::GetBufferInfo(BUFFER_INFO_CMD command, INFO_DATATYPE type, void* value,
                             std::size_t size) {
  type_ = type;
  size_ = size;
  functions_.DSGetBufferInfo(Handle(kStream), buffer_, command, &type_, value, &size_);
}

void Consumer::GetBufferInfoString() {
  GetBufferInfo(BUFFER_INFO_TLTYPE, INFO_DATATYPE_STRING, text_.data(), 6);
}
void Consumer::GetBufferInfoSize() {
  GetBufferInfo(BUFFER_INFO_SIZE_FILLED, INFO_DATATYPE_SIZET, &number_, sizeof number_);
}
void Consumer::GetBufferInfoPointer() {
  GetBufferInfo(BUFFER_INFO_BASE, INFO_DATATYPE_PTR, &pointer_, sizeof pointer_);
}

void Consumer::ReadPort() {
  size_ = portData_.size() - 1;
  functions_.GCReadPort(Handle(kPort), 0x4000, portData_.data(), &size_);
}

void Consumer::ReadPortStacked() {
  size_ = entries_.size();
  functions_.GCReadPortStacked(Handle(kPort), entries_.data(), &size_);
}

void Consumer::RegisterAndUnregister() {
  functions_.GCRegisterEvent(Handle(kStream), EVENT_ERROR, &event_);
  functions_.GCUnregisterEvent(Handle(kStream), EVENT_ERROR);
  event_ = Handle(kNewBufferEvent);
}

void Consumer::Frame() {
  GetEventData();
  GetBufferInfoPointer();
  GetBufferInfoSize();
  GetBufferInfo(BUFFER_INFO_IS_INCOMPLETE, INFO_DATATYPE_BOOL8, &number_, 1);
  GetBufferInfo(BUFFER_INFO_FRAMEID, INFO_DATATYPE_UINT64, &number_, sizeof number_);
  GetBufferInfo(BUFFER_INFO_TIMESTAMP, INFO_DATATYPE_UINT64, &number_, sizeof number_);
  GetBufferInfo(BUFFER_INFO_WIDTH, INFO_DATATYPE_SIZET, &number_, sizeof number_);
  GetBufferInfo(BUFFER_INFO_HEIGHT, INFO_DATATYPE_SIZET, &number_, sizeof number_);
  QueueBuffer();
}

std::span<const Case> Cases() {
  static constexpr Case kCases[] = {
      {"DSQueueBuffer", &Consumer::QueueBuffer},
      {"EventGetData/8", &Consumer::GetEventData},
      {"DSGetBufferInfo/STRING", &Consumer::GetBufferInfoString},
      {"DSGetBufferInfo/SIZET", &Consumer::GetBufferInfoSize},
      {"DSGetBufferInfo/PTR", &Consumer::GetBufferInfoPointer},
      {"GCReadPort/4", &Consumer::ReadPort, 4},
      {"GCReadPort/4KiB", &Consumer::ReadPort, 4096, false},
      {"GCReadPort/1MiB", &Consumer::ReadPort, std::size_t{1} << 20, false},
      {"GCReadPort/64MiB", &Consumer::ReadPort, std::size_t{64} << 20, false},
      {"GCReadPortStacked/16", &Consumer::ReadPortStacked, 4, false},
      {"GCRegisterEvent+GCUnregisterEvent", &Consumer::RegisterAndUnregister},
      {"frame", &Consumer::Frame},
  };
  return kCases;
}

}  // namespace vextrel_bench
