// SPDX-License-Identifier: MIT
// Names of values, read back, and the names that newer versions of GenTL gave to values that the
// log calls unknown.
#ifndef VEXTREL_PROGRAM_READING_VALUE_READING_H
#define VEXTREL_PROGRAM_READING_VALUE_READING_H

#include <cstdint>
#include <string>
#include <string_view>

#include "calllog/value_tables.h"
#include "gentl/gentl.h"

namespace vextrel::program {

// The value of a result's name. Returns false iff `name` is none.
[[nodiscard]] bool ReadResult(std::string_view name, GC_ERROR& result) noexcept;

// The result's name, a newer one where the log has none. "GC_ERROR(-1500)" if nobody has one.
[[nodiscard]] std::string_view ResultName(GC_ERROR result, std::string& storage);

// The name that stands in the log, or the newer one of a value that the log calls unknown. Where
// there is none, too, the text as it is.
[[nodiscard]] std::string_view NewestName(std::string_view name, const ValueTable* table) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_VALUE_READING_H
