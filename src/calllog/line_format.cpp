#include "calllog/line_format.h"

#include <array>
#include <cstring>

namespace vextrel {
namespace {

using Sizes = std::array<std::size_t, kMaxConversions>;

template <typename Writer>
std::string WriteLine(Writer&& line, std::string_view format, std::span<const FormatPiece> pieces,
                      std::span<const FormatValue> values, const Sizes& textSizes) {
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    detail::AppendPiece(line, format, pieces[i], values[i], textSizes[i]);
  }
  line.Append(format);
  return line.Take();
}

}  // namespace

std::size_t FormatValue::MeasureText() const noexcept {
  if (isDump()) {
    return dump().size();
  }
  const char* begin = TextBegin();
  if (shape_ != Shape::SizedText || bits_ == 0) {
    return std::strlen(begin);
  }
  const void* end = std::memchr(begin, '\0', size_);
  return end == nullptr ? size_ : static_cast<std::size_t>(static_cast<const char*>(end) - begin);
}

std::string FormatLine(std::string_view text, std::span<const FormatPiece> pieces,
                       std::span<const FormatValue> values) {
  Sizes textSizes{};
  std::size_t size = text.size();
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    textSizes[i] = detail::MeasureText(pieces[i].conversion, values[i]);
    size += textSizes[i] + detail::kMaxDigits;
  }
  if (size <= ShortLineWriter::kSize) {
    return WriteLine(ShortLineWriter(), text, pieces, values, textSizes);
  }
  return WriteLine(LongLineWriter(size), text, pieces, values, textSizes);
}

}  // namespace vextrel
