// SPDX-License-Identifier: MIT
// A session with a producer: finds a camera, opens it, grabs frames, and closes everything.
#ifndef VEXTREL_SAMPLES_GRAB_SESSION_H
#define VEXTREL_SAMPLES_GRAB_SESSION_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "producer.h"

namespace grab {

struct Options {
  std::optional<std::filesystem::path> producer;  // If empty, use the search path.
  std::optional<std::filesystem::path> image;     // Where the last frame goes.
  std::uint64_t frames = 10;
  std::uint64_t timeoutMs = 5000;  // For one frame.
  bool list = false;
  bool genTL15 = false;  // Demand and use GenTL 1.5.
  bool mixBuffers = false;
  bool misuse = false;
  std::string fault;    // one of Faults() in faults.h, or none
  bool mended = false;  // Do what the fault does, without the mistake.
  bool help = false;
};

// A register of at most eight bytes.
struct Register {
  std::uint64_t address = 0;
  std::size_t length = 4;
  bool bigEndian = false;
};

// The camera's registers, found by feature name in the camera's own description. A plain text
// search does for the integer and command features that every camera has; it replaces no real
// reader. All members throw Error if the producer refuses.
class Camera {
 public:
  // Reads and reports the description.
  Camera(const Producer& producer, PORT_HANDLE port);

  // Returns nothing if the description names no register for the feature.
  [[nodiscard]] std::optional<std::uint64_t> Read(const char* feature) const;
  // These do nothing in that case.
  void Write(const char* feature, std::uint64_t value) const;
  void Execute(const char* command) const;

  // Reads the image size, one register at a time and in one call, and writes the width back.
  void ReadAndWriteSize() const;

 private:
  [[nodiscard]] std::optional<Register> FindRegister(const char* feature) const;
  [[nodiscard]] std::uint64_t ReadRegister(const Register& source) const;
  void WriteRegister(const Register& target, std::uint64_t value) const;
  void ReportPort() const;
  [[nodiscard]] std::string ReadDescription() const;

  const Producer& gentl_;
  PORT_HANDLE port_;
  std::string description_;
};

// A filled buffer, as the producer describes it.
struct Frame {
  const std::uint8_t* base = nullptr;
  std::optional<std::uint64_t> sizeFilled, width, height, frameId, timestamp, pixelFormat;
  bool incomplete = false;
};

// Everything that is open. Each member function is one step of the session and throws Error if it
// fails. The destructor closes whatever an error has left open.
struct Session {
  explicit Session(const Producer& producer) : gentl(producer) {}
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void OpenTransportLayer();
  [[nodiscard]] std::vector<std::string> FindInterfaces() const;
  void OpenInterface(const std::string& id);
  [[nodiscard]] std::vector<std::string> FindDevices() const;
  // Returns false if the producer refuses.
  [[nodiscard]] bool OpenDevice(const std::string& id);
  void OpenFirstDevice();
  void OpenCamera();
  void OpenFirstStream();
  // In our own memory. With `mix`, the producer allocates the last one, which not every producer
  // takes beside others.
  void AnnounceBuffers(bool mix = false);
  void AnnounceOwnBuffer(std::size_t size);
  // Returns false if the producer doesn't offer to allocate memory.
  bool AnnounceProducersBuffer(std::size_t size);
  void StartAcquisition();
  // Returns the next filled buffer.
  [[nodiscard]] BUFFER_HANDLE WaitForBuffer(std::uint64_t timeoutMs) const;
  [[nodiscard]] Frame DescribeFrame(BUFFER_HANDLE buffer) const;
  void StopAcquisition();
  void Close();

  const Producer& gentl;
  TL_HANDLE transportLayer = nullptr;
  IF_HANDLE interfaceHandle = nullptr;
  std::string interfaceId;
  DEV_HANDLE device = nullptr;
  std::string deviceId;
  std::optional<Camera> camera;
  DS_HANDLE stream = nullptr;
  std::string streamId;
  std::vector<std::vector<std::uint8_t>> memory;
  std::vector<BUFFER_HANDLE> buffers;
  EVENT_HANDLE newBuffer = nullptr;
  bool acquiring = false;

 private:
  [[nodiscard]] std::size_t FindPayloadSize(std::size_t* bufferCount) const;
};

// Prints the interfaces and devices. Throws Error.
void ListDevices(const Producer& producer);

// Grabs frames from the first device that can be opened, and closes everything, badly on request.
// Throws Error.
void GrabFrames(const Producer& producer, const Options& options);

// Closes with one mistake of every kind, announcing each, and goes on whatever the producer
// answers. REQUIRES: the acquisition has been stopped.
void CloseBadly(Session& session);

// "0x" and at least `digits` upper-case digits.
[[nodiscard]] std::string Hex(std::uint64_t value, int digits = 1);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_SESSION_H
