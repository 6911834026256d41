// SPDX-License-Identifier: MIT
#include "model/handles.h"

#include <algorithm>
#include <utility>

namespace vextrel::program {
namespace {

constexpr std::array<std::string_view, kHandleKinds> kKindNames = {"TL",  "IF", "DEV", "DS",
                                                                   "BUF", "EV", "PORT"};
constexpr std::array<std::string_view, kHandleKinds> kKindTexts = {
    "a transport layer", "an interface", "a device", "a data stream",
    "a buffer",          "an event",     "a port"};
constexpr std::size_t kFirstSlots = 1024;
constexpr std::uint64_t kLowHalf = 0xFFFFFFFF;

std::size_t Index(HandleKind kind) noexcept {
  return static_cast<std::size_t>(kind);
}

}  // namespace

std::string_view KindText(HandleKind kind) noexcept {
  return kKindTexts[Index(kind)];
}

std::string_view KindName(HandleKind kind) noexcept {
  return kKindNames[Index(kind)];
}

Handles::Handles() : handles_(1), slots_(kFirstSlots) {}

Handles::Slot& Handles::SlotOf(std::uint64_t value) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>((value * 0x9E3779B97F4A7C15U) >> 32U) & mask;
  while (slots_[at].isUsed && slots_[at].value != value) {
    at = (at + 1) & mask;
  }
  return slots_[at];
}

void Handles::Grow() {
  std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
  for (const Slot& slot : old) {
    if (slot.isUsed) {
      SlotOf(slot.value) = slot;
    }
  }
}

void Handles::Remember(HandleId id) {
  if (used_ * 2 >= slots_.size()) {
    Grow();
  }
  const Handle& handle = handles_[id];
  Slot& slot = SlotOf(handle.value);
  used_ += slot.isUsed ? 0 : 1;
  slot.isUsed = true;
  slot.value = handle.value;
  slot.latest[Index(handle.kind)] = id;
}

HandleId Handles::Add(HandleKind kind, std::uint64_t value) {
  const auto id = static_cast<HandleId>(handles_.size());
  Handle& handle = handles_.emplace_back();
  handle.kind = kind;
  handle.value = value;
  handle.number = ++numbers_[Index(kind)];
  open_.push_back(id);
  Remember(id);
  return id;
}

HandleId Handles::Open(HandleKind kind, std::uint64_t value, HandleId parent) {
  const HandleId before = SlotOf(value).latest[Index(kind)];
  if (before != kNoHandle && handles_[before].isOpen && kind != HandleKind::Port) {
    End(before);
  }
  const HandleId id = Add(kind, value);
  handles_[id].parent = parent;
  return id;
}

HandleId Handles::OpenHalf(std::uint32_t lowHalf, HandleId parent) {
  const auto id = static_cast<HandleId>(handles_.size());
  Handle& handle = handles_.emplace_back();
  handle.kind = HandleKind::Device;
  handle.value = lowHalf;
  handle.isHalf = true;
  handle.number = ++numbers_[Index(HandleKind::Device)];
  handle.parent = parent;
  open_.push_back(id);
  halves_.push_back(id);
  return id;
}

HandleId Handles::JoinHalf(std::uint64_t value) {
  for (std::size_t i = 0; i < halves_.size(); ++i) {
    const HandleId id = halves_[i];
    if (handles_[id].value == (value & kLowHalf)) {
      halves_.erase(halves_.begin() + static_cast<std::ptrdiff_t>(i));
      handles_[id].value = value;
      handles_[id].isHalf = false;
      Remember(id);
      return id;
    }
  }
  return kNoHandle;
}

HandleId Handles::Find(HandleKind kind, std::uint64_t value) {
  if (value == 0) {
    return kNoHandle;
  }
  if (kind != HandleKind::Any) {
    const HandleId found = SlotOf(value).latest[Index(kind)];
    if (kind == HandleKind::Device && !halves_.empty() &&
        (found == kNoHandle || !handles_[found].isOpen)) {
      const HandleId joined = JoinHalf(value);
      if (joined != kNoHandle) {
        return joined;
      }
    }
    return found;
  }
  constexpr HandleKind order[] = {
      HandleKind::Port,           HandleKind::Device, HandleKind::DataStream, HandleKind::Interface,
      HandleKind::TransportLayer, HandleKind::Buffer, HandleKind::Event};
  HandleId closed = kNoHandle;
  for (const HandleKind each : order) {
    const HandleId found = Find(each, value);
    if (found != kNoHandle && handles_[found].isOpen) {
      return found;
    }
    closed = closed == kNoHandle ? found : closed;
  }
  return closed;
}

HandleId Handles::FindOrAdd(HandleKind kind, std::uint64_t value) {
  const HandleId found = Find(kind, value);
  if (found != kNoHandle || value == 0) {
    return found;
  }
  return Add(kind == HandleKind::Any ? HandleKind::Port : kind, value);
}

HandleId Handles::FindLatest(HandleKind kind, std::uint64_t value) const {
  for (auto id = static_cast<HandleId>(handles_.size()); --id != kNoHandle;) {
    if (handles_[id].kind == kind && handles_[id].value == value) {
      return id;
    }
  }
  return kNoHandle;
}

HandleId Handles::FindOther(HandleKind kind, std::uint64_t value) const {
  for (const HandleId id : open_) {
    const Handle& handle = handles_[id];
    if (handle.value == (handle.isHalf ? value & kLowHalf : value) && handle.kind != kind &&
        handle.openedAt.has_value()) {
      return id;
    }
  }
  return kNoHandle;
}

void Handles::End(HandleId ended) {
  std::vector<HandleId> rest;
  const auto isBelow = [&](HandleId id) {
    for (; id != kNoHandle; id = handles_[id].parent) {
      if (id == ended) {
        return true;
      }
    }
    return false;
  };
  std::vector<HandleId> gone;
  for (const HandleId id : open_) {
    (isBelow(id) ? gone : rest).push_back(id);
  }
  for (const HandleId id : gone) {
    handles_[id].isOpen = false;
    handles_[id].closedWith = id == ended ? kNoHandle : ended;
    std::erase(halves_, id);
  }
  open_ = std::move(rest);
}

void Handles::EndAll() {
  for (const HandleId id : open_) {
    handles_[id].isOpen = false;
  }
  open_.clear();
  halves_.clear();
}

std::string Handles::Name(HandleId id) const {
  const Handle& handle = handles_[id];
  return std::string(KindName(handle.kind)) + std::to_string(handle.number);
}

std::string Handles::FullName(HandleId id) const {
  const Handle& handle = handles_[id];
  std::string name = Name(id);
  if (handle.kind == HandleKind::Event) {
    name += " " + handle.id;
  } else if (!handle.id.empty()) {
    name += " \"" + handle.id + "\"";
  }
  const bool isOfParent = handle.kind == HandleKind::Event || handle.kind == HandleKind::Port;
  if (isOfParent && handle.parent != kNoHandle) {
    name += " of " + Name(handle.parent);
  }
  return name;
}

}  // namespace vextrel::program
