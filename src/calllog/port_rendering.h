// Register and event data as the call log shows them: byte by byte, without a limit.
//
// Both functions read the memory that they are given, as much as its sizes say, and change nothing.
// Both are thread-safe as far as that memory is not being written. The texts end with one NUL
// character that counts in their size.
#ifndef VEXTREL_CALLLOG_PORT_RENDERING_H
#define VEXTREL_CALLLOG_PORT_RENDERING_H

#include <cstddef>
#include <string>

#include "gentl/gentl.h"

namespace vextrel {

// `iSize` bytes at `pBuffer` as "0x0a,0xff", sixteen to a line. Empty for a null pointer.
[[nodiscard]] std::string RenderByteDump(const void* pBuffer, std::size_t iSize);

// The entries of a stacked access with their addresses, data and sizes. `pEntries` is not tested
// for null unless the count is 0.
[[nodiscard]] std::string RenderPortData(const PORT_REGISTER_STACK_ENTRY* pEntries,
                                         std::size_t iNumEntries);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_PORT_RENDERING_H
