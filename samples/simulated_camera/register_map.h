#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace simcam {

static_assert(std::endian::native == std::endian::little, "the registers are little-endian");

struct Register {
  enum class Kind { kText, kNumber };
  enum class Access { kRead, kReadWrite };

  std::string feature;
  uint64_t address = 0;
  Kind kind = Kind::kText;
  Access access = Access::kRead;
  std::string content;
};

// The registers behind a port, with gaps between them. Not thread-safe; a Module guards its own.
class RegisterMap {
 public:
  // A text of `size` bytes, filled up with NULs.
  void AddText(std::string_view feature, uint64_t address, size_t size, std::string_view text,
               Register::Access access = Register::Access::kRead);

  template <class T>
  void AddNumber(std::string_view feature, uint64_t address, T value,
                 Register::Access access = Register::Access::kRead) {
    registers_.push_back({std::string(feature), address, Register::Kind::kNumber, access,
                          std::string(sizeof(value), '\0')});
    std::memcpy(registers_.back().content.data(), &value, sizeof(value));
  }

  // May run over adjacent registers. Throws GC_ERR_INVALID_ADDRESS, with nothing read, if any of
  // the bytes lies outside.
  void Read(uint64_t address, void* buffer, size_t size) const;

  template <class T>
  [[nodiscard]] T Number(uint64_t address) const {
    T value;
    Read(address, &value, sizeof(value));
    return value;
  }

  // The register that a write of `size` bytes goes to: a whole number, or any part of a text.
  // Throws GC_ERR_INVALID_ADDRESS (none there), GC_ERR_ACCESS_DENIED (read-only) or
  // GC_ERR_INVALID_PARAMETER (a part of a number).
  [[nodiscard]] const Register& WriteTarget(uint64_t address, size_t size) const;

  // Stores without regard to access; the bytes must lie in one register.
  void Store(uint64_t address, const void* data, size_t size);

 private:
  [[nodiscard]] const Register* At(uint64_t address) const;

  std::vector<Register> registers_;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_REGISTER_MAP_H
