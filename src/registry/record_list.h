// SPDX-License-Identifier: MIT
// The ordered child lists of the handle registry's records.
//
// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
#ifndef VEXTREL_REGISTRY_RECORD_LIST_H
#define VEXTREL_REGISTRY_RECORD_LIST_H

#include <algorithm>
#include <log4cpp/Category.hh>
#include <memory>
#include <vector>

namespace vextrel {

// Records in the order they were added. Kept: 52. Emptying or destroying a list forgets its records
// and leaves them allocated, hence the plain pointers; only TakeRecord gives one up.
template <typename Record>
using RecordList = std::vector<Record*>;

// Returns the first record with that handle, or null.
template <typename Record>
[[nodiscard]] Record* FindRecord(const RecordList<Record>& records, const void* handle) {
  const auto found = std::ranges::find(records, handle, &Record::handle);
  return found == records.end() ? nullptr : *found;
}

// Appends a new record. Returns false, and does nothing, if there's already one with that handle.
template <typename Record>
[[nodiscard]] bool AddRecord(RecordList<Record>& records, void* handle, log4cpp::Category* logger) {
  if (FindRecord(records, handle) != nullptr) {
    return false;
  }
  auto record = std::make_unique<Record>(handle, logger);
  records.push_back(record.get());
  record.release();  // NOLINT(bugprone-unused-return-value): the list has it now.
  return true;
}

// Removes the first record with that handle from the list and returns it, or null if there's none.
template <typename Record>
[[nodiscard]] std::unique_ptr<Record> TakeRecord(RecordList<Record>& records, const void* handle) {
  const auto found = std::ranges::find(records, handle, &Record::handle);
  if (found == records.end()) {
    return nullptr;
  }
  std::unique_ptr<Record> record(*found);
  records.erase(found);
  return record;
}

// Calls `offer` with each record, in order, until it returns true. Returns true iff it did.
template <typename Record, typename Offer>
[[nodiscard]] bool OfferInOrder(const RecordList<Record>& records, Offer offer) {
  return std::ranges::any_of(records, [&](Record* record) { return offer(*record); });
}

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_RECORD_LIST_H
