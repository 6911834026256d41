// SPDX-License-Identifier: MIT
// The data of an event, as the log dumps them.
#ifndef VEXTREL_PROGRAM_MODEL_EVENT_DATA_H
#define VEXTREL_PROGRAM_MODEL_EVENT_DATA_H

#include <cstdint>
#include <optional>
#include <string_view>

namespace vextrel::program {

// The buffer that a new-buffer event delivers: the first eight bytes of the dump, low byte first.
// Nothing if there are fewer.
[[nodiscard]] std::optional<std::uint64_t> BufferOfEventData(std::string_view dump) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_EVENT_DATA_H
