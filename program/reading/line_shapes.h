// SPDX-License-Identifier: MIT
// What stands where in each line of the log.
//
// Made from src/calllog/log_text.h, where the writer's formats are: a new line there is known here
// without a change, unless one of its labels is new. What a place means follows from its label, by
// the tables in line_shapes.cpp. The places of irregular lines, where a value stands under a label
// that isn't its own, are listed there, too.
#ifndef VEXTREL_PROGRAM_READING_LINE_SHAPES_H
#define VEXTREL_PROGRAM_READING_LINE_SHAPES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "calllog/checked_format.h"
#include "calllog/value_tables.h"
#include "reading/label.h"

namespace vextrel::program {

enum class Meaning : std::uint8_t {
  Unknown,  // under a label that no table in line_shapes.cpp has, which the tests don't let pass
  Nothing,  // a value under a label that isn't its own, or that stands here for the second time
  Address,  // where an output lies
  Handle,   // under %s with its 0x, or "NULL"
  HandleLowHalf,  // the low 32 bits of one
  Number,
  NumberAsText,  // a decimal number under %s, or "NULL"
  NumberAsPointer,
  Name,  // of an enumeration's value, a word or "(Unknown ...)"
  Dump,
  InfoValue,    // the text that info_rendering.h makes
  Text,         // a C string
  Entries,      // see entries.h
  Duration,     // microseconds with three decimals
  PointerSlot,  // `0xSLOT (0xSTORED)`, `0xSLOT(NULL)` or `NULL`
};

enum class HandleKind : std::uint8_t {
  TransportLayer,
  Interface,
  Device,
  DataStream,
  Buffer,
  Event,
  Port,
  Any,  // a port or an event source, which may be of any kind
};
inline constexpr std::size_t kHandleKinds = 7;  // without Any

struct Place {
  std::string_view literal;  // the text in front
  std::string_view label;    // "" if it has none
  std::uint64_t labelHash;   // of HashOfLabel, or 0, which no Label has
  Conversion conversion;
  Meaning meaning;
  HandleKind kind = HandleKind::Any;
  const ValueTable* values = nullptr;  // the names, if they are known
  bool isOutput = false;               // what an output holds after the call
};

// Returns true iff a text stands there that may hold anything, as opposed to a word.
[[nodiscard]] bool IsFreeText(const Place& place) noexcept;

inline constexpr std::size_t kNoPlace = SIZE_MAX;

struct LineShape {
  std::string_view text;            // the writer's format
  std::string_view function;        // empty unless it's a call's
  std::uint16_t functionIndex = 0;  // into FunctionNames()
  std::uint16_t next = 0;           // another line of the same function, as an index, or 0
  std::vector<Place> places;        // of a call: without its result
  std::string_view tail;            // the text behind the last place
  // The last text that may hold anything, if only numbers, addresses and handles follow it: it's
  // found from the line's end.
  std::size_t lastText = kNoPlace;

  // The place with this label that has a meaning, or kNoPlace.
  [[nodiscard]] std::size_t Find(Label label) const noexcept;
};

// What a shape of a text of log_text.h has as its `text`.
template <typename Line>
[[nodiscard]] constexpr std::string_view FormatOf(const Line& /*line*/) noexcept {
  return Line::Text();
}

// In the order of kCallLines.
[[nodiscard]] std::span<const LineShape> CallShapes();
// In the order of kReports.
[[nodiscard]] std::span<const LineShape> ReportShapes();
// In the order of kTimingLines. Places: the call's number, the function, and the first argument if
// it has one, or how long the call took.
[[nodiscard]] std::span<const LineShape> TimingShapes();

// The functions that have lines, in the order of kCallLines.
[[nodiscard]] std::span<const std::string_view> FunctionNames();
// The first line of the function: an index into CallShapes(), or kNoPlace.
[[nodiscard]] std::size_t FindCallShape(std::string_view function) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_LINE_SHAPES_H
