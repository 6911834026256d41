#include "calllog/line_format.h"

#include <cstring>

#include "calllog/digits.h"

namespace vextrel {
namespace {

constexpr std::size_t kMaxDigits = 20;

void AppendValue(std::string& line, Conversion conversion, const FormatValue& value) {
  const auto low32 = static_cast<std::uint32_t>(value.bits());
  switch (conversion) {
    case Conversion::Text:
      if (value.isNumber()) {
        line.append(Digits::Decimal(value.bits()).view());
      } else {
        line.append(value.text());
      }
      break;
    case Conversion::Pointer:
      line.append(Digits::UpperHex16(value.bits()).view());
      break;
    case Conversion::Unsigned32:
      line.append(Digits::Decimal(low32).view());
      break;
    case Conversion::Signed32:
      line.append(Digits::Decimal(static_cast<std::int32_t>(low32)).view());
      break;
    case Conversion::Hex32:
      line.append(Digits::Hex(low32).view());
      break;
    case Conversion::Hex64:
      line.append(Digits::Hex(value.bits()).view());
      break;
  }
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
  std::size_t size = text.size() + pieces.size() * kMaxDigits;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (pieces[i].conversion == Conversion::Text && !values[i].isNumber()) {
      size += values[i].text().size();
    }
  }
  std::string line;
  line.reserve(size);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    line.append(text.substr(0, pieces[i].literalSize));
    AppendValue(line, pieces[i].conversion, values[i]);
    text.remove_prefix(std::size_t{pieces[i].literalSize} + pieces[i].conversionSize);
  }
  line.append(text);
  return line;
}

}  // namespace vextrel
