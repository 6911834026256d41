// A data stream: what it tells, its acquisition, its frames.
#ifndef VEXTREL_SAMPLES_GRAB_STREAM_H
#define VEXTREL_SAMPLES_GRAB_STREAM_H

#include <cstdint>
#include <optional>
#include <string>

#include "event.h"
#include "gentl_functions.h"
#include "pgm.h"
#include "port.h"

namespace grab {

struct StreamNeeds {
  std::size_t bufferSize = 0;   // bytes
  std::size_t bufferCount = 0;  // at least what the producer asks for
};

// Asks the stream, or the camera's registers where the stream leaves that to the camera. Prints
// what it learns. Throws Error.
[[nodiscard]] StreamNeeds QueryNeeds(const GenTl& gentl, DS_HANDLE stream, const Port& port,
                                     const std::string& description);

// A running acquisition: the stream's and, where the camera has commands for it, the camera's.
// Started by the constructor, which throws Error; stopped at the end. All arguments must outlive
// it.
class Acquisition {
 public:
  Acquisition(const GenTl& functions, DS_HANDLE dataStream, const Port& cameraPort,
              const std::string& cameraDescription);
  ~Acquisition();
  Acquisition(const Acquisition&) = delete;
  Acquisition& operator=(const Acquisition&) = delete;

  // Throws Error.
  void Stop();

 private:
  void RunCommand(const char* feature) const;
  void WriteIfPresent(const char* feature, std::uint64_t value) const;

  const GenTl& gentl;
  DS_HANDLE stream;
  const Port& port;
  const std::string& description;
  bool running = false;
};

// What the producer tells about a filled buffer; what is absent it does not tell.
struct Frame {
  const std::uint8_t* base = nullptr;
  std::optional<std::uint64_t> sizeFilled;
  std::optional<std::uint64_t> width;
  std::optional<std::uint64_t> height;
  std::optional<std::uint64_t> frameId;
  std::optional<std::uint64_t> timestamp;
  std::optional<std::uint64_t> pixelFormat;
  bool incomplete = false;
};

// Waits for the next filled buffer. Throws Error, also when none comes in time.
[[nodiscard]] BUFFER_HANDLE WaitForBuffer(const GenTl& gentl, const Event& newBuffer,
                                          std::uint64_t timeoutMs);

// Throws Error.
[[nodiscard]] Frame DescribeFrame(const GenTl& gentl, DS_HANDLE stream, BUFFER_HANDLE buffer);

// Copies the pixels. Throws Error unless the frame has eight bits a pixel.
[[nodiscard]] Image CopyImage(const Frame& frame);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_STREAM_H
