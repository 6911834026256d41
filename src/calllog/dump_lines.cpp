#include "calllog/dump_lines.h"

#include <algorithm>
#include <array>
#include <string_view>

#if defined(__GNUC__) && defined(__x86_64__)
#include <tmmintrin.h>
#define VEXTREL_DUMP_WITH_VECTORS 1
#endif

namespace vextrel {
namespace {

using Item = std::array<char, kDumpItemSize>;

constexpr std::array<Item, 256> kItems = [] {
  constexpr std::string_view digits = "0123456789abcdef";
  std::array<Item, 256> items{};
  for (std::size_t byte = 0; byte < items.size(); ++byte) {
    items[byte] = {'0', 'x', digits[byte / 16], digits[byte % 16], ','};
  }
  return items;
}();

#if defined(VEXTREL_DUMP_WITH_VECTORS)

constexpr std::size_t kVectorSize = 16;
constexpr std::size_t kVectorsPerLine = 5;
using VectorBytes = std::array<char, kVectorSize>;

// What is the same in every line: "0x", two gaps for digits, ",".
constexpr std::array<VectorBytes, kVectorsPerLine> kFrame = [] {
  std::array<VectorBytes, kVectorsPerLine> frame{};
  for (std::size_t i = 0; i < kVectorSize * kVectorsPerLine; ++i) {
    frame[i / kVectorSize][i % kVectorSize] = std::array{'0', 'x', '\0', '\0', ','}[i % 5];
  }
  return frame;
}();

// For each vector of a line, which digit goes where: digits come in two vectors of eight bytes'
// pairs, the lower half (0) and the upper half (1). A byte with its high bit set leaves a zero.
constexpr std::array<std::array<VectorBytes, kVectorsPerLine>, 2> kPlaces = [] {
  std::array<std::array<VectorBytes, kVectorsPerLine>, 2> places{};
  for (std::size_t half = 0; half < 2; ++half) {
    for (std::size_t i = 0; i < kVectorSize * kVectorsPerLine; ++i) {
      const std::size_t digit = i / kDumpItemSize * 2 + (i % kDumpItemSize == 3 ? 1 : 0);
      const bool isDigit = i % kDumpItemSize == 2 || i % kDumpItemSize == 3;
      const bool isHere = isDigit && digit / kVectorSize == half;
      places[half][i / kVectorSize][i % kVectorSize] =
          isHere ? static_cast<char>(digit % kVectorSize) : static_cast<char>(-128);
    }
  }
  return places;
}();

__m128i LoadVector(const void* bytes) noexcept {
  return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

[[gnu::target("ssse3")]] char* WriteDumpLinesWithVectors(const std::uint8_t* bytes,
                                                         std::size_t lines, char* text) noexcept {
  const __m128i digits = LoadVector("0123456789abcdef");
  const __m128i lowBits = _mm_set1_epi8(0x0F);
  for (; lines > 0; --lines) {
    const __m128i input = LoadVector(bytes);
    const __m128i high = _mm_shuffle_epi8(digits, _mm_and_si128(_mm_srli_epi16(input, 4), lowBits));
    const __m128i low = _mm_shuffle_epi8(digits, _mm_and_si128(input, lowBits));
    const __m128i lower = _mm_unpacklo_epi8(high, low);
    const __m128i upper = _mm_unpackhi_epi8(high, low);
    for (std::size_t i = 0; i < kVectorsPerLine; ++i) {
      const __m128i placed =
          _mm_or_si128(_mm_shuffle_epi8(lower, LoadVector(kPlaces[0][i].data())),
                       _mm_shuffle_epi8(upper, LoadVector(kPlaces[1][i].data())));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(text),
                       _mm_or_si128(placed, LoadVector(kFrame[i].data())));
      text += kVectorSize;
    }
    *text++ = '\n';
    bytes += kBytesPerDumpLine;
  }
  return text;
}

#endif

}  // namespace

char* WriteDumpItems(const std::uint8_t* bytes, std::size_t count, char* text) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    text = std::copy_n(kItems[bytes[i]].data(), kDumpItemSize, text);
  }
  return text;
}

char* WriteDumpLinesPlainly(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept {
  for (; lines > 0; --lines) {
    text = WriteDumpItems(bytes, kBytesPerDumpLine, text);
    *text++ = '\n';
    bytes += kBytesPerDumpLine;
  }
  return text;
}

char* WriteDumpLines(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept {
#if defined(VEXTREL_DUMP_WITH_VECTORS)
  if (__builtin_cpu_supports("ssse3") != 0) {
    return WriteDumpLinesWithVectors(bytes, lines, text);
  }
#endif
  return WriteDumpLinesPlainly(bytes, lines, text);
}

}  // namespace vextrel
