// SPDX-License-Identifier: MIT
// Lists of entries in the newer functions' lines, as newer_rendering.h makes them:
// `Chunk[0]=(ChunkID=0x1, ChunkOffset=16, ChunkLength=8);Chunk[1]=(...); (and 3 more)`.
#ifndef VEXTREL_PROGRAM_READING_ENTRIES_H
#define VEXTREL_PROGRAM_READING_ENTRIES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vextrel::program {

// Refers to the text that it was parsed from.
struct Entry {
  static constexpr std::size_t kMostFields = 7;
  struct Field {
    std::string_view label;
    std::string_view value;
  };

  std::array<Field, kMostFields> fields;
  std::size_t count = 0;

  // The value with this label, or "".
  [[nodiscard]] std::string_view Find(std::string_view label) const noexcept;
};

struct Entries {
  std::vector<Entry> shown;
  std::uint64_t more = 0;  // that the log only counts
};

// Returns true iff all of `text` is such a list. "NULL" is none.
[[nodiscard]] bool ReadEntries(std::string_view text, Entries& entries);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_ENTRIES_H
