// SPDX-License-Identifier: MIT
// Bytes as the call log shows them: "0x0a,0xff", sixteen to a line, without a limit (Kept: 29).
//
// Thread-safe as long as no other thread writes to the bytes.
#ifndef VEXTREL_CALLLOG_BYTE_DUMP_H
#define VEXTREL_CALLLOG_BYTE_DUMP_H

#include <cstddef>
#include <string>

#include "calllog/rendered_text.h"

namespace vextrel {

// A dump as a value of a line. Refers to the bytes until the line is made, and is then rendered in
// place, because a big dump is costly to copy. Empty if pBuffer is null.
struct ByteDump {
  const void* pBuffer;
  std::size_t iSize;

  // Returns the size of the text in characters.
  [[nodiscard]] std::size_t size() const noexcept;
  // Writes size() characters, and returns their end.
  char* Write(char* text) const noexcept;
  void AppendTo(std::string& text) const;
};

// Returns the text of the dump.
[[nodiscard]] RenderedText RenderByteDump(const void* pBuffer, std::size_t iSize);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_BYTE_DUMP_H
