// The camera itself, as its consumer sees it: a port with registers (little-endian).
//
//   0x000  text 32   DeviceVendorName       read
//   0x020  text 32   DeviceModelName        read
//   0x040  text 32   DeviceID               read
//   0x060  text 64   DeviceUserID           read, write
//   0x100  uint32    Width                  read, write unless TLParamsLocked, 1 to 8192
//   0x104  uint32    Height                 read, write unless TLParamsLocked, 1 to 8192
//   0x108  uint32    PixelFormat            read, always Mono8 (0x01080001)
//   0x10C  uint32    TLParamsLocked         read, write, 0 or 1
//   0x110  uint64    PayloadSize            read, Width * Height
//   0x118  float64   AcquisitionFrameRate   read, write, 0.1 to 10000 frames per second
//   0x120  uint32    AcquisitionStart       write 1 to let frames flow, as they do after opening
//   0x124  uint32    AcquisitionStop        write 1 to hold frames back
//   0x10000          the description, in XML
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H

#include <memory>
#include <string>

#include "module.h"
#include "settings.h"

namespace simcam {

inline constexpr uint32_t kMono8 = 0x01080001;

struct Geometry {
  uint32_t width = 0;
  uint32_t height = 0;

  [[nodiscard]] size_t PayloadSize() const { return size_t{width} * height; }
};

class RemoteDevice : public Module {
 public:
  RemoteDevice(const std::string& deviceId, std::weak_ptr<Module> device, const Settings& settings,
               bool writable);

  // Refuses what the list above does not allow, and fires EVENT_FEATURE_CHANGE and
  // EVENT_FEATURE_INVALIDATE for what the write changed.
  void Write(uint64_t address, const void* data, size_t size) override;

  [[nodiscard]] Geometry CurrentGeometry() const;
  [[nodiscard]] double FrameRate() const;  // frames per second
  [[nodiscard]] bool FramesFlow() const;

 protected:
  [[nodiscard]] bool Writable() const override { return writable_; }

 private:
  void CheckValue(uint64_t address, const void* data) const;
  void Apply(uint64_t address, const void* data, size_t size);

  const bool writable_;
  bool framesFlow_ = true;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H
