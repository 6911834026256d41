// SPDX-License-Identifier: MIT
// What producers do wrong, one thing at a time, for a tracing producer and for whoever wants to see
// what its log looks like:
//
//   needs-list        knows no device before the list has been made on the same handle
//   long-description  says that the camera's description is longer than it is
//   unplugged         the camera is gone after its tenth frame: ports answer GC_ERR_IO
//   lost-buffer       takes the handle of the fourth frame's buffer for invalid
//   strict-parts      has no width, height, and pixel format of a frame with several parts
//   typed-wrongly     gives frame ids as INFO_DATATYPE_SIZET
//   counts-down       gives frame ids that go down
//   no-base           doesn't tell where the memory of a buffer begins
//   waits-for-waits   stops a stream only when nobody waits for its frames
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_QUIRKS_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_QUIRKS_H

#include <string_view>

#include "edition.h"

namespace simulated_camera {

class Buffer;
class InfoValue;

enum class Quirk {
  None,
  NeedsList,
  LongDescription,
  Unplugged,
  LostBuffer,
  StrictParts,
  TypedWrongly,
  CountsDown,
  NoBase,
  WaitsForWaits,
};

// Returns Quirk::None if there is no such name.
[[nodiscard]] Quirk QuirkNamed(std::string_view name);

// Returns buffer.Info(command), unless a camera with that quirk answers otherwise. Throws as it
// does.
[[nodiscard]] InfoValue InfoOf(const Buffer& buffer, BUFFER_INFO_CMD command, Quirk quirk);

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_QUIRKS_H
