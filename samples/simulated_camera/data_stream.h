// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "buffer.h"
#include "pacer.h"
#include "remote_device.h"

namespace simulated_camera {

// Fills queued buffers with frames and hands them to the new-buffer event. That event's queue is
// the stream's output queue, whether or not anybody has registered the event.
//
// Thread-safe, but Announce, Revoke, Start and Stop require the library's tree lock. Lock order:
// tree, stream, event queue.
class DataStream : public Module {
 public:
  DataStream(const std::string& id, std::weak_ptr<Module> device,
             std::shared_ptr<RemoteDevice> camera);

  // Throws GC_ERR_INVALID_PARAMETER if a segment has no size, GC_ERR_RESOURCE_IN_USE if its memory
  // has been announced already.
  [[nodiscard]] std::shared_ptr<Buffer> Announce(BufferLayout layout, void* userPointer);
  // These throw GC_ERR_INVALID_HANDLE if the buffer belongs to another stream,
  // GC_ERR_RESOURCE_IN_USE if it is queued.
  void Revoke(const std::shared_ptr<Buffer>& buffer);
  void Queue(const std::shared_ptr<Buffer>& buffer);
  // Leaves a buffer that is being filled alone.
  void Flush(ACQ_QUEUE_TYPE operation);

  // Acquires `count` frames; all bits set means until stopped. Throws GC_ERR_RESOURCE_IN_USE if
  // the acquisition is running.
  void Start(ACQ_START_FLAGS flags, uint64_t count);
  // Finishes the current frame first; the kill flag abandons it and returns its buffer to the
  // input queue. Throws GC_ERR_RESOURCE_IN_USE if the acquisition was not started.
  void Stop(ACQ_STOP_FLAGS flags);

  [[nodiscard]] InfoValue Info(STREAM_INFO_CMD command) const;
  // Calls use(buffer) while no frame goes to the buffer. Throws GC_ERR_INVALID_HANDLE for a buffer
  // of another stream.
  template <class Use>
  void Inspect(const Buffer& buffer, const Use& use) const {
    const std::scoped_lock lock(mutex_);
    RequireOwn(buffer);
    use(buffer);
  }
  [[nodiscard]] std::shared_ptr<Buffer> BufferAt(uint32_t index) const;

 protected:
  std::shared_ptr<EventQueue> QueueFor(EVENT_TYPE type) override;
  void QueueClosed(EVENT_TYPE type) override;
  void BeforeClose() override;

 private:
  [[nodiscard]] std::shared_ptr<EventQueue> MakeOutputQueue();
  void RequireOwn(const Buffer& buffer) const;
  void ToInput(const std::shared_ptr<Buffer>& buffer);
  void ToOutput(const std::shared_ptr<Buffer>& buffer);
  void UnqueuedToInput();
  void EndAcquisition(bool kill);

  // The pacer's tick. Returns false once the acquisition has ended.
  [[nodiscard]] bool ProduceFrame() noexcept;
  // Of the frame that is due.
  [[nodiscard]] uint64_t NextNumber() const;
  // Returns true iff the frame that is due was lost on the way.
  [[nodiscard]] bool LosesNextFrame();
  // Returns the buffer for the frame that is due, or null if none is queued.
  [[nodiscard]] std::shared_ptr<Buffer> NextBuffer();
  [[nodiscard]] bool FinishFrame(const std::shared_ptr<Buffer>& buffer, size_t filled);

  const std::shared_ptr<RemoteDevice> camera_;

  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<Buffer>> announced_;
  std::deque<std::shared_ptr<Buffer>> input_;
  std::shared_ptr<EventQueue> output_;
  uint64_t buffersMade_ = 0;
  uint64_t frames_ = 0;  // This and the next four count from the last start.
  uint64_t started_ = 0;
  uint64_t acquired_ = 0;
  uint64_t underruns_ = 0;
  std::atomic<uint64_t> delivered_ = 0;
  uint64_t limit_ = 0;
  bool grabbing_ = false;
  std::atomic<bool> killed_ = false;

  std::unique_ptr<Pacer> pacer_;  // Exists from start to stop.
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H
