// SPDX-License-Identifier: MIT
// The camera's description and registers, behind its port.
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <iostream>
#include <string_view>

#include "session.h"

namespace grab {
namespace {

using namespace std::string_view_literals;

using RegisterBytes = std::array<std::uint8_t, sizeof(std::uint64_t)>;

// Parses the whole text as a number. A prefix "0x" makes it hexadecimal.
[[nodiscard]] std::optional<std::uint64_t> ParseNumber(std::string_view text, int base) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value, base);
  return error == std::errc{} && last == end ? std::optional(value) : std::nullopt;
}

// Returns the text from the node's name up to the next node's name.
[[nodiscard]] std::string_view FindNode(std::string_view description, std::string_view name) {
  constexpr std::string_view nameAttribute = " Name=\"";
  const std::string wanted = std::string(nameAttribute) + std::string(name) + "\"";
  const std::size_t begin = description.find(wanted);
  if (begin == std::string_view::npos) {
    return {};
  }
  return description.substr(begin, description.find(nameAttribute, begin + wanted.size()) - begin);
}

// Returns the trimmed text of the node's first child element of that name.
[[nodiscard]] std::string_view ChildText(std::string_view node, std::string_view element) {
  const std::string opening = "<" + std::string(element) + ">";
  const std::size_t tag = node.find(opening);
  if (tag == std::string_view::npos) {
    return {};
  }
  constexpr std::string_view blanks = " \t\r\n";
  std::string_view text = node.substr(tag + opening.size());
  text = text.substr(0, text.find('<'));
  text = text.substr(0, text.find_last_not_of(blanks) + 1);
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

[[nodiscard]] unsigned ShiftOf(const Register& layout, std::size_t index) {
  return static_cast<unsigned>(8 * (layout.bigEndian ? layout.length - 1 - index : index));
}

[[nodiscard]] std::uint64_t Decode(const Register& layout, const RegisterBytes& bytes) {
  std::uint64_t value = 0;
  for (std::size_t index = 0; index < layout.length; ++index) {
    value |= std::uint64_t{bytes[index]} << ShiftOf(layout, index);
  }
  return value;
}

// Where a description lies in the camera: "local:NAME;ADDRESS;SIZE" with hexadecimal numbers, and
// perhaps an option such as "?SchemaVersion=1.1.0". Returns address and size.
[[nodiscard]] std::pair<std::uint64_t, std::size_t> ParseLocalUrl(const std::string& url) {
  constexpr std::string_view scheme = "local:";
  const auto lower = [](unsigned char letter) { return std::tolower(letter); };
  if (!std::ranges::equal(url.substr(0, scheme.size()), scheme, {}, lower)) {
    throw Error("The description is not in the device but at '" + url + "'.");
  }
  const std::string_view rest = std::string_view(url).substr(0, url.find('?'));
  const std::size_t second = rest.rfind(';');
  const std::size_t first = second == 0 ? second : rest.rfind(';', second - 1);
  if (first != std::string_view::npos && first < second) {
    // A description is some hundred kilobytes; anything far beyond is a mistake in the URL.
    constexpr std::size_t maxSize = std::size_t{64} << 20U;
    const auto address = ParseNumber(rest.substr(first + 1, second - first - 1), 16);
    const auto size = ParseNumber(rest.substr(second + 1), 16);
    if (address && size && *size != 0 && *size <= maxSize) {
      return {*address, static_cast<std::size_t>(*size)};
    }
  }
  throw Error("The description's URL '" + url + "' cannot be understood.");
}

}  // namespace

Camera::Camera(const Producer& producer, PORT_HANDLE port) : gentl_(producer), port_(port) {
  ReportPort();
  description_ = ReadDescription();
}

void Camera::ReportPort() const {
  const auto text = [&](PORT_INFO_CMD command) {
    return OrDash(gentl_.GCGetPortInfo.Text(port_, command));
  };
  const auto number = [&](PORT_INFO_CMD command) {
    return OrDash(gentl_.GCGetPortInfo.Number(port_, command));
  };
  const std::string littleEndian = number(PORT_INFO_LITTLE_ENDIAN);
  std::cout << "Port " << text(PORT_INFO_PORTNAME) << " of module " << text(PORT_INFO_MODULE)
            << ", readable " << number(PORT_INFO_ACCESS_READ) << ", writable "
            << number(PORT_INFO_ACCESS_WRITE) << ", little-endian " << littleEndian << '\n';
}

// Returns an empty text if the description is compressed.
std::string Camera::ReadDescription() const {
  std::uint32_t count = 0;
  static_cast<void>(gentl_.GCGetNumPortURLs.IfOffered(port_, &count));
  const std::string url = gentl_.GCGetPortURL.Id(port_);
  const auto version = [&](URL_INFO_CMD command) {
    return OrDash(gentl_.GCGetPortURLInfo.Number(port_, 0U, command));
  };
  std::cout << "Description " << url << ", schema " << version(URL_INFO_SCHEMA_VER_MAJOR) << '.'
            << version(URL_INFO_SCHEMA_VER_MINOR) << ", file " << version(URL_INFO_FILE_VER_MAJOR)
            << '.' << version(URL_INFO_FILE_VER_MINOR) << '.' << version(URL_INFO_FILE_VER_SUBMINOR)
            << '\n';

  const auto [address, length] = ParseLocalUrl(url);
  std::string description(length, '\0');
  std::size_t size = length;
  gentl_.GCReadPort(port_, address, description.data(), &size);
  description.resize(std::min(size, length));
  const bool readable = description.find('<') != std::string::npos &&
                        !description.starts_with("PK");  // The mark of a ZIP file.
  std::cout << "Description read, " << description.size() << " bytes"
            << (readable ? "" : ", compressed: no registers are looked up in it") << '\n';
  return readable ? description : std::string();
}

std::optional<Register> Camera::FindRegister(const char* feature) const {
  // A register is rarely more than two nodes behind its feature; the limit stops cycles.
  constexpr int maxDepth = 4;
  std::string_view node = FindNode(description_, feature);
  for (int depth = 0; depth < maxDepth; ++depth) {
    if (const auto address = ParseNumber(ChildText(node, "Address"), 10)) {
      Register found;
      found.address = *address;
      found.length = ParseNumber(ChildText(node, "Length"), 10).value_or(found.length);
      found.bigEndian = ChildText(node, "Endianess") == "BigEndian"sv;
      return found.length >= 1 && found.length <= sizeof(RegisterBytes) ? std::optional(found)
                                                                        : std::nullopt;
    }
    const std::string_view next = ChildText(node, "pValue");
    if (next.empty()) {
      break;
    }
    node = FindNode(description_, next);
  }
  return std::nullopt;
}

std::uint64_t Camera::ReadRegister(const Register& source) const {
  RegisterBytes bytes{};
  std::size_t size = source.length;
  gentl_.GCReadPort(port_, source.address, bytes.data(), &size);
  return Decode(source, bytes);
}

void Camera::WriteRegister(const Register& target, std::uint64_t value) const {
  RegisterBytes bytes{};
  for (std::size_t index = 0; index < target.length; ++index) {
    bytes[index] = static_cast<std::uint8_t>(value >> ShiftOf(target, index));
  }
  std::size_t size = target.length;
  gentl_.GCWritePort(port_, target.address, bytes.data(), &size);
}

std::optional<std::uint64_t> Camera::Read(const char* feature) const {
  const auto source = FindRegister(feature);
  return source ? std::optional(ReadRegister(*source)) : std::nullopt;
}

void Camera::Write(const char* feature, std::uint64_t value) const {
  if (const auto target = FindRegister(feature)) {
    WriteRegister(*target, value);
  }
}

void Camera::Execute(const char* command) const {
  Write(command,
        ParseNumber(ChildText(FindNode(description_, command), "CommandValue"), 10).value_or(1));
}

void Camera::ReadAndWriteSize() const {
  const auto width = FindRegister("Width");
  const auto height = FindRegister("Height");
  if (!width || !height) {
    std::cout << "Registers - (the description names none for Width and Height)\n";
    return;
  }
  const std::uint64_t widthValue = ReadRegister(*width);
  std::cout << "Register " << Hex(width->address) << ": Width " << widthValue << '\n';
  std::cout << "Register " << Hex(height->address) << ": Height " << ReadRegister(*height) << '\n';

  std::array<RegisterBytes, 2> bytes{};
  std::array<PORT_REGISTER_STACK_ENTRY, 2> entries{
      {{width->address, bytes[0].data(), width->length},
       {height->address, bytes[1].data(), height->length}}};
  std::size_t count = entries.size();
  const bool offered = gentl_.GCReadPortStacked.IfOffered(port_, entries.data(), &count);
  std::cout << "Registers in one call: "
            << (offered ? Decode(*width, bytes[0]) : ReadRegister(*width)) << " x "
            << (offered ? Decode(*height, bytes[1]) : ReadRegister(*height)) << '\n';

  WriteRegister(*width, widthValue);
  std::cout << "Register " << Hex(width->address) << ": Width " << widthValue << " written back\n";
}

}  // namespace grab
