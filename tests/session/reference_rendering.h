// Texts of values that lie in memory, read when the call is over.
#ifndef VEXTREL_TESTS_SESSION_REFERENCE_RENDERING_H
#define VEXTREL_TESTS_SESSION_REFERENCE_RENDERING_H

#include <cstdint>
#include <string>

namespace vextrel_test::session {

[[nodiscard]] std::string RenderInfo(std::int32_t type, const void* buffer);
[[nodiscard]] std::string RenderSlot(void* const* slot);
[[nodiscard]] std::string RenderDump(const void* data, std::uint64_t size);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_REFERENCE_RENDERING_H
