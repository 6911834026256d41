// SPDX-License-Identifier: MIT
#include "reading/value_reading.h"

#include <charconv>
#include <iterator>

#include "calllog/newer_value_tables.h"

namespace vextrel::program {
namespace {

// The newer names of an older table's values, or null.
const NewerNames* NewerNamesOf(const ValueTable* table) noexcept {
  struct Pair {
    const ValueTable* table;
    const NewerNames* names;
  };
  static constexpr Pair pairs[] = {
      {&names::kInfoDatatype, &newer::kInfoDatatype},
      {&names::kTlInfoCmd, &newer::kTlInfoCmd},
      {&names::kDeviceInfoCmd, &newer::kDeviceInfoCmd},
      {&names::kStreamInfoCmd, &newer::kStreamInfoCmd},
      {&names::kBufferInfoCmd, &newer::kBufferInfoCmd},
      {&names::kUrlInfoCmd, &newer::kUrlInfoCmd},
      {&names::kEventType, &newer::kEventType},
  };
  for (const Pair& each : pairs) {
    if (each.table == table) {
      return each.names;
    }
  }
  return nullptr;
}

// `(Unknown X: 5)` behind its prefix.
bool ReadUnknown(std::string_view name, std::string_view prefix, std::int32_t& value) noexcept {
  if (!name.starts_with(prefix) || !name.ends_with(')')) {
    return false;
  }
  const char* end = name.data() + name.size() - 1;
  const auto [read, error] = std::from_chars(name.data() + prefix.size(), end, value);
  return error == std::errc() && read == end;
}

// The name of the value at that distance from the first one, or "".
std::string_view NameAt(const NewerNames& names, std::int64_t distance) noexcept {
  return distance >= 0 && distance < std::ssize(names.run)
             ? names.run[static_cast<std::size_t>(distance)]
             : std::string_view();
}

}  // namespace

bool ReadResult(std::string_view name, GC_ERROR& result) noexcept {
  if (name == names::kGcErrorSuccess) {
    result = GC_ERR_SUCCESS;
    return true;
  }
  for (std::size_t i = 0; i < std::size(names::kGcErrorRun); ++i) {
    if (names::kGcErrorRun[i] == name) {
      result = GC_ERR_ERROR - static_cast<GC_ERROR>(i);
      return true;
    }
  }
  for (std::size_t i = 0; i < newer::kGcError.run.size(); ++i) {
    if (newer::kGcError.run[i] == name) {
      result = newer::kGcError.first - static_cast<GC_ERROR>(i);
      return true;
    }
  }
  if (name == names::kGcErrorCustomId) {
    result = GC_ERR_CUSTOM_ID;
    return true;
  }
  return ReadUnknown(name, names::kGcErrorUnknown, result);
}

std::string_view ResultName(GC_ERROR result, std::string& storage) {
  if (result == GC_ERR_SUCCESS) {
    return names::kGcErrorSuccess;
  }
  if (result == GC_ERR_CUSTOM_ID) {
    return names::kGcErrorCustomId;
  }
  if (result <= GC_ERR_ERROR && result >= GC_ERR_INVALID_ADDRESS) {
    return names::kGcErrorRun[GC_ERR_ERROR - result];
  }
  const std::string_view newest =
      NameAt(newer::kGcError, std::int64_t{newer::kGcError.first} - result);
  if (!newest.empty()) {
    return newest;
  }
  storage = "GC_ERROR(" + std::to_string(result) + ")";
  return storage;
}

std::string_view NewestName(std::string_view name, const ValueTable* table) noexcept {
  std::int32_t value = 0;
  if (table == nullptr || !name.starts_with('(') || !ReadUnknown(name, table->unknown, value)) {
    return name;
  }
  const NewerNames* names = NewerNamesOf(table);
  if (names == nullptr) {
    return name;
  }
  const std::string_view newest = NameAt(*names, std::int64_t{value} - names->first);
  return newest.empty() ? name : newest;
}

}  // namespace vextrel::program
