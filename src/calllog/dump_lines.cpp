// SPDX-License-Identifier: MIT
#include "calllog/dump_lines.h"

#include <array>

#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#define VEXTREL_DUMP_WITH_VECTORS 1
#endif

namespace vextrel {
namespace {

#if defined(VEXTREL_DUMP_WITH_VECTORS)

constexpr std::size_t kVectorSize = 16;
constexpr std::size_t kVectorsPerLine = 5;
using VectorBytes = std::array<char, kVectorSize>;

// The constant part of each line: "0x", two gaps for digits, ",".
constexpr std::array<VectorBytes, kVectorsPerLine> kFrame = [] {
  std::array<VectorBytes, kVectorsPerLine> frame{};
  for (std::size_t i = 0; i < kVectorSize * kVectorsPerLine; ++i) {
    frame[i / kVectorSize][i % kVectorSize] = std::array{'0', 'x', '\0', '\0', ','}[i % 5];
  }
  return frame;
}();

// For each vector of a line, the digit that goes to each place, counted from the first digit of its
// source (kFirstDigits). The shuffle turns a byte with its high bit set into a zero.
constexpr std::array<std::size_t, kVectorsPerLine> kFirstDigits = {0, 0, 12, 16, 16};
constexpr std::array<VectorBytes, kVectorsPerLine> kPlaces = [] {
  std::array<VectorBytes, kVectorsPerLine> places{};
  for (std::size_t i = 0; i < kVectorSize * kVectorsPerLine; ++i) {
    const std::size_t digit = i / kDumpItemSize * 2 + (i % kDumpItemSize == 3 ? 1 : 0);
    const bool isDigit = i % kDumpItemSize == 2 || i % kDumpItemSize == 3;
    places[i / kVectorSize][i % kVectorSize] =
        isDigit ? static_cast<char>(digit - kFirstDigits[i / kVectorSize])
                : static_cast<char>(-128);
  }
  return places;
}();

// Loads sixteen bytes into both halves.
[[gnu::target("avx2")]] __m256i LoadTwice(const void* bytes) noexcept {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(bytes)));
}

// Writes two lines at once, one from each half of a vector.
[[gnu::target("avx2")]] void WriteTwoDumpLines(const std::uint8_t* bytes, char* text) noexcept {
  const __m256i digits = LoadTwice("0123456789abcdef");
  const __m256i lowBits = _mm256_set1_epi8(0x0F);
  const __m256i input = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  const __m256i high =
      _mm256_shuffle_epi8(digits, _mm256_and_si256(_mm256_srli_epi16(input, 4), lowBits));
  const __m256i low = _mm256_shuffle_epi8(digits, _mm256_and_si256(input, lowBits));
  const __m256i first = _mm256_unpacklo_epi8(high, low);
  const __m256i last = _mm256_unpackhi_epi8(high, low);
  // The third vector's digits, 12 to 19, come from both.
  const __m256i middle = _mm256_alignr_epi8(last, first, 12);
  const __m256i sources[kVectorsPerLine] = {first, first, middle, last, last};
  char* second = text + kDumpLineSize;
  for (std::size_t i = 0; i < kVectorsPerLine; ++i) {
    const __m256i placed = _mm256_or_si256(
        _mm256_shuffle_epi8(sources[i], LoadTwice(kPlaces[i].data())), LoadTwice(kFrame[i].data()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(text + i * kVectorSize),
                     _mm256_castsi256_si128(placed));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(second + i * kVectorSize),
                     _mm256_extracti128_si256(placed, 1));
  }
  text[kDumpLineSize - 1] = '\n';
  second[kDumpLineSize - 1] = '\n';
}

// REQUIRES: `lines` is even.
[[gnu::target("avx2")]] char* WriteDumpLinesWithVectors(const std::uint8_t* bytes,
                                                        std::size_t lines, char* text) noexcept {
  for (; lines > 0; lines -= 2) {
    WriteTwoDumpLines(bytes, text);
    bytes += 2 * kBytesPerDumpLine;
    text += 2 * kDumpLineSize;
  }
  return text;
}

#endif

}  // namespace

char* WriteDumpLinesPlainly(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept {
  for (; lines > 0; --lines) {
    text = WriteDumpItems(bytes, kBytesPerDumpLine - 1, text);
    text = WriteLastDumpItem(bytes[kBytesPerDumpLine - 1], text);
    *text++ = ',';
    *text++ = '\n';
    bytes += kBytesPerDumpLine;
  }
  return text;
}

char* WriteDumpLines(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept {
#if defined(VEXTREL_DUMP_WITH_VECTORS)
  if (__builtin_cpu_supports("avx2") != 0) {
    const std::size_t even = lines / 2 * 2;
    text = WriteDumpLinesWithVectors(bytes, even, text);
    bytes += even * kBytesPerDumpLine;
    lines -= even;
  }
#endif
  return WriteDumpLinesPlainly(bytes, lines, text);
}

}  // namespace vextrel
