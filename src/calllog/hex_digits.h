// SPDX-License-Identifier: MIT
// A number as sixteen hexadecimal digits, which every pointer in the log is.
//
// Both functions write the same sixteen characters to `text`, and are thread-safe.
#ifndef VEXTREL_CALLLOG_HEX_DIGITS_H
#define VEXTREL_CALLLOG_HEX_DIGITS_H

#include <cstddef>
#include <cstdint>

#if defined(__x86_64__) || defined(_M_X64)
#include <emmintrin.h>
#define VEXTREL_HEX_WITH_VECTORS 1
#endif

namespace vextrel {

inline constexpr std::size_t kHex16Size = 16;

// Pads with zeros. `ten` is the digit for ten, 'A' or 'a'.
inline void WriteHex16Plainly(std::uint64_t value, char ten, char* text) noexcept {
  for (std::size_t i = 0; i < kHex16Size; ++i) {
    const auto digit = static_cast<unsigned>((value >> (60 - 4 * i)) & 0xFU);
    text[i] = static_cast<char>(digit < 10 ? '0' + digit : static_cast<unsigned>(ten) - 10 + digit);
  }
}

// The same, with SSE2 on x86-64, where every processor has it.
inline void WriteHex16(std::uint64_t value, char ten, char* text) noexcept {
#if defined(VEXTREL_HEX_WITH_VECTORS)
  // The first digit is that of the highest bits, so reverse the bytes.
  value = (value >> 32) | (value << 32);
  value = ((value >> 16) & 0x0000FFFF0000FFFFU) | ((value & 0x0000FFFF0000FFFFU) << 16);
  value = ((value >> 8) & 0x00FF00FF00FF00FFU) | ((value & 0x00FF00FF00FF00FFU) << 8);
  const __m128i bytes = _mm_cvtsi64_si128(static_cast<long long>(value));
  const __m128i lowBits = _mm_set1_epi8(0x0F);
  const __m128i high = _mm_and_si128(_mm_srli_epi16(bytes, 4), lowBits);
  const __m128i digits = _mm_unpacklo_epi8(high, _mm_and_si128(bytes, lowBits));
  const __m128i aboveNine = _mm_cmpgt_epi8(digits, _mm_set1_epi8(9));
  const __m128i gap = _mm_set1_epi8(static_cast<char>(ten - '0' - 10));
  _mm_storeu_si128(
      reinterpret_cast<__m128i*>(text),
      _mm_add_epi8(_mm_add_epi8(digits, _mm_set1_epi8('0')), _mm_and_si128(aboveNine, gap)));
#else
  WriteHex16Plainly(value, ten, text);
#endif
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_HEX_DIGITS_H
