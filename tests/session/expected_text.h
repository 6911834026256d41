// Text that a log must hold, with holes where it shows addresses that only the proxy knows.
#ifndef VEXTREL_TESTS_SESSION_EXPECTED_TEXT_H
#define VEXTREL_TESTS_SESSION_EXPECTED_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test::session {

// How an unknown address looks.
enum class Hole {
  None,
  Pointer,   // sixteen upper-case hexadecimal digits
  Hex,       // one to sixteen lower-case hexadecimal digits, no zero in front
  Unsigned,  // the low 32 bits in decimal
};

class ExpectedText {
 public:
  void Append(std::string_view text);
  void Append(Hole hole);
  void Append(const ExpectedText& text);

  // The number of characters of `actual`, read from its begin, that are this text as a text file of
  // this platform holds it; npos if they are something else.
  [[nodiscard]] std::size_t Match(std::string_view actual) const;
  // For reading: holes and unprintable characters are shown by name.
  [[nodiscard]] std::string Describe() const;
  [[nodiscard]] bool IsEmpty() const { return pieces_.empty(); }

 private:
  struct Piece {
    Hole hole;
    std::string text;
  };

  std::vector<Piece> pieces_;
};

// Unprintable characters by name, the ends of lines kept.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_EXPECTED_TEXT_H
