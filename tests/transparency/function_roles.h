// What the arguments of the 51 functions mean to a consumer, which their C types alone do not say.
#ifndef VEXTREL_TESTS_TRANSPARENCY_FUNCTION_ROLES_H
#define VEXTREL_TESTS_TRANSPARENCY_FUNCTION_ROLES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/gentl_functions.h"

namespace vextrel_test {

inline constexpr std::size_t kMaxArguments = 7;

enum class Role : std::uint8_t {
  None,            // behind the last argument
  Value,           // passed by value: a number, a handle, an address that only the target follows
  Text,            // a name that goes in; may be null
  Data,            // bytes that go in; may be null
  Output,          // a variable that comes out
  OptionalOutput,  // one that may be null
  Type,            // the data type of Buffer, which comes out
  OptionalType,    // one that may be null
  Buffer,          // room for an answer; null to ask for its size alone
  Size,            // of the Buffer or Data in front of it: goes in and comes out
  EntriesRead,     // stacked accesses whose data come out
  EntriesWritten,  // stacked accesses whose data go in
  Count,           // of the entries in front of it: goes in and comes out
};

using Roles = std::array<Role, kMaxArguments>;

struct FunctionRoles {
  std::string_view name;
  Roles roles;
};

inline constexpr auto kFunctionRoles = [] {
  using enum Role;
  return std::array<FunctionRoles, kFunctionCount>{{
      {"GCGetInfo", {Value, Type, Buffer, Size}},
      {"GCGetLastError", {Output, Buffer, Size}},
      {"GCInitLib", {}},
      {"GCCloseLib", {}},
      {"TLOpen", {Output}},
      {"TLClose", {Value}},
      {"TLGetInfo", {Value, Value, Type, Buffer, Size}},
      {"TLGetNumInterfaces", {Value, Output}},
      {"TLGetInterfaceID", {Value, Value, Buffer, Size}},
      {"TLGetInterfaceInfo", {Value, Text, Value, Type, Buffer, Size}},
      {"TLOpenInterface", {Value, Text, Output}},
      {"TLUpdateInterfaceList", {Value, OptionalOutput, Value}},
      {"IFClose", {Value}},
      {"IFGetInfo", {Value, Value, Type, Buffer, Size}},
      {"IFGetNumDevices", {Value, Output}},
      {"IFGetDeviceID", {Value, Value, Buffer, Size}},
      {"IFUpdateDeviceList", {Value, OptionalOutput, Value}},
      {"IFGetDeviceInfo", {Value, Text, Value, Type, Buffer, Size}},
      {"IFOpenDevice", {Value, Text, Value, OptionalOutput}},
      {"DevGetPort", {Value, Output}},
      {"DevGetNumDataStreams", {Value, Output}},
      {"DevGetDataStreamID", {Value, Value, Buffer, Size}},
      {"DevOpenDataStream", {Value, Text, Output}},
      {"DevGetInfo", {Value, Value, Type, Buffer, Size}},
      {"DevClose", {Value}},
      {"DSAnnounceBuffer", {Value, Data, Value, Value, Output}},
      {"DSAllocAndAnnounceBuffer", {Value, Value, Value, Output}},
      {"DSFlushQueue", {Value, Value}},
      {"DSStartAcquisition", {Value, Value, Value}},
      {"DSStopAcquisition", {Value, Value}},
      {"DSGetInfo", {Value, Value, Type, Buffer, Size}},
      {"DSGetBufferID", {Value, Value, Output}},
      {"DSClose", {Value}},
      {"DSRevokeBuffer", {Value, Value, OptionalOutput, OptionalOutput}},
      {"DSQueueBuffer", {Value, Value}},
      {"DSGetBufferInfo", {Value, Value, Value, OptionalType, Buffer, Size}},
      {"GCReadPort", {Value, Value, Buffer, Size}},
      {"GCWritePort", {Value, Value, Data, Size}},
      {"GCGetPortURL", {Value, Buffer, Size}},
      {"GCGetNumPortURLs", {Value, Output}},
      {"GCGetPortInfo", {Value, Value, Type, Buffer, Size}},
      {"GCGetPortURLInfo", {Value, Value, Value, Type, Buffer, Size}},
      {"GCReadPortStacked", {Value, EntriesRead, Count}},
      {"GCWritePortStacked", {Value, EntriesWritten, Count}},
      {"GCRegisterEvent", {Value, Value, Output}},
      {"GCUnregisterEvent", {Value, Value}},
      {"EventGetData", {Value, Buffer, Size, Value}},
      {"EventGetDataInfo", {Value, Data, Value, Value, Type, Buffer, Size}},
      {"EventGetInfo", {Value, Value, Type, Buffer, Size}},
      {"EventFlush", {Value}},
      {"EventKill", {Value}},
  }};
}();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_FUNCTION_ROLES_H
