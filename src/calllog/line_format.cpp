// SPDX-License-Identifier: MIT
#include "calllog/line_format.h"

#include <array>
#include <cstring>

namespace vextrel {
namespace {

using Sizes = std::array<std::size_t, kMaxConversions>;

template <typename Writer>
void WriteLine(Writer& line, std::string_view format, std::span<const FormatPiece> pieces,
               std::span<const FormatValue> values, const Sizes& sizes) {
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    detail::AppendPiece(line, format, pieces[i], values[i], sizes[i]);
  }
  line.Append(format);
}

}  // namespace

std::size_t FormatValue::MeasureText(std::uint64_t bits, std::size_t size, Shape shape) noexcept {
  const auto* begin = reinterpret_cast<const char*>(static_cast<std::uintptr_t>(bits));
  if (shape == Shape::Dump) {
    return ByteDump{begin, size}.size();
  }
  if (begin == nullptr) {
    return kNullText.size();
  }
  if (shape != Shape::SizedText) {
    return std::strlen(begin);
  }
  const void* end = std::memchr(begin, '\0', size);
  return end == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(end) - begin);
}

std::string FormatLine(std::string_view text, std::span<const FormatPiece> pieces,
                       std::span<const FormatValue> values) {
  Sizes valueSizes{};
  std::size_t size = text.size();
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    valueSizes[i] = detail::MeasureValue(pieces[i].conversion, values[i]);
    size += valueSizes[i];
  }
  if (size > ShortLineWriter::kSize) {
    LongLineWriter writer(size);
    WriteLine(writer, text, pieces, values, valueSizes);
    return writer.Take();
  }
  std::string line(size, '\0');
  ShortLineWriter writer(line.data());
  WriteLine(writer, text, pieces, values, valueSizes);
  line.resize(static_cast<std::size_t>(writer.end() - line.data()));
  return line;
}

}  // namespace vextrel
