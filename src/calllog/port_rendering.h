// Register and event data as the call log shows them: byte by byte, without a limit.
//
// All functions read the memory that they are given, as much as its sizes say, and change nothing.
// All are thread-safe as far as that memory is not being written.
#ifndef VEXTREL_CALLLOG_PORT_RENDERING_H
#define VEXTREL_CALLLOG_PORT_RENDERING_H

#include <cstddef>
#include <string>

#include "calllog/rendered_text.h"
#include "gentl/gentl.h"

namespace vextrel {

// `iSize` bytes at `pBuffer` as "0x0a,0xff", sixteen to a line, and one NUL character that counts
// in the size. Empty but for that for a null pointer.
[[nodiscard]] RenderedText RenderByteDump(const void* pBuffer, std::size_t iSize);

// The same text without the NUL as a value of a line, which is then rendered right where it stands
// in the line: a big dump is costly to copy. Refers to the memory until then.
struct ByteDump {
  const void* pBuffer;
  std::size_t iSize;

  // In characters.
  [[nodiscard]] std::size_t size() const noexcept;
  // Writes size() characters, and returns where they end.
  char* Write(char* text) const noexcept;
  void AppendTo(std::string& text) const;
};

// The entries of a stacked access with their addresses, data and sizes, and one NUL character.
// `pEntries` is not tested for null unless the count is 0.
[[nodiscard]] std::string RenderPortData(const PORT_REGISTER_STACK_ENTRY* pEntries,
                                         std::size_t iNumEntries);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_PORT_RENDERING_H
