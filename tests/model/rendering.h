// SPDX-License-Identifier: MIT
// How a line shows values that lie in memory, without the terminating NUL.
#ifndef VEXTREL_TESTS_MODEL_RENDERING_H
#define VEXTREL_TESTS_MODEL_RENDERING_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "gentl/gentl.h"

namespace vextrel_test::model {

// "0x" and sixteen upper-case digits, for null as well.
[[nodiscard]] std::string ShowAddress(const void* address);

[[nodiscard]] std::string RenderInfo(std::int32_t type, const void* buffer);
[[nodiscard]] std::string RenderSlot(const void* const* slot);
[[nodiscard]] std::string RenderDump(const void* data, std::uint64_t size);
[[nodiscard]] std::string RenderPortData(const PORT_REGISTER_STACK_ENTRY* entries,
                                         std::size_t count);

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_RENDERING_H
