// The names that the call log has for GenTL values.
#ifndef VEXTREL_TESTS_CALLLOG_VALUE_NAMES_TABLES_H
#define VEXTREL_TESTS_CALLLOG_VALUE_NAMES_TABLES_H

#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

#include "calllog/rendered_text.h"

namespace vextrel_test {

struct NameRow {
  std::int32_t value;
  std::string_view name;
};

struct NameTable {
  std::string_view function;
  vextrel::RenderedText (*name)(std::int32_t value);
  std::string_view fallBackPrefix;
  std::vector<NameRow> rows;
};

inline std::ostream& operator<<(std::ostream& stream, const NameTable& table) {
  return stream << table.function;
}

[[nodiscard]] const std::vector<NameTable>& NameTables();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_CALLLOG_VALUE_NAMES_TABLES_H
