// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace simulated_camera {

static_assert(std::endian::native == std::endian::little, "the registers are little-endian");

struct Register {
  enum class Kind { Text, Number };
  enum class Access { Read, ReadWrite };

  std::string feature;
  uint64_t address = 0;
  Kind kind = Kind::Text;
  Access access = Access::Read;
  std::string content;
};

// The registers behind a port. Not thread-safe; Module guards its own.
class RegisterMap {
 public:
  // Pads the text with NULs to `size` bytes, or truncates it.
  void AddText(std::string_view feature, uint64_t address, size_t size, std::string_view text,
               Register::Access access = Register::Access::Read);

  template <class T>
  void AddNumber(std::string_view feature, uint64_t address, T value,
                 Register::Access access = Register::Access::Read) {
    registers_.push_back({std::string(feature), address, Register::Kind::Number, access,
                          std::string(sizeof(value), '\0')});
    std::memcpy(registers_.back().content.data(), &value, sizeof(value));
  }

  // May span adjacent registers. Throws GC_ERR_INVALID_ADDRESS, leaving `buffer` untouched, if any
  // byte lies outside of all registers.
  void Read(uint64_t address, void* buffer, size_t size) const;

  template <class T>
  [[nodiscard]] T Number(uint64_t address) const {
    T value;
    Read(address, &value, sizeof(value));
    return value;
  }

  // Returns the register that a write of `size` bytes goes to. Throws GC_ERR_INVALID_ADDRESS if no
  // register holds all bytes, GC_ERR_ACCESS_DENIED if it is read-only, GC_ERR_INVALID_PARAMETER if
  // the write covers only a part of a number.
  [[nodiscard]] const Register& WriteTarget(uint64_t address, size_t size) const;

  // Ignores access rights. REQUIRES: the bytes lie in one register.
  void Store(uint64_t address, const void* data, size_t size);

 private:
  [[nodiscard]] const Register* At(uint64_t address) const;

  std::vector<Register> registers_;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H
