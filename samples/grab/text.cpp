#include "text.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>
#include <utility>

namespace grab {
namespace {

constexpr std::array<std::pair<GC_ERROR, std::string_view>, 16> kErrorNames{{
    {GC_ERR_ERROR, "GC_ERR_ERROR"},
    {GC_ERR_NOT_INITIALIZED, "GC_ERR_NOT_INITIALIZED"},
    {GC_ERR_NOT_IMPLEMENTED, "GC_ERR_NOT_IMPLEMENTED"},
    {GC_ERR_RESOURCE_IN_USE, "GC_ERR_RESOURCE_IN_USE"},
    {GC_ERR_ACCESS_DENIED, "GC_ERR_ACCESS_DENIED"},
    {GC_ERR_INVALID_HANDLE, "GC_ERR_INVALID_HANDLE"},
    {GC_ERR_INVALID_ID, "GC_ERR_INVALID_ID"},
    {GC_ERR_NO_DATA, "GC_ERR_NO_DATA"},
    {GC_ERR_INVALID_PARAMETER, "GC_ERR_INVALID_PARAMETER"},
    {GC_ERR_IO, "GC_ERR_IO"},
    {GC_ERR_TIMEOUT, "GC_ERR_TIMEOUT"},
    {GC_ERR_ABORT, "GC_ERR_ABORT"},
    {GC_ERR_INVALID_BUFFER, "GC_ERR_INVALID_BUFFER"},
    {GC_ERR_NOT_AVAILABLE, "GC_ERR_NOT_AVAILABLE"},
    {GC_ERR_INVALID_ADDRESS, "GC_ERR_INVALID_ADDRESS"},
    {GC_ERR_CUSTOM_ID, "GC_ERR_CUSTOM_ID"},
}};

}  // namespace

std::string Hex(std::uint64_t value, int digits) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setw(digits) << std::setfill('0') << value;
  return text.str();
}

std::string Hex(const void* handle) {
  constexpr int kPointerDigits = 16;
  return Hex(reinterpret_cast<std::uintptr_t>(handle), kPointerDigits);
}

std::string OrDash(const std::optional<std::string>& text) {
  return text.value_or("-");
}

std::string OrDash(const std::optional<std::uint64_t>& number) {
  return number ? std::to_string(*number) : "-";
}

std::string ErrorText(GC_ERROR error) {
  const auto found =
      std::ranges::find(kErrorNames, error, [](const auto& entry) { return entry.first; });
  const std::string_view name = found != kErrorNames.end() ? found->second : "unknown error";
  return std::string(name) + " (" + std::to_string(error) + ")";
}

std::string_view AccessStatusText(std::uint64_t status) {
  switch (status) {
    case DEVICE_ACCESS_STATUS_READWRITE:
      return "read and write";
    case DEVICE_ACCESS_STATUS_READONLY:
      return "read only";
    case DEVICE_ACCESS_STATUS_NOACCESS:
      return "no access";
    default:
      return "unknown";
  }
}

}  // namespace grab
