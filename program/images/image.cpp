// SPDX-License-Identifier: MIT
#include "images/image.h"

#include "images/file_bytes.h"
#include "images/image_parts.h"

namespace vextrel::program {

Image ParseImage(std::string_view bytes) {
  Image image;
  try {
    if (bytes.starts_with("\x7F"
                          "ELF")) {
      ParseElf(ImageBytes(bytes), image);
    } else if (bytes.starts_with("MZ")) {
      ParsePe(ImageBytes(bytes), image);
    }
  } catch (const DamagedImage&) {
    image.isDamaged = true;
  }
  return image;
}

Image ReadImage(const std::filesystem::path& path) {
  return ParseImage(ReadBytes(path).value_or(std::string()));
}

std::string_view MachineName(Machine machine) noexcept {
  switch (machine) {
    case Machine::X64:
      return "x64";
    case Machine::X86:
      return "x86";
    case Machine::Arm64:
      return "ARM64";
    case Machine::Other:
      break;
  }
  return "another machine";
}

}  // namespace vextrel::program
