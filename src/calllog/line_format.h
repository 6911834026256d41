// SPDX-License-Identifier: MIT
// The formatter that makes a line of the log from a format and its values.
//
// Conversions mean what they mean to printf in the 64-bit Windows C runtime, on every platform and
// whatever the toolchain's own printf does:
//   %s             text up to its first zero byte, "(null)" for a null pointer
//   %p             sixteen upper-case hexadecimal digits without a prefix
//   %u %lu %d %x   32 bits: longer values show their low 32 bits
//   %llx %llu      64 bits
#ifndef VEXTREL_CALLLOG_LINE_FORMAT_H
#define VEXTREL_CALLLOG_LINE_FORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "calllog/always_inline.h"
#include "calllog/checked_format.h"
#include "calllog/digits.h"
#include "calllog/format_value.h"
#include "calllog/line_writer.h"

namespace vextrel {
namespace detail {

// Returns how many characters to reserve for a value: exact for a text, an upper bound for a
// number.
VEXTREL_ALWAYS_INLINE std::size_t MeasureValue(Conversion conversion, const FormatValue& value) {
  switch (conversion) {
    case Conversion::Text:
      return value.IsNumber() ? kMaxDecimal<std::uint64_t> : value.TextSize();
    case Conversion::Pointer:
      return kHex16Size;
    case Conversion::Unsigned32:
      return kMaxDecimal<std::uint32_t>;
    case Conversion::Signed32:
      return kMaxDecimal<std::int32_t>;
    case Conversion::Hex32:
      return kMaxHex<std::uint32_t>;
    case Conversion::Hex64:
      return kMaxHex<std::uint64_t>;
    case Conversion::Unsigned64:
      return kMaxDecimal<std::uint64_t>;
  }
  return kMaxDigits;
}

// REQUIRES: `size` is MeasureValue(conversion, value).
template <typename Writer>
VEXTREL_ALWAYS_INLINE void AppendValue(Writer& line, Conversion conversion,
                                       const FormatValue& value, std::size_t size) {
  const auto low32 = static_cast<std::uint32_t>(value.Bits());
  switch (conversion) {
    case Conversion::Text:
      if (value.IsNumber()) {
        line.AppendDigits([&](char* text) { return WriteDecimal(value.Bits(), text); });
      } else if (value.IsDump()) {
        line.Append(value.Dump());
      } else {
        line.Append(value.Text(size));
      }
      break;
    case Conversion::Pointer:
      line.AppendDigits([&](char* text) { return WriteUpperHex16(value.Bits(), text); });
      break;
    case Conversion::Unsigned32:
      line.AppendDigits([&](char* text) { return WriteDecimal(low32, text); });
      break;
    case Conversion::Signed32:
      line.AppendDigits(
          [&](char* text) { return WriteDecimal(static_cast<std::int32_t>(low32), text); });
      break;
    case Conversion::Hex32:
      line.AppendDigits([&](char* text) { return WriteHex(low32, text); });
      break;
    case Conversion::Hex64:
      line.AppendDigits([&](char* text) { return WriteHex(value.Bits(), text); });
      break;
    case Conversion::Unsigned64:
      line.AppendDigits([&](char* text) { return WriteDecimal(value.Bits(), text); });
      break;
  }
}

// Appends the piece and its value, and removes the piece from the front of `format`.
template <typename Writer>
VEXTREL_ALWAYS_INLINE void AppendPiece(Writer& line, std::string_view& format,
                                       const FormatPiece& piece, const FormatValue& value,
                                       std::size_t size) {
  line.Append(format.substr(0, piece.literalSize));
  AppendValue(line, piece.conversion, value, size);
  format.remove_prefix(std::size_t{piece.literalSize} + piece.conversionSize);
}

// Calls step(0) to step(count - 1). The arguments are compile-time constants.
template <std::size_t count, typename Step>
VEXTREL_ALWAYS_INLINE void Repeat(Step step) {
  [&]<std::size_t... index>(std::index_sequence<index...>) {
    (step(std::integral_constant<std::size_t, index>()), ...);
  }
  (std::make_index_sequence<count>());
}

}  // namespace detail

// Returns the line that the format `text` makes of `values`. REQUIRES: `pieces` are those of
// `text`, and there are as many values.
[[nodiscard]] std::string FormatLine(std::string_view text, std::span<const FormatPiece> pieces,
                                     std::span<const FormatValue> values);

template <typename... Values>
[[nodiscard]] std::string FormatLine(const LineFormat<std::type_identity_t<Values>...>& format,
                                     const Values&... values) {
  const std::array<FormatValue, sizeof...(Values)> all = {FormatValue(values)...};
  return FormatLine(format.Text(), format.Pieces(), all);
}

// Returns the same line, through code that is laid out for its format: for the lines of calls,
// because every call pays for its line. For lines that are rarely written, the function above is
// smaller.
template <FormatText text, typename... Values>
[[nodiscard]] VEXTREL_ALWAYS_INLINE std::string FormatLine(KnownFormat<text> /*format*/,
                                                           const Values&... values) {
  constexpr const LineFormat<Values...>& format =
      KnownFormat<text>::template kCheckedFor<Values...>;
  constexpr std::size_t count = sizeof...(Values);
  const std::array<FormatValue, count> all = {FormatValue(values)...};
  std::array<std::size_t, count> sizes;  // NOLINT: written before it is read
  std::size_t size = format.Text().size();
  detail::Repeat<count>([&](auto index) {
    size += sizes[index] = detail::MeasureValue(format.Pieces()[index].conversion, all[index]);
  });
  if (size > ShortLineWriter::kSize) {
    // Converts the values again, so that the compiler needn't keep `all` in memory.
    return FormatLine<Values...>(format, values...);
  }
  std::string line(size, '\0');
  ShortLineWriter writer(line.data());
  std::string_view rest = format.Text();
  detail::Repeat<count>([&](auto index) {
    detail::AppendPiece(writer, rest, format.Pieces()[index], all[index], sizes[index]);
  });
  writer.Append(rest);
  line.resize(static_cast<std::size_t>(writer.end() - line.data()));
  return line;
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_FORMAT_H
