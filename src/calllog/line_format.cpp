#include "calllog/line_format.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "calllog/digits.h"

namespace vextrel {
namespace {

constexpr std::size_t kMaxDigits = 20;

// Where a line is written that is sure to fit; no call of a usual size allocates but for the
// finished line.
class Buffer {
 public:
  static constexpr std::size_t kSize = 1024;

  void Append(std::string_view text) noexcept {
    std::copy(text.begin(), text.end(), text_.data() + size_);
    size_ += text.size();
  }
  [[nodiscard]] std::string Take() const { return {text_.data(), size_}; }

 private:
  std::array<char, kSize> text_;  // NOLINT: written before it is read
  std::size_t size_ = 0;
};

// Where a longer one is written.
class Text {
 public:
  explicit Text(std::size_t size) { text_.reserve(size); }
  void Append(std::string_view text) { text_.append(text); }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

template <typename Sink>
void AppendValue(Sink& sink, Conversion conversion, const FormatValue& value,
                 std::string_view text) {
  const auto low32 = static_cast<std::uint32_t>(value.bits());
  switch (conversion) {
    case Conversion::Text:
      if (value.isNumber()) {
        sink.Append(Digits::Decimal(value.bits()).view());
      } else {
        sink.Append(text);
      }
      break;
    case Conversion::Pointer:
      sink.Append(Digits::UpperHex16(value.bits()).view());
      break;
    case Conversion::Unsigned32:
      sink.Append(Digits::Decimal(low32).view());
      break;
    case Conversion::Signed32:
      sink.Append(Digits::Decimal(static_cast<std::int32_t>(low32)).view());
      break;
    case Conversion::Hex32:
      sink.Append(Digits::Hex(low32).view());
      break;
    case Conversion::Hex64:
      sink.Append(Digits::Hex(value.bits()).view());
      break;
  }
}

// `texts` are what the values show under %s.
template <typename Sink>
std::string WriteLine(Sink&& sink, std::string_view format, std::span<const FormatPiece> pieces,
                      std::span<const FormatValue> values,
                      std::span<const std::string_view> texts) {
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    sink.Append(format.substr(0, pieces[i].literalSize));
    AppendValue(sink, pieces[i].conversion, values[i], texts[i]);
    format.remove_prefix(std::size_t{pieces[i].literalSize} + pieces[i].conversionSize);
  }
  sink.Append(format);
  return sink.Take();
}

}  // namespace

std::string_view FormatValue::text() const noexcept {
  const auto* begin = reinterpret_cast<const char*>(bits_);
  if (begin == nullptr) {
    return "(null)";
  }
  if (shape_ != Shape::SizedText) {
    return begin;
  }
  const void* end = std::memchr(begin, '\0', size_);
  return {begin,
          end == nullptr ? size_ : static_cast<std::size_t>(static_cast<const char*>(end) - begin)};
}

std::string FormatLine(std::string_view text, std::span<const FormatPiece> pieces,
                       std::span<const FormatValue> values) {
  std::array<std::string_view, kMaxConversions> texts;
  std::size_t size = text.size();
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (pieces[i].conversion == Conversion::Text && !values[i].isNumber()) {
      texts[i] = values[i].text();
      size += texts[i].size();
    } else {
      size += kMaxDigits;
    }
  }
  if (size <= Buffer::kSize) {
    return WriteLine(Buffer(), text, pieces, values, texts);
  }
  return WriteLine(Text(size), text, pieces, values, texts);
}

}  // namespace vextrel
