#include "port.h"

#include <array>
#include <charconv>
#include <iostream>

#include "error.h"
#include "info.h"
#include "text.h"

namespace grab {
namespace {

// A description is some hundred kilobytes; anything far beyond is a mistake in the URL.
constexpr std::size_t kMaxDescriptionSize = std::size_t{64} << 20U;

[[nodiscard]] bool StartsWithLocal(std::string_view url) {
  constexpr std::string_view kScheme = "local:";
  if (url.size() < kScheme.size()) {
    return false;
  }
  for (std::size_t index = 0; index < kScheme.size(); ++index) {
    // Schemes come in any case; setting the bit makes letters lower case and leaves the colon.
    if (static_cast<char>(url[index] | 0x20) != kScheme[index]) {
      return false;
    }
  }
  return true;
}

[[nodiscard]] bool ParseHex(std::string_view text, std::uint64_t& value) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
  }
  constexpr int kBase = 16;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value, kBase);
  return error == std::errc{} && last == end;
}

}  // namespace

LocalUrl ParseLocalUrl(std::string_view url) {
  if (!StartsWithLocal(url)) {
    throw Error("The description is not in the device but at '" + std::string(url) + "'.");
  }
  // An option such as "?SchemaVersion=1.1.0" may follow.
  std::string_view rest = url.substr(url.find(':') + 1);
  rest = rest.substr(0, rest.find('?'));
  rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
  const std::size_t first = rest.find(';');
  const std::size_t second = rest.find(';', first == std::string_view::npos ? first : first + 1);
  LocalUrl local;
  std::uint64_t size = 0;
  if (second == std::string_view::npos ||
      !ParseHex(rest.substr(first + 1, second - first - 1), local.address) ||
      !ParseHex(rest.substr(second + 1), size) || size == 0 || size > kMaxDescriptionSize) {
    throw Error("The description's URL '" + std::string(url) + "' cannot be understood.");
  }
  local.fileName = rest.substr(0, first);
  local.size = static_cast<std::size_t>(size);
  return local;
}

void Port::PrintInfo() const {
  const auto text = [this](PORT_INFO_CMD command) {
    return OrDash(TextInfo(gentl, gentl.GCGetPortInfo, handle, command));
  };
  const auto number = [this](PORT_INFO_CMD command) {
    return NumberInfo(gentl, gentl.GCGetPortInfo, handle, command);
  };
  const auto littleEndian = number(PORT_INFO_LITTLE_ENDIAN);
  std::cout << "Port " << text(PORT_INFO_PORTNAME) << " of module " << text(PORT_INFO_MODULE)
            << ", readable " << OrDash(number(PORT_INFO_ACCESS_READ)) << ", writable "
            << OrDash(number(PORT_INFO_ACCESS_WRITE)) << ", little-endian " << OrDash(littleEndian)
            << '\n';
}

std::string Port::ReadDescription() const {
  std::uint32_t count = 0;
  const GC_ERROR counted = gentl.GCGetNumPortURLs(handle, &count);
  if (counted != GC_ERR_SUCCESS && !MeansAbsent(counted)) {
    throw Error(gentl.Describe(gentl.GCGetNumPortURLs.Name(), counted) + ".");
  }
  const std::string url = RequiredText(gentl, gentl.GCGetPortURL, handle);
  const auto version = [this](URL_INFO_CMD command) {
    constexpr std::uint32_t kFirst = 0;
    return OrDash(NumberInfo(gentl, gentl.GCGetPortURLInfo, handle, kFirst, command));
  };
  std::cout << "Description " << url << ", schema " << version(URL_INFO_SCHEMA_VER_MAJOR) << '.'
            << version(URL_INFO_SCHEMA_VER_MINOR) << ", file " << version(URL_INFO_FILE_VER_MAJOR)
            << '.' << version(URL_INFO_FILE_VER_MINOR) << '.' << version(URL_INFO_FILE_VER_SUBMINOR)
            << '\n';

  const LocalUrl local = ParseLocalUrl(url);
  std::string description(local.size, '\0');
  std::size_t size = description.size();
  gentl.Do(gentl.GCReadPort, handle, local.address, static_cast<void*>(description.data()), &size);
  description.resize(std::min(size, description.size()));
  const bool readable = description.find('<') != std::string::npos &&
                        !description.starts_with("PK");  // the mark of a ZIP file
  std::cout << "Description read, " << description.size() << " bytes"
            << (readable ? "" : ", compressed: no registers are looked up in it") << '\n';
  return readable ? description : std::string();
}

std::uint64_t Port::Read(const Register& source) const {
  RegisterBytes bytes{};
  std::size_t size = source.length;
  gentl.Do(gentl.GCReadPort, handle, source.address, static_cast<void*>(bytes.data()), &size);
  return DecodeRegister(source, bytes);
}

void Port::Write(const Register& target, std::uint64_t value) const {
  const RegisterBytes bytes = EncodeRegister(target, value);
  std::size_t size = target.length;
  gentl.Do(gentl.GCWritePort, handle, target.address, static_cast<const void*>(bytes.data()),
           &size);
}

std::vector<std::uint64_t> Port::ReadStacked(std::span<const Register> sources) const {
  std::vector<RegisterBytes> contents(sources.size());
  std::vector<PORT_REGISTER_STACK_ENTRY> entries;
  for (std::size_t index = 0; index < sources.size(); ++index) {
    entries.push_back({sources[index].address, contents[index].data(), sources[index].length});
  }
  std::size_t count = entries.size();
  const GC_ERROR result = gentl.GCReadPortStacked(handle, entries.data(), &count);
  if (result != GC_ERR_SUCCESS && !MeansAbsent(result)) {
    throw Error(gentl.Describe(gentl.GCReadPortStacked.Name(), result) + ".");
  }
  std::vector<std::uint64_t> values;
  for (std::size_t index = 0; index < sources.size(); ++index) {
    values.push_back(result == GC_ERR_SUCCESS ? DecodeRegister(sources[index], contents[index])
                                              : Read(sources[index]));
  }
  return values;
}

}  // namespace grab
