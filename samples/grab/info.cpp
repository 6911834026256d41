#include "info.h"

#include <array>
#include <cstring>
#include <vector>

namespace grab {
namespace {

using NumberBytes = std::array<char, sizeof(std::uint64_t)>;

template <typename T>
[[nodiscard]] std::uint64_t Decode(const NumberBytes& bytes) {
  T value{};
  std::memcpy(&value, bytes.data(), sizeof value);
  return static_cast<std::uint64_t>(value);
}

[[nodiscard]] std::uint64_t DecodeAs(INFO_DATATYPE type, const NumberBytes& bytes) {
  switch (type) {
    case INFO_DATATYPE_BOOL8:
      return Decode<std::uint8_t>(bytes);
    case INFO_DATATYPE_INT16:
      return Decode<std::int16_t>(bytes);
    case INFO_DATATYPE_UINT16:
      return Decode<std::uint16_t>(bytes);
    case INFO_DATATYPE_INT32:
      return Decode<std::int32_t>(bytes);
    case INFO_DATATYPE_UINT32:
      return Decode<std::uint32_t>(bytes);
    default:
      // The buffer was zeroed, so a shorter value of another type comes out right, too.
      return Decode<std::uint64_t>(bytes);
  }
}

}  // namespace

std::optional<std::string> ReadText(const GenTl& gentl, const char* function,
                                    const InfoQuery& query) {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  std::size_t size = 0;
  std::vector<char> buffer;
  GC_ERROR result = query(&type, nullptr, &size);
  if (result == GC_ERR_SUCCESS) {
    buffer.resize(size + 1);  // ends with NUL even if the producer's text does not
    result = query(&type, buffer.data(), &size);
  }
  if (MeansAbsent(result)) {
    return std::nullopt;
  }
  if (result != GC_ERR_SUCCESS) {
    throw Error(gentl.Describe(function, result) + ".");
  }
  return buffer.data();
}

std::optional<std::uint64_t> ReadNumber(const GenTl& gentl, const char* function,
                                        const InfoQuery& query) {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  NumberBytes bytes{};
  std::size_t size = bytes.size();
  const GC_ERROR result = query(&type, bytes.data(), &size);
  if (MeansAbsent(result)) {
    return std::nullopt;
  }
  if (result != GC_ERR_SUCCESS) {
    throw Error(gentl.Describe(function, result) + ".");
  }
  return DecodeAs(type, bytes);
}

}  // namespace grab
