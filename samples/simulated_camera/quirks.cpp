// SPDX-License-Identifier: MIT
#include "quirks.h"

#include <algorithm>

#include "buffer.h"
#include "failure.h"
#include "info_value.h"

namespace simulated_camera {
namespace {

struct NamedQuirk {
  std::string_view name;
  Quirk quirk;
};

constexpr NamedQuirk kQuirks[] = {
    {"needs-list", Quirk::NeedsList},          {"long-description", Quirk::LongDescription},
    {"unplugged", Quirk::Unplugged},           {"lost-buffer", Quirk::LostBuffer},
    {"strict-parts", Quirk::StrictParts},      {"typed-wrongly", Quirk::TypedWrongly},
    {"counts-down", Quirk::CountsDown},        {"no-base", Quirk::NoBase},
    {"waits-for-waits", Quirk::WaitsForWaits},
};

constexpr uint64_t kLostFrame = 3;
constexpr uint64_t kHighestFrame = 1'000'000;

bool DescribesImage(BUFFER_INFO_CMD command) {
  return command == BUFFER_INFO_WIDTH || command == BUFFER_INFO_HEIGHT ||
         command == BUFFER_INFO_PIXELFORMAT;
}

}  // namespace

Quirk QuirkNamed(std::string_view name) {
  const auto* const found = std::ranges::find(kQuirks, name, &NamedQuirk::name);
  return found == std::end(kQuirks) ? Quirk::None : found->quirk;
}

InfoValue InfoOf(const Buffer& buffer, BUFFER_INFO_CMD command, Quirk quirk) {
  const FrameRecord& frame = buffer.frame;
  if (quirk == Quirk::LostBuffer && frame.present && frame.id == kLostFrame) {
    throw Failure(GC_ERR_INVALID_HANDLE, "there is no such buffer");
  }
  if ((quirk == Quirk::StrictParts && DescribesImage(command)) ||
      (quirk == Quirk::NoBase && command == BUFFER_INFO_BASE)) {
    NothingToTell(command);
  }
  if (frame.present && command == BUFFER_INFO_FRAMEID) {
    if (quirk == Quirk::TypedWrongly) {
      return InfoValue::Size(static_cast<size_t>(frame.id));
    }
    if (quirk == Quirk::CountsDown) {
      return InfoValue::UInt64(kHighestFrame - frame.id);
    }
  }
  return buffer.Info(command);
}

}  // namespace simulated_camera
