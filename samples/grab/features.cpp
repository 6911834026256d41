#include "features.h"

#include <charconv>
#include <string>

namespace grab {
namespace {

[[nodiscard]] std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// The text from the node's name up to the next node's name.
[[nodiscard]] std::string_view FindNode(std::string_view description, std::string_view name) {
  constexpr std::string_view kNameAttribute = " Name=\"";
  const std::string wanted = std::string(kNameAttribute) + std::string(name) + "\"";
  const std::size_t begin = description.find(wanted);
  if (begin == std::string_view::npos) {
    return {};
  }
  const std::size_t end = description.find(kNameAttribute, begin + wanted.size());
  return description.substr(begin, end - begin);
}

// The text of the node's first child element of that name.
[[nodiscard]] std::string_view ChildText(std::string_view node, std::string_view element) {
  const std::string opening = "<" + std::string(element) + ">";
  const std::size_t tag = node.find(opening);
  if (tag == std::string_view::npos) {
    return {};
  }
  const std::string_view rest = node.substr(tag + opening.size());
  return Trim(rest.substr(0, rest.find('<')));
}

[[nodiscard]] std::optional<std::uint64_t> ParseNumber(std::string_view text) {
  constexpr int kDecimal = 10;
  constexpr int kHexadecimal = 16;
  int base = kDecimal;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = kHexadecimal;
  }
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value, base);
  if (error != std::errc{} || last != end) {
    return std::nullopt;
  }
  return value;
}

[[nodiscard]] std::size_t ShiftOf(const Register& layout, std::size_t index) {
  constexpr std::size_t kBitsPerByte = 8;
  return kBitsPerByte * (layout.bigEndian ? layout.length - 1 - index : index);
}

}  // namespace

std::optional<Register> FindRegister(std::string_view description, std::string_view feature) {
  // A feature rarely stands more than two nodes before its register; the bound ends circles.
  constexpr int kMaxDepth = 4;
  std::string_view node = FindNode(description, feature);
  for (int depth = 0; depth < kMaxDepth; ++depth) {
    if (const auto address = ParseNumber(ChildText(node, "Address"))) {
      Register found;
      found.address = *address;
      found.length = ParseNumber(ChildText(node, "Length")).value_or(found.length);
      found.bigEndian = ChildText(node, "Endianess") == "BigEndian";
      if (found.length == 0 || found.length > kMaxRegisterLength) {
        return std::nullopt;
      }
      return found;
    }
    const std::string_view next = ChildText(node, "pValue");
    if (next.empty()) {
      break;
    }
    node = FindNode(description, next);
  }
  return std::nullopt;
}

std::uint64_t FindCommandValue(std::string_view description, std::string_view feature) {
  return ParseNumber(ChildText(FindNode(description, feature), "CommandValue")).value_or(1);
}

std::uint64_t DecodeRegister(const Register& layout, const RegisterBytes& bytes) {
  std::uint64_t value = 0;
  for (std::size_t index = 0; index < layout.length; ++index) {
    value |= std::uint64_t{bytes[index]} << ShiftOf(layout, index);
  }
  return value;
}

RegisterBytes EncodeRegister(const Register& layout, std::uint64_t value) {
  RegisterBytes bytes{};
  for (std::size_t index = 0; index < layout.length; ++index) {
    bytes[index] = static_cast<std::uint8_t>(value >> ShiftOf(layout, index));
  }
  return bytes;
}

}  // namespace grab
