// SPDX-License-Identifier: MIT
// What the readers of both formats share.
#ifndef VEXTREL_PROGRAM_IMAGES_IMAGE_PARTS_H
#define VEXTREL_PROGRAM_IMAGES_IMAGE_PARTS_H

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "images/image.h"

namespace vextrel::program {

struct DamagedImage {};

// The bytes of a file. All reading throws DamagedImage where there are none.
class ImageBytes {
 public:
  explicit ImageBytes(std::string_view bytes) : bytes_(bytes) {}

  // A little-endian number.
  template <typename Number>
  [[nodiscard]] Number At(std::uint64_t offset) const {
    static_assert(std::is_unsigned_v<Number>);
    Number value{};
    const std::string_view part = Part(offset, sizeof value);
    std::memcpy(&value, part.data(), sizeof value);
    return value;
  }
  [[nodiscard]] std::string_view Part(std::uint64_t offset, std::uint64_t size) const {
    if (offset > bytes_.size() || size > bytes_.size() - offset) {
      throw DamagedImage();
    }
    return bytes_.substr(offset, size);
  }
  // Up to the first zero byte.
  [[nodiscard]] std::string TextAt(std::uint64_t offset) const {
    if (offset > bytes_.size()) {
      throw DamagedImage();
    }
    const std::string_view rest = bytes_.substr(offset);
    const std::size_t size = rest.find('\0');
    if (size > kMostText) {  // or there is none
      throw DamagedImage();
    }
    return std::string(rest.substr(0, size));
  }
  [[nodiscard]] std::size_t Size() const noexcept { return bytes_.size(); }

 private:
  static constexpr std::size_t kMostText = 4096;

  std::string_view bytes_;
};

// No table of a real file is as long; a damaged one must not keep us busy.
inline constexpr std::uint64_t kMostEntries = 1U << 20U;

void ParseElf(const ImageBytes& bytes, Image& image);
void ParsePe(const ImageBytes& bytes, Image& image);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_IMAGES_IMAGE_PARTS_H
