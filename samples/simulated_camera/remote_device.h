// SPDX-License-Identifier: MIT
// The camera itself, as its consumer sees it: a port with little-endian registers.
//
//   0x000  text 32   DeviceVendorName       read
//   0x020  text 32   DeviceModelName        read
//   0x040  text 32   DeviceID               read
//   0x060  text 64   DeviceUserID           read, write
//   0x100  uint32    Width                  read, write unless TLParamsLocked, 1 to 8192
//   0x104  uint32    Height                 read, write unless TLParamsLocked, 1 to 8192
//   0x108  uint32    PixelFormat            read, always Mono8 (0x01080001)
//   0x10C  uint32    TLParamsLocked         read, write, 0 or 1
//   0x110  uint64    PayloadSize            read, the size of a frame (frame.h) in bytes
//   0x118  float64   AcquisitionFrameRate   read, write, 0.1 to 10000 frames per second
//   0x120  uint32    AcquisitionStart       write 1 to let frames flow (the default)
//   0x124  uint32    AcquisitionStop        write 1 to hold frames back
//   0x10000          the description, in XML
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

#include "frame.h"
#include "module.h"
#include "settings.h"

namespace simulated_camera {

class RemoteDevice : public Module {
 public:
  RemoteDevice(const std::string& deviceId, std::weak_ptr<Module> device, const Settings& settings,
               bool writable);

  // Throws as Module does, and GC_ERR_IO when the camera is gone.
  void Read(uint64_t address, void* buffer, size_t size) const override;
  // Throws if the table above does not allow the write. Fires EVENT_FEATURE_CHANGE, and
  // EVENT_FEATURE_INVALIDATE for features that change with the written one.
  void Write(uint64_t address, const void* data, size_t size) override;

  [[nodiscard]] Geometry CurrentGeometry() const;
  // Returns DeviceUserID.
  [[nodiscard]] std::string UserId() const;
  [[nodiscard]] double FrameRate() const;  // In frames per second.
  // Whether the camera's quirk is this one.
  [[nodiscard]] bool Has(Quirk quirk) const noexcept { return quirk_ == quirk; }
  // Pulls the plug if that's the camera's quirk and this frame, counted from 0, comes after the
  // last.
  void ReachFrame(uint64_t number) noexcept;
  // How long a frame, and a stop, are held up.
  [[nodiscard]] std::chrono::milliseconds StallBefore(uint64_t number) const noexcept;
  [[nodiscard]] std::chrono::milliseconds StopTime() const noexcept { return slow_; }
  // Whether the frame with this number, from 0, is to be lost, or to come incomplete.
  [[nodiscard]] bool LosesFrame(uint64_t number) const noexcept {
    return lose_ != 0 && number % lose_ == lose_ - 1;
  }
  [[nodiscard]] bool LeavesFrameIncomplete(uint64_t number) const noexcept {
    return incomplete_ != 0 && number % incomplete_ == incomplete_ - 1;
  }
  [[nodiscard]] bool FramesFlow() const noexcept { return framesFlow_ && !gone_; }

 protected:
  [[nodiscard]] bool Writable() const override { return writable_; }

 private:
  // Throws GC_ERR_IO when the camera is gone.
  void RequirePlug() const;

  const bool writable_;
  const uint32_t lose_;
  const uint32_t incomplete_;
  const std::chrono::milliseconds stall_;
  const std::chrono::milliseconds slow_;
  const Quirk quirk_;
  std::atomic<bool> framesFlow_ = true;
  std::atomic<bool> gone_ = false;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_REMOTE_DEVICE_H
