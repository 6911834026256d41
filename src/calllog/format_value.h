// SPDX-License-Identifier: MIT
// A value of a line, in the one form that the formatter takes.
#ifndef VEXTREL_CALLLOG_FORMAT_VALUE_H
#define VEXTREL_CALLLOG_FORMAT_VALUE_H

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "calllog/always_inline.h"
#include "calllog/byte_dump.h"
#include "calllog/checked_format.h"
#include "calllog/rendered_text.h"

namespace vextrel {

// The bits of a number or an address, and the size of a text if it's known. Refers to the value
// that it's made from, which must outlive it.
class FormatValue {
 public:
  FormatValue(NoValue /*none*/) noexcept {}  // NOLINT(google-explicit-constructor)
  template <std::integral Number>
  FormatValue(Number number) noexcept  // NOLINT(google-explicit-constructor)
      : bits_(static_cast<std::uint64_t>(number)), shape_(Shape::Number) {}
  FormatValue(const volatile void* address) noexcept  // NOLINT(google-explicit-constructor)
      : bits_(reinterpret_cast<std::uintptr_t>(address)) {}
  FormatValue(std::string_view text) noexcept  // NOLINT(google-explicit-constructor)
      : bits_(reinterpret_cast<std::uintptr_t>(text.data())),
        size_(text.size()),
        shape_(Shape::SizedText) {}
  FormatValue(const RenderedText& text) noexcept  // NOLINT(google-explicit-constructor)
      : FormatValue(text.Shown()) {
    shape_ = Shape::PlainText;
  }
  FormatValue(const std::string& text) noexcept  // NOLINT(google-explicit-constructor)
      : FormatValue(std::string_view(text)) {}
  FormatValue(const ByteDump& dump) noexcept  // NOLINT(google-explicit-constructor)
      : bits_(reinterpret_cast<std::uintptr_t>(dump.pBuffer)),
        size_(dump.iSize),
        shape_(Shape::Dump) {}
  template <typename Value>
  FormatValue(const ValueAt<Value>& output) noexcept  // NOLINT(google-explicit-constructor)
      : FormatValue(*output.pointer) {}
  template <typename Value>
  FormatValue(const Misplaced<Value>& misplaced) noexcept  // NOLINT(google-explicit-constructor)
      : FormatValue(misplaced.value) {}

  [[nodiscard]] std::uint64_t Bits() const noexcept { return bits_; }
  [[nodiscard]] bool IsNumber() const noexcept { return shape_ == Shape::Number; }
  [[nodiscard]] bool IsDump() const noexcept { return shape_ == Shape::Dump; }
  [[nodiscard]] ByteDump Dump() const noexcept {
    return {reinterpret_cast<const void*>(static_cast<std::uintptr_t>(bits_)), size_};
  }
  // Returns how many characters %s shows. REQUIRES: !IsNumber().
  [[nodiscard]] VEXTREL_ALWAYS_INLINE std::size_t TextSize() const noexcept {
    return IsPlain() ? size_ : MeasureText(bits_, size_, shape_);
  }
  // Returns those characters. REQUIRES: !IsNumber(), !IsDump(), and `size` is TextSize().
  [[nodiscard]] std::string_view Text(std::size_t size) const noexcept {
    return {TextBegin(), size};
  }

 private:
  // A SizedText may be null or contain zero bytes. A PlainText isn't null, and contains none.
  enum class Shape : std::uint8_t { Address, SizedText, PlainText, Number, Dump };

  static constexpr std::string_view kNullText = "(null)";

  [[nodiscard]] static std::size_t MeasureText(std::uint64_t bits, std::size_t size,
                                               Shape shape) noexcept;

  [[nodiscard]] bool IsPlain() const noexcept { return shape_ == Shape::PlainText; }
  [[nodiscard]] const char* TextBegin() const noexcept {
    return bits_ == 0 && !IsPlain()
               ? kNullText.data()
               : reinterpret_cast<const char*>(static_cast<std::uintptr_t>(bits_));
  }

  std::uint64_t bits_ = 0;
  std::size_t size_ = 0;
  Shape shape_ = Shape::Address;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_FORMAT_VALUE_H
