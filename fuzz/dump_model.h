// What a dump of bytes looks like, in the plainest way.
#ifndef VEXTREL_FUZZ_DUMP_MODEL_H
#define VEXTREL_FUZZ_DUMP_MODEL_H

#include <cstddef>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

namespace vextrel_fuzz {

// Leaves the stream's numbers hexadecimal.
inline void WriteDump(std::ostream& out, std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out << "0x" << std::hex << std::setw(2) << std::setfill('0')
        << static_cast<unsigned>(static_cast<unsigned char>(bytes[i]));
    if (i + 1 < bytes.size()) {
      out << ",";
    }
    if (i % 16 == 15) {
      out << "\n";
    }
  }
}

inline std::string Dump(std::string_view bytes) {
  std::ostringstream out;
  WriteDump(out, bytes);
  return out.str();
}

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_DUMP_MODEL_H
