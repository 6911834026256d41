// printf as the 64-bit Windows C runtime has it, for values that say what they are.
#ifndef VEXTREL_TESTS_SESSION_WINDOWS_PRINTF_H
#define VEXTREL_TESTS_SESSION_WINDOWS_PRINTF_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "session/expected_text.h"

namespace vextrel_test::session {

class Value {
 public:
  enum class Kind { Text, Address, Number };

  // A text of the proxy's own, shown up to its first NUL character. Where it lies is unknown.
  static Value Text(std::string text) { return {Kind::Text, 0, std::move(text)}; }
  // An address that the test knows. What lies there shows under %s, up to the first zero byte.
  static Value At(const volatile void* address) {
    return {Kind::Address, reinterpret_cast<std::uintptr_t>(address), {}};
  }
  static Value Number(std::uint64_t bits) { return {Kind::Number, bits, {}}; }
  static Value Signed(std::int64_t number) { return Number(static_cast<std::uint64_t>(number)); }
  // A text of the consumer's, or the proxy's "NULL" for none.
  static Value TextOrNull(const char* text) { return text != nullptr ? At(text) : Text("NULL"); }

  Kind kind;
  std::uint64_t bits;
  std::string text;

 private:
  Value(Kind kindOfValue, std::uint64_t bitsOfValue, std::string textOfValue)
      : kind(kindOfValue), bits(bitsOfValue), text(std::move(textOfValue)) {}
};

// The values fill the conversions in order, whatever they were meant for; conversions behind the
// last value get zero.
[[nodiscard]] ExpectedText Print(std::string_view format, const std::vector<Value>& values);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_WINDOWS_PRINTF_H
