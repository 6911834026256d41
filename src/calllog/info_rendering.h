// Info values, addresses and texts as the call log shows them.
//
// The renderers read the memory that they are given, as far as the data type says or up to the
// first zero byte, and never compare that with a size: they trust the producer. They report no
// error and change nothing. All are thread-safe as far as that memory is not being written.
#ifndef VEXTREL_CALLLOG_INFO_RENDERING_H
#define VEXTREL_CALLLOG_INFO_RENDERING_H

#include <cstddef>

#include "calllog/rendered_text.h"
#include "gentl/gentl.h"

namespace vextrel {

// The value that an info query returned in `pBuffer`, as its data type says. `iSize`, the buffer's
// size in bytes, is not looked at.
[[nodiscard]] RenderedText RenderInfoValue(INFO_DATATYPE type, const void* pBuffer,
                                           std::size_t iSize);

// The address itself, or "NULL".
[[nodiscard]] RenderedText RenderAddress(const void* address);

// A pointer to a pointer: its address and the pointer stored there, or "NULL".
[[nodiscard]] RenderedText RenderPointerSlot(const void* const* slot);

// An info value of the type INFO_DATATYPE_BUFFER.
[[nodiscard]] RenderedText RenderBufferValue(const void* pBuffer);

// The text itself, not copied, or "NULL" for a null pointer.
[[nodiscard]] const char* TextOrNull(const char* text) noexcept;

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_INFO_RENDERING_H
