// Byte dumps and port data written the plain way, into a stream, to compare with.
#ifndef VEXTREL_TESTS_CALLLOG_PORT_RENDERING_REFERENCE_H
#define VEXTREL_TESTS_CALLLOG_PORT_RENDERING_REFERENCE_H

#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "calllog/port_rendering.h"
#include "gentl/gentl.h"

namespace vextrel_test {

using Bytes = std::vector<std::uint8_t>;

// Everything of the dump, the final NUL included.
[[nodiscard]] inline std::string DumpOf(const void* pBuffer, std::size_t iSize) {
  return std::string(vextrel::RenderByteDump(pBuffer, iSize).view());
}

// 0, 1, 2 and so on.
[[nodiscard]] inline Bytes CountedBytes(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<std::uint8_t>(i);
  }
  return bytes;
}

[[nodiscard]] inline Bytes RandomBytes(std::size_t count) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(count + 1));
  Bytes bytes(count);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  return bytes;
}

[[nodiscard]] inline std::string ReferenceByteDump(const void* buffer, std::size_t size) {
  std::ostringstream stream;
  if (buffer != nullptr) {
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    for (std::size_t i = 0; i < size; ++i) {
      stream << "0x" << std::hex << std::setw(2) << std::setfill('0') << unsigned{bytes[i]};
      if (i < size - 1) {
        stream << ",";
      }
      if (i % 16 == 15) {
        stream << "\n";
      }
    }
  }
  stream << '\0';
  return stream.str();
}

[[nodiscard]] inline std::string ReferencePortData(const PORT_REGISTER_STACK_ENTRY* entries,
                                                   std::size_t count) {
  std::ostringstream stream;
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(static_cast<std::uint32_t>(count)); ++i) {
    const PORT_REGISTER_STACK_ENTRY& entry = entries[i];
    std::string dump = ReferenceByteDump(entry.pBuffer, entry.Size);
    dump.pop_back();
    stream << "Address[" << i << "], 0x" << std::hex << std::setw(16) << std::setfill('0')
           << entry.Address << "->(Buffer='" << dump << "'), iSize=" << entry.Size << ";";
  }
  stream << '\0';
  return stream.str();
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_CALLLOG_PORT_RENDERING_REFERENCE_H
