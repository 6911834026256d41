// SPDX-License-Identifier: MIT
// Stacked register accesses as the call log shows them.
#ifndef VEXTREL_CALLLOG_PORT_RENDERING_H
#define VEXTREL_CALLLOG_PORT_RENDERING_H

#include <array>
#include <cstddef>
#include <span>

#include "calllog/rendered_text.h"
#include "gentl/gentl.h"

namespace vextrel {

// A buffer of the caller's that saves an allocation. Holds sixteen entries of eight bytes.
using RoomForPortData = std::array<char, 2048>;

// The entries with their addresses, data and sizes, and one NUL character, which counts in the
// size. Reads what the entries' sizes say and changes nothing. Thread-safe as long as nobody writes
// to the entries or their data.
//
// REQUIRES: `pEntries` points to `iNumEntries` entries; it may be null if that is 0. `room`
// outlives the text.
[[nodiscard]] RenderedText RenderPortData(const PORT_REGISTER_STACK_ENTRY* pEntries,
                                          std::size_t iNumEntries, std::span<char> room = {});

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_PORT_RENDERING_H
