// SPDX-License-Identifier: MIT
// The handles of a log: each value and generation under a name that a person can use.
//
// A value may come back after a close, and two kinds may share one: a handle is its kind, its value
// and its generation. A device's opening shows half of its handle; its first use gives the rest.
#ifndef VEXTREL_PROGRAM_MODEL_HANDLES_H
#define VEXTREL_PROGRAM_MODEL_HANDLES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading/line_shapes.h"
#include "reading/record_reader.h"

namespace vextrel::program {

using HandleId = std::uint32_t;
inline constexpr HandleId kNoHandle = 0;

enum class BufferState : std::uint8_t {
  Unknown,
  Unqueued,
  Queued,  // with the producer
  Held,    // delivered to the application
};

struct Handle {
  HandleKind kind = HandleKind::Any;
  std::uint64_t value = 0;
  bool isHalf = false;       // only the low 32 bits are known
  std::uint32_t number = 0;  // of its kind, from 1
  HandleId parent = kNoHandle;
  std::string id;  // the name that the producer knows it under, or an event's type
  std::uint32_t session = 0;
  bool isOpen = true;
  std::optional<LogPlace> openedAt;  // nothing if the log doesn't show it
  std::optional<LogPlace> closedAt;  // by its own closing function
  HandleId closedWith = kNoHandle;   // what was closed instead, and took it along
  std::uint32_t openedBy = 0;        // a thread's number, from 1
  std::uint32_t closedBy = 0;
  // Of a buffer.
  BufferState state = BufferState::Unknown;
  // As it was announced; nothing if the log doesn't show that, or the producer's memory is used.
  std::optional<std::uint64_t> memory;
  std::optional<std::uint64_t> userPointer;
  std::int64_t deliveredAt = 0;
  bool frameIdTaken = false;
  bool incompleteTaken = false;
  // Of a data stream: into the streams of the session model.
  std::size_t stream = SIZE_MAX;
};

class Handles {
 public:
  Handles();

  // A handle is opened. Another one of that kind and value isn't open any more then.
  HandleId Open(HandleKind kind, std::uint64_t value, HandleId parent);
  // A device is opened whose handle shows its low 32 bits. The first whole value that ends in them
  // is its own.
  HandleId OpenHalf(std::uint32_t lowHalf, HandleId parent);
  // The latest handle of that kind with that value, or kNoHandle. Any stands for the kinds that
  // have ports and events, the open ones first.
  [[nodiscard]] HandleId Find(HandleKind kind, std::uint64_t value);
  // The same; one that was never seen before is made known. Of kind Any it's a port.
  HandleId FindOrAdd(HandleKind kind, std::uint64_t value);
  // Find() that joins no halves.
  [[nodiscard]] HandleId FindLatest(HandleKind kind, std::uint64_t value) const;
  // An open handle of another kind with that value whose opening the log shows, or kNoHandle. Of a
  // device, its low half is enough as long as no more is known.
  [[nodiscard]] HandleId FindOther(HandleKind kind, std::uint64_t value) const;
  // The handle isn't open any more, nor is anything below it.
  void End(HandleId handle);
  void EndAll();

  [[nodiscard]] Handle& At(HandleId id) { return handles_[id]; }
  [[nodiscard]] const Handle& At(HandleId id) const { return handles_[id]; }
  // Ids run from 1 to this.
  [[nodiscard]] HandleId Last() const noexcept {
    return static_cast<HandleId>(handles_.size() - 1);
  }
  [[nodiscard]] const std::vector<HandleId>& OpenOnes() const noexcept { return open_; }

  // "DEV1"
  [[nodiscard]] std::string Name(HandleId id) const;
  // `DEV1 "SimCam2"`, `EV2 NEW_BUFFER of DS1`
  [[nodiscard]] std::string FullName(HandleId id) const;

 private:
  using ByKind = std::array<HandleId, kHandleKinds>;
  struct Slot {
    std::uint64_t value = 0;
    bool isUsed = false;
    ByKind latest{};
  };

  [[nodiscard]] Slot& SlotOf(std::uint64_t value);
  void Grow();
  void Remember(HandleId id);
  HandleId Add(HandleKind kind, std::uint64_t value);
  [[nodiscard]] HandleId JoinHalf(std::uint64_t value);

  std::deque<Handle> handles_;  // the first one is none
  std::vector<HandleId> open_;
  std::vector<HandleId> halves_;  // devices of which only half is known
  std::array<std::uint32_t, kHandleKinds> numbers_{};
  std::vector<Slot> slots_;
  std::size_t used_ = 0;
};

// "a transport layer", "an interface" and so on
[[nodiscard]] std::string_view KindText(HandleKind kind) noexcept;
// "TL", "IF", "DEV", "DS", "BUF", "EV", "PORT"
[[nodiscard]] std::string_view KindName(HandleKind kind) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_HANDLES_H
