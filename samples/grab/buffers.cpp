#include "buffers.h"

#include "error.h"

namespace grab {

Buffers::~Buffers() {
  if (!handles.empty()) {
    // Queued buffers cannot be revoked.
    gentl.DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD);
  }
  for (BUFFER_HANDLE buffer : handles) {
    gentl.DSRevokeBuffer(stream, buffer, nullptr, nullptr);
  }
}

void Buffers::Announce(std::size_t count, std::size_t size) {
  while (handles.size() + 1 < count) {
    AnnounceOwn(size);
  }
  if (!AnnounceProducers(size)) {
    AnnounceOwn(size);
  }
}

void Buffers::AnnounceOwn(std::size_t size) {
  std::vector<std::uint8_t>& room = memory.emplace_back(size);
  BUFFER_HANDLE buffer = nullptr;
  gentl.Do(gentl.DSAnnounceBuffer, stream, static_cast<void*>(room.data()), size,
           static_cast<void*>(this), &buffer);
  handles.push_back(buffer);
}

bool Buffers::AnnounceProducers(std::size_t size) {
  BUFFER_HANDLE buffer = nullptr;
  const GC_ERROR result = gentl.DSAllocAndAnnounceBuffer(stream, size, this, &buffer);
  if (MeansAbsent(result)) {
    return false;
  }
  if (result != GC_ERR_SUCCESS) {
    throw Error(gentl.Describe(gentl.DSAllocAndAnnounceBuffer.Name(), result) + ".");
  }
  handles.push_back(buffer);
  return true;
}

void Buffers::QueueAll() const {
  for (BUFFER_HANDLE buffer : handles) {
    gentl.Do(gentl.DSQueueBuffer, stream, buffer);
  }
}

void Buffers::RevokeAll() {
  while (!handles.empty()) {
    BUFFER_HANDLE buffer = handles.back();
    handles.pop_back();
    void* announcedMemory = nullptr;
    void* privateValue = nullptr;
    gentl.Do(gentl.DSRevokeBuffer, stream, buffer, &announcedMemory, &privateValue);
  }
}

}  // namespace grab
