// SPDX-License-Identifier: MIT
// The message of one record: a call, a report, a timing line, or something else.
#ifndef VEXTREL_PROGRAM_READING_MESSAGE_H
#define VEXTREL_PROGRAM_READING_MESSAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "gentl/gentl.h"
#include "reading/line_shapes.h"

namespace vextrel::program {

// What stands in one place. Of addresses only the text is known, unless they are handles; a
// duration is a number of nanoseconds.
struct PlaceValue {
  std::string_view text;
  std::uint64_t number = 0;
};

enum class MessageKind : std::uint8_t {
  Call,
  Report,
  Enters,  // a call enters the target
  Leaves,  // and leaves it
  Other
};

// Refers to the text that it was parsed from.
struct Message {
  MessageKind kind = MessageKind::Other;
  std::uint16_t line = 0;            // into CallShapes(), ReportShapes() or TimingShapes()
  std::uint16_t function = 0;        // of a call or a timing line: into FunctionNames()
  const LineShape* shape = nullptr;  // null for Other
  GC_ERROR result = GC_ERR_SUCCESS;  // of a call
  std::string_view text;
  std::array<PlaceValue, kMaxConversions> values;

  [[nodiscard]] bool IsCall() const noexcept { return kind == MessageKind::Call; }
  [[nodiscard]] bool IsTiming() const noexcept {
    return kind == MessageKind::Enters || kind == MessageKind::Leaves;
  }
  [[nodiscard]] bool Failed() const noexcept { return IsCall() && result != GC_ERR_SUCCESS; }
};

// Parses all of `text`. What stands in each place is whole: line breaks are as they stand in the
// file.
void ParseMessage(std::string_view text, Message& message);

// Returns true iff a call, a timing line, or a report that can be told by its first words, starts
// here. Looks at no more than kMessageHead characters.
inline constexpr std::size_t kMessageHead = 96;
[[nodiscard]] bool StartsMessage(std::string_view text) noexcept;

// Returns true iff the text is so much like a message that it must be the writer's own, whole or
// not.
[[nodiscard]] bool ResemblesMessage(std::string_view text) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_MESSAGE_H
