// Finding a feature's register in a camera description by a plain text search: enough for the
// integer and command features every camera has, and no replacement for a real reader.
#ifndef VEXTREL_SAMPLES_GRAB_FEATURES_H
#define VEXTREL_SAMPLES_GRAB_FEATURES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace grab {

constexpr std::size_t kMaxRegisterLength = 8;
using RegisterBytes = std::array<std::uint8_t, kMaxRegisterLength>;

struct Register {
  std::uint64_t address = 0;
  std::size_t length = 4;  // 1 to kMaxRegisterLength bytes
  bool bigEndian = false;
};

// The register behind a feature: its own or that of the node its <pValue> names. Nothing when the
// description has no such feature, or no register that this search understands.
[[nodiscard]] std::optional<Register> FindRegister(std::string_view description,
                                                   std::string_view feature);

// What has to be written to run a command feature.
[[nodiscard]] std::uint64_t FindCommandValue(std::string_view description,
                                             std::string_view feature);

[[nodiscard]] std::uint64_t DecodeRegister(const Register& layout, const RegisterBytes& bytes);
[[nodiscard]] RegisterBytes EncodeRegister(const Register& layout, std::uint64_t value);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_FEATURES_H
