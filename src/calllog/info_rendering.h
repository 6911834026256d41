// SPDX-License-Identifier: MIT
// Info values, addresses and texts as the call log shows them.
//
// The renderers trust the producer: they read as much memory as the data type says, or up to the
// first zero byte, whatever its size (Kept: 28). Thread-safe as long as no other thread writes to
// that memory.
#ifndef VEXTREL_CALLLOG_INFO_RENDERING_H
#define VEXTREL_CALLLOG_INFO_RENDERING_H

#include <cstddef>

#include "calllog/rendered_text.h"
#include "gentl/gentl.h"

namespace vextrel {

// Returns the value that an info query stored in `pBuffer`, shown according to its data type.
// Ignores `iSize`, the buffer's size in bytes.
[[nodiscard]] RenderedText RenderInfoValue(INFO_DATATYPE type, const void* pBuffer,
                                           std::size_t iSize);

// Returns the address itself, or "NULL".
[[nodiscard]] RenderedText RenderAddress(const void* address);

// Returns the address of the slot and the pointer stored there, or "NULL" if there's no slot.
[[nodiscard]] RenderedText RenderPointerSlot(const void* const* slot);

// Returns a value of type INFO_DATATYPE_BUFFER.
[[nodiscard]] RenderedText RenderBufferValue(const void* pBuffer);

// Returns `text` itself, or "NULL" if it's null.
[[nodiscard]] const char* TextOrNull(const char* text) noexcept;

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_INFO_RENDERING_H
