// The names that a log gives to GenTL values, as one plain table for each enumeration.
#ifndef VEXTREL_TESTS_SESSION_REFERENCE_NAMES_H
#define VEXTREL_TESTS_SESSION_REFERENCE_NAMES_H

#include <cstdint>
#include <string>

namespace vextrel_test::session {

[[nodiscard]] std::string NameOfGcError(std::int32_t value);
[[nodiscard]] std::string NameOfInfoDatatype(std::int32_t value);
[[nodiscard]] std::string NameOfTlInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfInterfaceInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfDeviceInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfDeviceAccessFlags(std::int32_t value);
[[nodiscard]] std::string NameOfStreamInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfBufferInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfAcqStartFlags(std::int32_t value);
[[nodiscard]] std::string NameOfAcqStopFlags(std::int32_t value);
[[nodiscard]] std::string NameOfAcqQueueType(std::int32_t value);
[[nodiscard]] std::string NameOfUrlInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfPortInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfEventType(std::int32_t value);
[[nodiscard]] std::string NameOfEventInfoCmd(std::int32_t value);
[[nodiscard]] std::string NameOfEventDataInfoCmd(std::int32_t value);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_REFERENCE_NAMES_H
