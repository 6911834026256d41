// SPDX-License-Identifier: MIT
// The tests' one list of the interface's functions.
//
// A new function gets a row. Everything that treats all functions alike follows: the scripted
// target, and every test that visits them or calls them uniformly.
//
// Compiled with VEXTREL_EXTENDED, the tests are about the extended module, and the list has the
// newer functions, too. A program has one list or the other in all its parts.
#ifndef VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H
#define VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gentl/gentl.h"
#include "gentl/gentl_newer.h"

// FUNCTION(name, roles...): a Role for each argument, in order. The functions are in the order in
// which the proxy looks them up in a target.
#define VEXTREL_TEST_OLDER_FUNCTIONS(FUNCTION)                               \
  FUNCTION(GCGetInfo, Value, Type, Buffer, Size)                             \
  FUNCTION(GCGetLastError, Output, Buffer, Size)                             \
  FUNCTION(GCInitLib)                                                        \
  FUNCTION(GCCloseLib)                                                       \
  FUNCTION(TLOpen, Output)                                                   \
  FUNCTION(TLClose, Value)                                                   \
  FUNCTION(TLGetInfo, Value, Value, Type, Buffer, Size)                      \
  FUNCTION(TLGetNumInterfaces, Value, Output)                                \
  FUNCTION(TLGetInterfaceID, Value, Value, Buffer, Size)                     \
  FUNCTION(TLGetInterfaceInfo, Value, Text, Value, Type, Buffer, Size)       \
  FUNCTION(TLOpenInterface, Value, Text, Output)                             \
  FUNCTION(TLUpdateInterfaceList, Value, OptionalOutput, Value)              \
  FUNCTION(IFClose, Value)                                                   \
  FUNCTION(IFGetInfo, Value, Value, Type, Buffer, Size)                      \
  FUNCTION(IFGetNumDevices, Value, Output)                                   \
  FUNCTION(IFGetDeviceID, Value, Value, Buffer, Size)                        \
  FUNCTION(IFUpdateDeviceList, Value, OptionalOutput, Value)                 \
  FUNCTION(IFGetDeviceInfo, Value, Text, Value, Type, Buffer, Size)          \
  FUNCTION(IFOpenDevice, Value, Text, Value, OptionalOutput)                 \
  FUNCTION(DevClose, Value)                                                  \
  FUNCTION(DevGetInfo, Value, Value, Type, Buffer, Size)                     \
  FUNCTION(DevGetPort, Value, Output)                                        \
  FUNCTION(DevGetNumDataStreams, Value, Output)                              \
  FUNCTION(DevGetDataStreamID, Value, Value, Buffer, Size)                   \
  FUNCTION(DevOpenDataStream, Value, Text, Output)                           \
  FUNCTION(DSAnnounceBuffer, Value, Data, Value, Value, Output)              \
  FUNCTION(DSAllocAndAnnounceBuffer, Value, Value, Value, Output)            \
  FUNCTION(DSFlushQueue, Value, Value)                                       \
  FUNCTION(DSStartAcquisition, Value, Value, Value)                          \
  FUNCTION(DSStopAcquisition, Value, Value)                                  \
  FUNCTION(DSGetInfo, Value, Value, Type, Buffer, Size)                      \
  FUNCTION(DSGetBufferID, Value, Value, Output)                              \
  FUNCTION(DSClose, Value)                                                   \
  FUNCTION(DSRevokeBuffer, Value, Value, OptionalOutput, OptionalOutput)     \
  FUNCTION(DSQueueBuffer, Value, Value)                                      \
  FUNCTION(DSGetBufferInfo, Value, Value, Value, OptionalType, Buffer, Size) \
  FUNCTION(GCReadPort, Value, Value, Buffer, Size)                           \
  FUNCTION(GCWritePort, Value, Value, Data, Size)                            \
  FUNCTION(GCGetPortURL, Value, Buffer, Size)                                \
  FUNCTION(GCGetNumPortURLs, Value, Output)                                  \
  FUNCTION(GCGetPortInfo, Value, Value, Type, Buffer, Size)                  \
  FUNCTION(GCGetPortURLInfo, Value, Value, Value, Type, Buffer, Size)        \
  FUNCTION(GCReadPortStacked, Value, EntriesRead, Count)                     \
  FUNCTION(GCWritePortStacked, Value, EntriesWritten, Count)                 \
  FUNCTION(GCRegisterEvent, Value, Value, Output)                            \
  FUNCTION(GCUnregisterEvent, Value, Value)                                  \
  FUNCTION(EventGetData, Value, Buffer, Size, Value)                         \
  FUNCTION(EventGetDataInfo, Value, Data, Value, Value, Type, Buffer, Size)  \
  FUNCTION(EventGetInfo, Value, Value, Type, Buffer, Size)                   \
  FUNCTION(EventFlush, Value)                                                \
  FUNCTION(EventKill, Value)

#define VEXTREL_TEST_NEWER_FUNCTIONS(FUNCTION)                                                  \
  FUNCTION(DSGetBufferChunkData, Value, Value, Chunks, OptionalCount)                           \
  FUNCTION(IFGetParentTL, Value, OptionalOutput)                                                \
  FUNCTION(DevGetParentIF, Value, OptionalOutput)                                               \
  FUNCTION(DSGetParentDev, Value, OptionalOutput)                                               \
  FUNCTION(DSGetNumBufferParts, Value, Value, OptionalOutput)                                   \
  FUNCTION(DSGetBufferPartInfo, Value, Value, Value, Value, OptionalType, Buffer, OptionalSize) \
  FUNCTION(DSAnnounceCompositeBuffer, Value, Length, Segments, Sizes, Value, OptionalOutput)    \
  FUNCTION(DSGetBufferInfoStacked, Value, Value, Infos, Length)                                 \
  FUNCTION(DSGetBufferPartInfoStacked, Value, Value, PartInfos, Length)                         \
  FUNCTION(DSGetNumFlows, Value, OptionalOutput)                                                \
  FUNCTION(DSGetFlowInfo, Value, Value, Value, OptionalType, Buffer, OptionalSize)              \
  FUNCTION(DSGetNumBufferSegments, Value, Value, OptionalOutput)                                \
  FUNCTION(DSGetBufferSegmentInfo, Value, Value, Value, Value, OptionalType, Buffer, OptionalSize)

#if defined(VEXTREL_EXTENDED)
#define VEXTREL_TEST_FUNCTIONS(FUNCTION) \
  VEXTREL_TEST_OLDER_FUNCTIONS(FUNCTION) VEXTREL_TEST_NEWER_FUNCTIONS(FUNCTION)
#else
#define VEXTREL_TEST_FUNCTIONS(FUNCTION) VEXTREL_TEST_OLDER_FUNCTIONS(FUNCTION)
#endif

namespace vextrel_test {

// What an argument means to a consumer, which its C type alone does not say.
enum class Role : std::uint8_t {
  None,            // past the last argument
  Value,           // passed by value: a number, a handle, or an address only the target follows
  Text,            // a name passed in; may be null
  Data,            // bytes passed in; may be null
  Output,          // a variable the target fills in
  OptionalOutput,  // the same; may be null
  Type,            // the data type of Buffer, filled in by the target
  OptionalType,    // the same; may be null
  Buffer,          // room for an answer; null to ask for its size alone
  Size,            // of the Buffer or Data before it; passed in and filled in
  OptionalSize,    // the same; may be null
  EntriesRead,     // stacked accesses that read
  EntriesWritten,  // stacked accesses that write
  Count,           // of the entries before it; passed in and filled in
  OptionalCount,   // the same; may be null
  Chunks,          // room for a description of each chunk; may be null
  Segments,        // the addresses of a composite buffer's parts; may be null
  Sizes,           // their sizes; may be null
  Infos,           // stacked queries; may be null
  PartInfos,       // stacked queries about parts; may be null
  Length,          // of the lists of segments or queries; passed by value
};

inline constexpr std::size_t kMaxArguments = 7;

// Role::None past the last argument.
using Roles = std::array<Role, kMaxArguments>;

// A slot for each function, named like it: what a consumer calls, and what a scripted target plays.
struct GenTLFunctions {
#define VEXTREL_TEST_SLOT(name, ...) decltype(&::name) name = nullptr;
  VEXTREL_TEST_FUNCTIONS(VEXTREL_TEST_SLOT)
#undef VEXTREL_TEST_SLOT
};

// The functions of a library that is linked into the program.
[[nodiscard]] inline GenTLFunctions LinkedFunctions() {
  GenTLFunctions functions;
#define VEXTREL_TEST_LINK(name, ...) functions.name = &::name;
  VEXTREL_TEST_FUNCTIONS(VEXTREL_TEST_LINK)
#undef VEXTREL_TEST_LINK
  return functions;
}

inline constexpr std::size_t kFunctionCount = sizeof(GenTLFunctions) / sizeof(void*);

template <typename... Parameters>
consteval std::size_t CountParameters(
    GC_ERROR (GC_CALLTYPE* GenTLFunctions::* /*slot*/)(Parameters...)) {
  return sizeof...(Parameters);
}
consteval std::size_t CountRoles(const Roles& roles) {
  std::size_t count = 0;
  while (count < roles.size() && roles[count] != Role::None) {
    ++count;
  }
  return count;
}

// Calls visit(name, slot) or visit(name, slot, roles), whichever it takes, for every function in
// the order of the list. `slot` points to the function's member of GenTLFunctions.
template <typename Visit>
void ForEachFunction(Visit visit) {
  using enum Role;
  [[maybe_unused]] const auto visitOne = [&visit](const char* name, auto slot, const Roles& roles) {
    if constexpr (std::invocable<Visit&, const char*, decltype(slot), const Roles&>) {
      visit(name, slot, roles);
    } else {
      visit(name, slot);
    }
  };
#define VEXTREL_TEST_VISIT(name, ...)                                                        \
  static_assert(CountRoles({__VA_ARGS__}) == CountParameters(&GenTLFunctions::name),         \
                "The row of " #name " needs one role for each of the function's arguments"); \
  visitOne(#name, &GenTLFunctions::name, Roles{__VA_ARGS__});
  VEXTREL_TEST_FUNCTIONS(VEXTREL_TEST_VISIT)
#undef VEXTREL_TEST_VISIT
}

// In the order of the list, which is that of the slots in GenTLFunctions.
#define VEXTREL_TEST_NAME(name, ...) #name,
[[nodiscard]] inline std::vector<std::string> FunctionNames() {
  return {VEXTREL_TEST_FUNCTIONS(VEXTREL_TEST_NAME)};
}

// Those of either module, and of both, whichever the tests are about.
[[nodiscard]] inline std::vector<std::string> OlderFunctionNames() {
  return {VEXTREL_TEST_OLDER_FUNCTIONS(VEXTREL_TEST_NAME)};
}
[[nodiscard]] inline const std::vector<std::string>& NewerFunctionNames() {
  static const std::vector<std::string> names = {VEXTREL_TEST_NEWER_FUNCTIONS(VEXTREL_TEST_NAME)};
  return names;
}
[[nodiscard]] inline std::vector<std::string> AllFunctionNames() {
  return {VEXTREL_TEST_OLDER_FUNCTIONS(VEXTREL_TEST_NAME)
              VEXTREL_TEST_NEWER_FUNCTIONS(VEXTREL_TEST_NAME)};
}
#undef VEXTREL_TEST_NAME

// Whether the function came with GenTL 1.3 or later. A target that lacks one of these gets no line
// of its own, and the newer names stand in their lines.
[[nodiscard]] inline bool IsNewer(std::string_view name) {
  return std::ranges::find(NewerFunctionNames(), name) != NewerFunctionNames().end();
}

// Returns the name by which the log reports that a target doesn't export the function.
[[nodiscard]] inline std::string NameInMissingLine(const std::string& name) {
  return name == "EventGetData" ? "GEventGetData" : name;
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H
