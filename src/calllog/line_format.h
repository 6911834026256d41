// Formats of log lines, and the one formatter that turns them and their values into text.
//
// The formats are printf's with the meaning that the 64-bit Windows C runtime gives them, on every
// platform and whatever the tool chain's own printf does:
//   %s             text up to its first zero byte, "(null)" for a null pointer
//   %p             sixteen upper-case hexadecimal digits without a prefix
//   %u %lu %d %x   32 bits: longer values show their low 32 bits
//   %llx           64 bits
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

// How many characters a value needs: those of a text, the most that a number may have.
VEXTREL_ALWAYS_INLINE std::size_t MeasureValue(Conversion conversion, const FormatValue& value) {
  switch (conversion) {
    case Conversion::Text:
      return value.isNumber() ? kMaxDecimal<std::uint64_t> : value.TextSize();
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
  }
  return kMaxDigits;
}

// `size` is what MeasureValue says of it.
template <typename Writer>
VEXTREL_ALWAYS_INLINE void AppendValue(Writer& line, Conversion conversion,
                                       const FormatValue& value, std::size_t size) {
  const auto low32 = static_cast<std::uint32_t>(value.bits());
  switch (conversion) {
    case Conversion::Text:
      if (value.isNumber()) {
        line.AppendDigits([&](char* text) { return WriteDecimal(value.bits(), text); });
      } else if (value.isDump()) {
        line.Append(value.dump());
      } else {
        line.Append(value.text(size));
      }
      break;
    case Conversion::Pointer:
      line.AppendDigits([&](char* text) { return WriteUpperHex16(value.bits(), text); });
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
      line.AppendDigits([&](char* text) { return WriteHex(value.bits(), text); });
      break;
  }
}

// Takes the piece off `format`.
template <typename Writer>
VEXTREL_ALWAYS_INLINE void AppendPiece(Writer& line, std::string_view& format,
                                       const FormatPiece& piece, const FormatValue& value,
                                       std::size_t size) {
  line.Append(format.substr(0, piece.literalSize));
  AppendValue(line, piece.conversion, value, size);
  format.remove_prefix(std::size_t{piece.literalSize} + piece.conversionSize);
}

// Calls step(0) to step(count - 1), each with its number as a constant.
template <std::size_t count, typename Step>
VEXTREL_ALWAYS_INLINE void Repeat(Step step) {
  [&]<std::size_t... index>(std::index_sequence<index...>) {
    (step(std::integral_constant<std::size_t, index>()), ...);
  }
  (std::make_index_sequence<count>());
}

}  // namespace detail

// The line that `text`, divided into `pieces`, makes of `values`: as many values as pieces.
[[nodiscard]] std::string FormatLine(std::string_view text, std::span<const FormatPiece> pieces,
                                     std::span<const FormatValue> values);

template <typename... Values>
[[nodiscard]] std::string FormatLine(const LineFormat<std::type_identity_t<Values>...>& format,
                                     const Values&... values) {
  const std::array<FormatValue, sizeof...(Values)> all = {FormatValue(values)...};
  return FormatLine(format.text(), format.pieces(), all);
}

// The same line, in one straight row of copies: for the calls' lines, whose making every call pays
// for. For what is written seldom the function above is the smaller one.
template <FormatText text, typename... Values>
[[nodiscard]] VEXTREL_ALWAYS_INLINE std::string FormatLine(KnownFormat<text> /*format*/,
                                                           const Values&... values) {
  constexpr const LineFormat<Values...>& format = KnownFormat<text>::template of<Values...>;
  constexpr std::size_t count = sizeof...(Values);
  const std::array<FormatValue, count> all = {FormatValue(values)...};
  std::array<std::size_t, count> sizes;  // NOLINT: written before it is read
  std::size_t size = format.text().size();
  detail::Repeat<count>([&](auto index) {
    size += sizes[index] = detail::MeasureValue(format.pieces()[index].conversion, all[index]);
  });
  if (size > ShortLineWriter::kSize) {
    // From the values once more, so that those here need not be in memory.
    return FormatLine<Values...>(format, values...);
  }
  std::string line(size, '\0');
  ShortLineWriter writer(line.data());
  std::string_view rest = format.text();
  detail::Repeat<count>([&](auto index) {
    detail::AppendPiece(writer, rest, format.pieces()[index], all[index], sizes[index]);
  });
  writer.Append(rest);
  line.resize(static_cast<std::size_t>(writer.end() - line.data()));
  return line;
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_FORMAT_H
