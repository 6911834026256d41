// The frame buffers of a data stream.
#ifndef VEXTREL_SAMPLES_GRAB_BUFFERS_H
#define VEXTREL_SAMPLES_GRAB_BUFFERS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gentl_functions.h"

namespace grab {

// Owns the memory of the buffers that it announces. Must be destroyed before the stream is closed
// unless every buffer was revoked or forgotten before.
class Buffers {
 public:
  Buffers(const GenTl& functions, DS_HANDLE dataStream) : gentl(functions), stream(dataStream) {}
  ~Buffers();
  Buffers(const Buffers&) = delete;
  Buffers& operator=(const Buffers&) = delete;

  // Announces `count` buffers of `size` bytes: the last one in memory of the producer's, the others
  // in our own. Throws Error.
  void Announce(std::size_t count, std::size_t size);
  void QueueAll() const;

  [[nodiscard]] const std::vector<BUFFER_HANDLE>& Handles() const { return handles; }

  // Throws Error.
  void RevokeAll();

  // Leaves the buffers announced; their memory stays until the end of the object.
  void Forget() { handles.clear(); }

 private:
  void AnnounceOwn(std::size_t size);
  [[nodiscard]] bool AnnounceProducers(std::size_t size);

  const GenTl& gentl;
  DS_HANDLE stream;
  std::vector<std::vector<std::uint8_t>> memory;
  std::vector<BUFFER_HANDLE> handles;
};

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_BUFFERS_H
