// SPDX-License-Identifier: MIT
#include "model/rendering.h"

#include <cmath>
#include <cstring>
#include <iomanip>
#include <sstream>

namespace vextrel_test::model {
namespace {

template <typename T>
T Read(const void* memory) {
  T value;
  std::memcpy(&value, memory, sizeof value);
  return value;
}

template <typename T>
std::string Shown(T value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

// Some libraries' streams lose the sign of a NaN, which printf shows.
std::string Fraction(double value) {
  if (std::isnan(value)) {
    return std::signbit(value) ? "-nan" : "nan";
  }
  return Shown(value);
}

}  // namespace

std::string ShowAddress(const void* address) {
  std::ostringstream stream;
  stream << "0x" << std::hex << std::uppercase << std::setw(16) << std::setfill('0')
         << std::uint64_t{reinterpret_cast<std::uintptr_t>(address)};
  return stream.str();
}

std::string RenderInfo(std::int32_t type, const void* buffer) {
  if (type == 2) {
    return "STRINGLIST";
  }
  if (type < 0 || type > 14) {
    return "(Unknown INFO_DATATYPE: " + std::to_string(type) + ")";
  }
  if (buffer == nullptr) {
    return "NULL";
  }
  const char* text = static_cast<const char*>(buffer);
  switch (type) {
    case 1:
      return std::string("'") + text + "'";
    case 3:
      return Shown(Read<std::int16_t>(buffer));
    case 4:
      return Shown(Read<std::uint16_t>(buffer));
    case 5:
    case 7:
      return Shown(Read<std::int32_t>(buffer));
    case 6:
    case 8:
    case 14:
      return Shown(Read<std::uint32_t>(buffer));
    case 9:
      return Fraction(Read<double>(buffer));
    case 11:
      return *text != 0 ? "1" : "0";
    case 12:
      return Shown(Read<std::uint64_t>(buffer));
    case 13:
      return std::string("0x") + text + "->(" + *text + ")";
    default:
      return ShowAddress(buffer);
  }
}

std::string RenderSlot(const void* const* slot) {
  if (slot == nullptr) {
    return "NULL";
  }
  if (*slot == nullptr) {
    return ShowAddress(static_cast<const void*>(slot)) + "(NULL)";
  }
  return ShowAddress(static_cast<const void*>(slot)) + " (" + ShowAddress(*slot) + ")";
}

std::string RenderDump(const void* data, std::uint64_t size) {
  if (data == nullptr) {
    return "";
  }
  std::ostringstream stream;
  for (std::uint64_t i = 0; i < size; ++i) {
    stream << "0x" << std::hex << std::setw(2) << std::setfill('0')
           << static_cast<unsigned>(static_cast<const unsigned char*>(data)[i]);
    if (i < size - 1) {
      stream << ",";
    }
    if (i % 16 == 15) {
      stream << "\n";
    }
  }
  return stream.str();
}

std::string RenderPortData(const PORT_REGISTER_STACK_ENTRY* entries, std::size_t count) {
  // One stream, which is never set back to decimal, makes the whole text.
  std::ostringstream stream;
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(static_cast<std::uint32_t>(count)); ++i) {
    const PORT_REGISTER_STACK_ENTRY& entry = entries[i];
    stream << "Address[" << i << "], 0x" << std::hex << std::setw(16) << std::setfill('0')
           << entry.Address << "->(Buffer='" << RenderDump(entry.pBuffer, entry.Size)
           << "'), iSize=" << entry.Size << ";";
  }
  return stream.str();
}

}  // namespace vextrel_test::model
