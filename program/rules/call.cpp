// SPDX-License-Identifier: MIT
#include "rules/call.h"

#include <charconv>

#include "reading/value_reading.h"

namespace vextrel::program {
namespace {

constexpr std::int64_t kLongEnough = 100;  // ms

}  // namespace

bool IsAtOrBelow(const Handles& handles, HandleId id, HandleId ancestor) {
  for (; id != kNoHandle; id = handles.At(id).parent) {
    if (id == ancestor) {
      return true;
    }
  }
  return false;
}

bool IsBehind(const LogPlace& a, const LogPlace& b) noexcept {
  return a.file != b.file ? a.file > b.file : a.line > b.line;
}

std::optional<Ending> EndingOf(const Handles& handles, HandleId id) {
  if (handles.At(id).isOpen) {
    return std::nullopt;
  }
  for (HandleId each = id; each != kNoHandle; each = handles.At(each).parent) {
    const Handle& handle = handles.At(each);
    if (handle.closedAt.has_value()) {
      return Ending{*handle.closedAt, each, handle.closedBy};
    }
  }
  return std::nullopt;
}

std::string Call::ResultText() const {
  std::string storage;
  return std::string(ResultName(message_->result, storage));
}

Moment Call::Moment() const {
  return {record_->place,
          context_->hasTime ? std::optional<std::int64_t>(context_->time) : std::nullopt,
          context_->thread};
}

HandleId Call::DeviceOfPort() const {
  const HandleId port = context_->handles[0];
  if (port == kNoHandle || !At(port).isOpen) {
    return kNoHandle;
  }
  const HandleKind kind = At(port).kind;
  return kind == HandleKind::Device ? port : kind == HandleKind::Port ? At(port).parent : kNoHandle;
}

HandleId Call::HandleIn(Label label) const {
  const std::size_t place = Find(label);
  return place == kNoPlace ? kNoHandle : context_->handles[place];
}

std::string_view Call::Text(Label label) const {
  const std::size_t place = Find(label);
  return place == kNoPlace ? std::string_view() : message_->values[place].text;
}

std::uint64_t Call::Number(Label label) const {
  const std::size_t place = Find(label);
  return place == kNoPlace ? 0 : message_->values[place].number;
}

std::optional<std::uint64_t> DecimalIn(std::string_view text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return value;
}

std::string_view Call::NameIn(Label label) const {
  const std::size_t place = Find(label);
  if (place == kNoPlace) {
    return {};
  }
  return NewestName(message_->values[place].text, message_->shape->places[place].values);
}

bool Call::StartedBehind(const LogPlace& place, std::uint32_t thread) const noexcept {
  if (context_->timing != nullptr) {
    return IsBehind(context_->timing->entered.place, place);
  }
  if (thread != 0 && thread == context_->thread) {
    return true;
  }
  return previousOfThread_.has_value() && !IsBehind(place, *previousOfThread_);
}

bool IsLoss(GC_ERROR result) noexcept {
  return result == GC_ERR_IO || result == GC_ERR_ACCESS_DENIED || result == GC_ERR_NOT_AVAILABLE ||
         result == GC_ERR_TIMEOUT;
}

bool TimedOutSince(const Call& call, const Moment& since) {
  const bool isLong = call.Number("iTimeout") >= std::uint64_t{kLongEnough} ||
                      (since.time.has_value() && call.Time() - *since.time >= kLongEnough * 1000);
  return call.Result() == GC_ERR_TIMEOUT && isLong;
}

}  // namespace vextrel::program
