// SPDX-License-Identifier: MIT
// Formats of log lines, parsed and checked against the number and kinds of their values at compile
// time. An irregular line must declare itself with NoValue or Misplaced.
#ifndef VEXTREL_CALLLOG_CHECKED_FORMAT_H
#define VEXTREL_CALLLOG_CHECKED_FORMAT_H

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "calllog/byte_dump.h"
#include "calllog/rendered_text.h"

namespace vextrel {

// The value of a conversion that gets none. Shows as zero.
struct NoValue {};
inline constexpr NoValue kNoValue;

// The value behind an output pointer. It's read when the line is made, and not at all if no line is
// made; only in that case may the pointer be null.
template <typename Value>
struct ValueAt {
  const Value* pointer;
  explicit ValueAt(const Value* output) noexcept : pointer(output) {}
};

// Declares a value under a conversion that isn't meant for it. A number under %s shows in decimal
// and is never followed; an address under %s shows the bytes at that address; a text under %p or %u
// shows its address.
template <typename Value>
struct Misplaced {
  const Value& value;
  explicit Misplaced(const Value& misplaced) : value(misplaced) {}
};

enum class Conversion : std::uint8_t {
  Text,
  Pointer,
  Unsigned32,
  Signed32,
  Hex32,
  Hex64,
  Unsigned64
};

namespace detail {

// A constant expression can't call these, so the compiler's message names the mistake.
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
template <typename Value>
struct KindOf<ValueAt<Value>> : KindOf<Value> {};
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

// One conversion of a format, and the size of the literal text before it.
struct FormatPiece {
  std::uint16_t literalSize;
  std::uint16_t conversionSize;
  Conversion conversion;
};

// The conversion that `text` starts with.
[[nodiscard]] constexpr FormatPiece ParseConversion(std::string_view text) {
  struct Known {
    std::string_view text;
    Conversion conversion;
  };
  constexpr Known known[] = {
      {"%s", Conversion::Text},       {"%p", Conversion::Pointer},
      {"%u", Conversion::Unsigned32}, {"%lu", Conversion::Unsigned32},
      {"%d", Conversion::Signed32},   {"%x", Conversion::Hex32},
      {"%llx", Conversion::Hex64},    {"%llu", Conversion::Unsigned64},
  };
  for (const Known& each : known) {
    if (text.starts_with(each.text)) {
      return {0, static_cast<std::uint16_t>(each.text.size()), each.conversion};
    }
  }
  detail::FormatHasAnUnknownConversion();
  return {};
}

// Divides `text` into `pieces`, which have to be enough. Returns how many there are. At compile
// time only, although clang 14 takes no consteval here.
[[nodiscard]] constexpr std::size_t DivideFormat(std::string_view text,
                                                 std::span<FormatPiece> pieces) {
  std::size_t count = 0;
  std::size_t literalBegin = 0;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] != '%') {
      ++i;
      continue;
    }
    if (count == pieces.size()) {
      detail::FormatHasMoreConversionsThanValues();
    }
    FormatPiece& piece = pieces[count++];
    piece = ParseConversion(text.substr(i));
    piece.literalSize = static_cast<std::uint16_t>(i - literalBegin);
    i += piece.conversionSize;
    literalBegin = i;
  }
  return count;
}

// A format that has been checked against values of these types.
template <typename... Values>
class LineFormat {
  static_assert(sizeof...(Values) <= kMaxConversions);

 public:
  template <std::size_t size>
  consteval LineFormat(const char (&text)[size])  // NOLINT: a format is written as its text
      : text_(text, size - 1) {
    const std::size_t count = DivideFormat(text_, {pieces_.data(), sizeof...(Values)});
    if (count != sizeof...(Values)) {
      detail::FormatHasFewerConversionsThanValues();
    }
    std::size_t index = 0;
    if (!(detail::Fits<Values>(pieces_[index++].conversion) && ...)) {
      detail::ValueDoesNotFitItsConversion();
    }
  }

  [[nodiscard]] constexpr std::string_view Text() const noexcept { return text_; }
  [[nodiscard]] constexpr std::span<const FormatPiece> Pieces() const noexcept {
    return {pieces_.data(), sizeof...(Values)};
  }

 private:
  std::string_view text_;
  std::array<FormatPiece, sizeof...(Values) + 1> pieces_{};
};

// A format as a type, so that everything about it is known at compile time: written "..."_line.
template <std::size_t size>
struct FormatText {
  consteval FormatText(const char (&text)[size]) {  // NOLINT: a format is written as its text
    std::copy_n(text, size, characters);
  }
  char characters[size];
};
template <FormatText text>
struct KnownFormat {
  [[nodiscard]] static constexpr std::string_view Text() noexcept {
    return {text.characters, std::size(text.characters) - 1};
  }
  template <typename... Values>
  static constexpr LineFormat<Values...> kCheckedFor{text.characters};
};
template <FormatText... texts>
[[nodiscard]] consteval std::array<std::string_view, sizeof...(texts)> TextsOf(
    KnownFormat<texts>... /*formats*/) {
  return {KnownFormat<texts>::Text()...};
}
inline namespace literals {
template <FormatText text>
consteval KnownFormat<text> operator""_line() {
  return {};
}
}  // namespace literals

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_CHECKED_FORMAT_H
