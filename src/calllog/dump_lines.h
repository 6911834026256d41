// The full lines of a byte dump, sixteen bytes each.
//
// All functions read only what they are told to, and are thread-safe. The two that write lines make
// the same text.
#ifndef VEXTREL_CALLLOG_DUMP_LINES_H
#define VEXTREL_CALLLOG_DUMP_LINES_H

#include <cstddef>
#include <cstdint>

namespace vextrel {

inline constexpr std::size_t kBytesPerDumpLine = 16;
inline constexpr std::size_t kDumpItemSize = 5;  // "0x0a,"
inline constexpr std::size_t kDumpItemRoom = 8;  // what writing one may overwrite
inline constexpr std::size_t kDumpLineSize = kBytesPerDumpLine * kDumpItemSize + 1;

// Writes `count` items, each with its comma, and returns where they end. May write up to three
// characters behind that, where another item belongs: copying eight at once is cheaper.
char* WriteDumpItems(const std::uint8_t* bytes, std::size_t count, char* text) noexcept;

// Writes one item without its comma, and returns where it ends.
char* WriteLastDumpItem(std::uint8_t byte, char* text) noexcept;

// Writes `lines` lines of sixteen items, each item with its comma and each line with its line feed,
// and returns where they end. Takes the fastest way that the processor knows.
char* WriteDumpLines(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept;

// The same in the way that every processor knows.
char* WriteDumpLinesPlainly(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept;

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_DUMP_LINES_H
