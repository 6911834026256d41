// Formats of log lines, divided into their conversions and checked against their values when they
// are compiled: as many values as conversions, each of a kind that its conversion takes. What is
// irregular on purpose has to say so, see NoValue and Misplaced.
#ifndef VEXTREL_CALLLOG_CHECKED_FORMAT_H
#define VEXTREL_CALLLOG_CHECKED_FORMAT_H

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "calllog/port_rendering.h"
#include "calllog/rendered_text.h"

namespace vextrel {

// Stands for the value of a conversion that gets none: it is zero.
struct NoValue {};
inline constexpr NoValue noValue;

// Declares a value that lands under a conversion which is not meant for it. A number under %s shows
// in decimal and is never followed; an address under %s shows the bytes that lie there; a text
// under %p or %u shows where it lies.
template <typename Value>
struct Misplaced {
  const Value& value;
  explicit Misplaced(const Value& misplaced) : value(misplaced) {}
};

enum class Conversion : std::uint8_t { Text, Pointer, Unsigned32, Signed32, Hex32, Hex64 };

namespace detail {

// Called where a format is wrong, which a constant expression can't do: the compiler's message
// names the function.
void FormatHasMoreConversionsThanValues();
void FormatHasFewerConversionsThanValues();
void FormatHasAnUnknownConversion();
void ValueDoesNotFitItsConversion();

enum class ValueKind : std::uint8_t { Text, Pointer, Number, Any };

template <typename Value>
struct KindOf;
template <typename Value>
requires std::integral<Value>
struct KindOf<Value> : std::integral_constant<ValueKind, ValueKind::Number> {
};
template <typename Value>
struct KindOf<Value*> : std::integral_constant<ValueKind, ValueKind::Pointer> {};
template <>
struct KindOf<char*> : std::integral_constant<ValueKind, ValueKind::Text> {};
template <>
struct KindOf<const char*> : std::integral_constant<ValueKind, ValueKind::Text> {};
template <>
struct KindOf<RenderedText> : std::integral_constant<ValueKind, ValueKind::Text> {};
template <>
struct KindOf<ByteDump> : std::integral_constant<ValueKind, ValueKind::Text> {};
template <>
struct KindOf<std::string> : std::integral_constant<ValueKind, ValueKind::Text> {};
template <>
struct KindOf<NoValue> : std::integral_constant<ValueKind, ValueKind::Any> {};
template <typename Value>
struct KindOf<Misplaced<Value>> : std::integral_constant<ValueKind, ValueKind::Any> {};

template <typename Value>
consteval bool Fits(Conversion conversion) {
  constexpr ValueKind kind = KindOf<Value>::value;
  constexpr bool isCharPointer = std::same_as<Value, char*> || std::same_as<Value, const char*>;
  switch (conversion) {
    case Conversion::Text:
      return kind == ValueKind::Text || kind == ValueKind::Any;
    case Conversion::Pointer:
      return kind == ValueKind::Pointer || kind == ValueKind::Any || isCharPointer;
    default:
      return kind == ValueKind::Number || kind == ValueKind::Any;
  }
}

}  // namespace detail

inline constexpr std::size_t kMaxConversions = 16;

// One conversion of a format, and the length of the literal text in front of it.
struct FormatPiece {
  std::uint16_t literalSize;
  std::uint16_t conversionSize;
  Conversion conversion;
};

// A format that has been checked against values of these types.
template <typename... Values>
class LineFormat {
  static_assert(sizeof...(Values) <= kMaxConversions);

 public:
  template <std::size_t Size>
  consteval LineFormat(const char (&text)[Size])  // NOLINT: a format is written as its text
      : text_(text, Size - 1) {
    std::size_t count = 0;
    std::size_t literalBegin = 0;
    for (std::size_t i = 0; i < text_.size();) {
      if (text_[i] != '%') {
        ++i;
        continue;
      }
      if (count == sizeof...(Values)) {
        detail::FormatHasMoreConversionsThanValues();
      }
      FormatPiece& piece = pieces_[count++];
      piece = Parse(text_.substr(i));
      piece.literalSize = static_cast<std::uint16_t>(i - literalBegin);
      i += piece.conversionSize;
      literalBegin = i;
    }
    if (count != sizeof...(Values)) {
      detail::FormatHasFewerConversionsThanValues();
    }
    std::size_t index = 0;
    if (!(detail::Fits<Values>(pieces_[index++].conversion) && ...)) {
      detail::ValueDoesNotFitItsConversion();
    }
  }

  [[nodiscard]] constexpr std::string_view text() const noexcept { return text_; }
  [[nodiscard]] constexpr std::span<const FormatPiece> pieces() const noexcept {
    return {pieces_.data(), sizeof...(Values)};
  }

 private:
  static consteval FormatPiece Parse(std::string_view text) {
    struct Known {
      std::string_view text;
      Conversion conversion;
    };
    constexpr Known known[] = {
        {"%s", Conversion::Text},       {"%p", Conversion::Pointer},
        {"%u", Conversion::Unsigned32}, {"%lu", Conversion::Unsigned32},
        {"%d", Conversion::Signed32},   {"%x", Conversion::Hex32},
        {"%llx", Conversion::Hex64},
    };
    for (const Known& each : known) {
      if (text.starts_with(each.text)) {
        return {0, static_cast<std::uint16_t>(each.text.size()), each.conversion};
      }
    }
    detail::FormatHasAnUnknownConversion();
    return {};
  }

  std::string_view text_;
  std::array<FormatPiece, sizeof...(Values) + 1> pieces_{};
};

// A format as a type, so that all about it is settled when it is compiled: written "..."_line.
template <std::size_t Size>
struct FormatText {
  consteval FormatText(const char (&text)[Size]) {  // NOLINT: a format is written as its text
    std::copy_n(text, Size, characters);
  }
  char characters[Size];
};
template <FormatText text>
struct KnownFormat {
  template <typename... Values>
  static constexpr LineFormat<Values...> of{text.characters};
};
inline namespace literals {
template <FormatText text>
consteval KnownFormat<text> operator""_line() {
  return {};
}
}  // namespace literals

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_CHECKED_FORMAT_H
