// SPDX-License-Identifier: MIT
// Text that a log must contain, with holes for addresses that only the proxy knows.
#ifndef VEXTREL_TESTS_MODEL_EXPECTED_TEXT_H
#define VEXTREL_TESTS_MODEL_EXPECTED_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test::model {

// How an unknown address looks.
enum class Hole {
  None,
  Pointer,   // sixteen upper-case hexadecimal digits
  Hex,       // one to sixteen lower-case hexadecimal digits without leading zeros
  Unsigned,  // the low 32 bits in decimal
};

class ExpectedText {
 public:
  void Append(std::string_view text);
  void Append(Hole hole);

  // Returns the number of leading characters of `actual` that are this text, each of its line feeds
  // written as `lineEnd`; npos if `actual` begins otherwise.
  [[nodiscard]] std::size_t Match(std::string_view actual, std::string_view lineEnd) const;
  // The text itself. REQUIRES: no holes.
  [[nodiscard]] const std::string& Text() const;
  // For failure messages: unprintable characters and holes are spelled out.
  [[nodiscard]] std::string Describe() const;

 private:
  struct Piece {
    Hole hole;
    std::string text;
  };

  std::vector<Piece> pieces_;
};

// Unprintable characters as \xNN; line feeds are both named and kept.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_EXPECTED_TEXT_H
