#include "session/windows_printf.h"

#include <cstddef>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace vextrel_test::session {
namespace {

std::string Digits(std::string_view conversion, std::uint64_t bits) {
  std::ostringstream stream;
  if (conversion == "p") {
    stream << std::hex << std::uppercase << std::setw(16) << std::setfill('0') << bits;
  } else if (conversion == "u" || conversion == "lu") {
    stream << static_cast<std::uint32_t>(bits);
  } else if (conversion == "d") {
    stream << static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
  } else if (conversion == "x") {
    stream << std::hex << static_cast<std::uint32_t>(bits);
  } else if (conversion == "llx") {
    stream << std::hex << bits;
  } else {
    throw std::logic_error("no such conversion: " + std::string(conversion));
  }
  return stream.str();
}

std::string TextOf(const Value& value) {
  switch (value.kind) {
    case Value::Kind::Text:
      return value.text.c_str();
    case Value::Kind::Address:
      return value.bits == 0
                 ? "(null)"
                 : reinterpret_cast<const char*>(static_cast<std::uintptr_t>(value.bits));
    default:
      return std::to_string(value.bits);
  }
}

Hole HoleOf(std::string_view conversion) {
  if (conversion == "p") {
    return Hole::Pointer;
  }
  return conversion == "llx" ? Hole::Hex : Hole::Unsigned;
}

}  // namespace

ExpectedText Print(std::string_view format, const std::vector<Value>& values) {
  ExpectedText text;
  std::size_t used = 0;
  while (!format.empty()) {
    const std::size_t literal = format.find('%');
    text.Append(format.substr(0, literal));
    if (literal == std::string_view::npos) {
      break;
    }
    format.remove_prefix(literal + 1);
    const std::string_view conversion = format.substr(0, format.find_first_of("spudx") + 1);
    format.remove_prefix(conversion.size());
    const Value value = used < values.size() ? values[used] : Value::Number(0);
    ++used;
    if (conversion == "s") {
      text.Append(TextOf(value));
    } else if (value.kind == Value::Kind::Text) {
      text.Append(HoleOf(conversion));
    } else {
      text.Append(Digits(conversion, value.bits));
    }
  }
  if (used < values.size()) {
    throw std::logic_error("more values than conversions: " + std::string(format));
  }
  return text;
}

}  // namespace vextrel_test::session
