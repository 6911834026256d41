#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "buffer.h"
#include "pacer.h"
#include "remote_device.h"

namespace simcam {

// Fills queued buffers with frames and hands them to the new-buffer event, whose queue is the
// stream's output queue, registered or not.
//
// Announce, Revoke, Start and Stop are to be called with the library's tree lock held; all else is
// thread-safe. Lock order: tree, stream, event queue.
class DataStream : public Module {
 public:
  DataStream(const std::string& id, std::weak_ptr<Module> device,
             std::shared_ptr<RemoteDevice> camera);

  // A null `base` has the buffer allocated here. Throws GC_ERR_INVALID_PARAMETER for a size of
  // zero, GC_ERR_RESOURCE_IN_USE for memory announced before.
  [[nodiscard]] std::shared_ptr<Buffer> Announce(void* base, size_t size, void* userPointer);
  // These throw GC_ERR_INVALID_HANDLE for a buffer of another stream, GC_ERR_RESOURCE_IN_USE for
  // one that is queued.
  void Revoke(const std::shared_ptr<Buffer>& buffer);
  void Queue(const std::shared_ptr<Buffer>& buffer);
  // A buffer that is being filled stays where it is.
  void Flush(ACQ_QUEUE_TYPE operation);

  // Throws GC_ERR_RESOURCE_IN_USE while frames are being acquired. `count` of all bits set:
  // until stopped.
  void Start(ACQ_START_FLAGS flags, uint64_t count);
  // Ends after the frame under way, or with the kill flag at once, its buffer going back to the
  // input queue. Throws GC_ERR_RESOURCE_IN_USE if not started.
  void Stop(ACQ_STOP_FLAGS flags);

  [[nodiscard]] InfoValue Info(STREAM_INFO_CMD command) const;
  [[nodiscard]] InfoValue BufferInfo(const Buffer& buffer, BUFFER_INFO_CMD command) const;
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

  // One tick of the pacer: false when the acquisition has ended.
  [[nodiscard]] bool ProduceFrame() noexcept;
  [[nodiscard]] std::shared_ptr<Buffer> NextBuffer();
  [[nodiscard]] bool FinishFrame(const std::shared_ptr<Buffer>& buffer, const Geometry& geometry,
                                 size_t filled);

  const std::shared_ptr<RemoteDevice> camera_;

  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<Buffer>> announced_;
  std::deque<std::shared_ptr<Buffer>> input_;
  std::shared_ptr<EventQueue> output_;
  uint64_t buffersMade_ = 0;
  uint64_t frames_ = 0;  // since the last start, as are the following ones
  uint64_t started_ = 0;
  uint64_t acquired_ = 0;
  uint64_t underruns_ = 0;
  std::atomic<uint64_t> delivered_ = 0;
  uint64_t limit_ = 0;
  bool grabbing_ = false;
  std::atomic<bool> killed_ = false;

  std::unique_ptr<Pacer> pacer_;  // from start to stop
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_DATA_STREAM_H
