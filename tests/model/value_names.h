// SPDX-License-Identifier: MIT
// The names that the log gives to GenTL values: one table for each enumeration.
#ifndef VEXTREL_TESTS_MODEL_VALUE_NAMES_H
#define VEXTREL_TESTS_MODEL_VALUE_NAMES_H

#include <cstdint>
#include <span>
#include <string>

namespace vextrel_test::model {

struct ValueName {
  std::int32_t value;
  const char* name;
};

struct NameTable {
  const char* type;  // as in the text for a value without a name
  std::span<const ValueName> names;
  const NameTable* older = nullptr;  // where the other names are

  [[nodiscard]] const char* Find(std::int32_t value) const;
  [[nodiscard]] std::string NameOf(std::int32_t value) const;
};

extern const NameTable kGcErrors;
extern const NameTable kInfoDatatypes;
extern const NameTable kTlInfoCmds;
extern const NameTable kInterfaceInfoCmds;
extern const NameTable kDeviceInfoCmds;
extern const NameTable kDeviceAccessFlags;
extern const NameTable kDeviceAccessStatuses;
extern const NameTable kStreamInfoCmds;
extern const NameTable kBufferInfoCmds;
extern const NameTable kAcqStartFlags;
extern const NameTable kAcqStopFlags;
extern const NameTable kAcqQueueTypes;
extern const NameTable kUrlInfoCmds;
extern const NameTable kPortInfoCmds;
extern const NameTable kEventTypes;
extern const NameTable kEventInfoCmds;
extern const NameTable kEventDataInfoCmds;

// What the lines of the newer functions know, too.
extern const NameTable kNewerGcErrors;
extern const NameTable kNewerInfoDatatypes;
extern const NameTable kNewerBufferInfoCmds;
extern const NameTable kBufferPartInfoCmds;
extern const NameTable kPartDatatypes;
extern const NameTable kFlowInfoCmds;
extern const NameTable kSegmentInfoCmds;

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_VALUE_NAMES_H
