// Text for the output.
#ifndef VEXTREL_SAMPLES_GRAB_TEXT_H
#define VEXTREL_SAMPLES_GRAB_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "gentl/gentl.h"

namespace grab {

// "0x" and at least `digits` upper-case digits.
[[nodiscard]] std::string Hex(std::uint64_t value, int digits = 1);
[[nodiscard]] std::string Hex(const void* handle);

// "-" stands for what a producer does not tell.
[[nodiscard]] std::string OrDash(const std::optional<std::string>& text);
[[nodiscard]] std::string OrDash(const std::optional<std::uint64_t>& number);

// The enumerator's name and its number, as in "GC_ERR_IO (-1010)".
[[nodiscard]] std::string ErrorText(GC_ERROR error);

// "read and write", "read only" and so on.
[[nodiscard]] std::string_view AccessStatusText(std::uint64_t status);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_TEXT_H
