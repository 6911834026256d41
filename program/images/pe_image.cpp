// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "images/image_parts.h"

namespace vextrel::program {
namespace {

// Of the data directories.
constexpr std::size_t kExports = 0;
constexpr std::size_t kImports = 1;
constexpr std::size_t kResources = 2;
constexpr std::size_t kDelayedImports = 13;
constexpr std::size_t kDotNet = 14;
constexpr std::size_t kDirectories = 16;

class PeReader {
 public:
  PeReader(const ImageBytes& bytes, Image& image) : bytes_(bytes), image_(image) {}

  void Read() {
    const std::uint64_t header = bytes_.At<std::uint32_t>(0x3C);
    if (bytes_.Part(header, 4) != std::string_view("PE\0\0", 4)) {
      throw DamagedImage();
    }
    image_.kind = ImageKind::Pe;
    image_.machine = MachineOf(bytes_.At<std::uint16_t>(header + 4));
    constexpr unsigned isDll = 0x2000;
    image_.isLibrary = (bytes_.At<std::uint16_t>(header + 22) & isDll) != 0;
    const std::uint64_t optional = header + 24;
    const std::uint64_t sections = optional + bytes_.At<std::uint16_t>(header + 20);
    for (std::uint64_t i = 0; i < bytes_.At<std::uint16_t>(header + 6); ++i) {
      const std::uint64_t at = sections + i * 40;
      sections_.push_back({bytes_.At<std::uint32_t>(at + 12), bytes_.At<std::uint32_t>(at + 20),
                           bytes_.At<std::uint32_t>(at + 16)});
    }
    constexpr std::uint16_t is64Bit = 0x20B;
    const std::uint64_t table =
        optional + (bytes_.At<std::uint16_t>(optional) == is64Bit ? 108 : 92);
    const std::size_t count = std::min(std::size_t{bytes_.At<std::uint32_t>(table)}, kDirectories);
    for (std::size_t i = 0; i < count; ++i) {
      directories_[i] = bytes_.At<std::uint32_t>(table + 4 + i * 8);
    }
    ReadDotNet();
    ReadImports();
    ReadDelayedImports();
    ReadExports();
    ReadManifest();
  }

 private:
  struct Section {
    std::uint64_t address;
    std::uint64_t offset;
    std::uint64_t size;
  };

  static Machine MachineOf(std::uint16_t number) {
    switch (number) {
      case 0x8664:
        return Machine::X64;
      case 0x14C:
        return Machine::X86;
      case 0xAA64:
        return Machine::Arm64;
      default:
        return Machine::Other;
    }
  }

  [[nodiscard]] const Section& SectionAt(std::uint64_t address) const {
    for (const Section& section : sections_) {
      if (address >= section.address && address - section.address < section.size) {
        return section;
      }
    }
    throw DamagedImage();
  }

  // Where the file has what lies at this address in memory.
  [[nodiscard]] std::uint64_t OffsetOf(std::uint64_t address) const {
    const Section& section = SectionAt(address);
    return address - section.address + section.offset;
  }

  void ReadDotNet() {
    if (directories_[kDotNet] == 0) {
      return;
    }
    constexpr unsigned isAllManaged = 1;
    constexpr unsigned requires32Bit = 2;
    const auto flags = bytes_.At<std::uint32_t>(OffsetOf(directories_[kDotNet]) + 16);
    image_.runsOnAnyMachine =
        image_.machine == Machine::X86 && (flags & (isAllManaged | requires32Bit)) == isAllManaged;
  }

  void ReadImports() {
    if (directories_[kImports] == 0) {
      return;
    }
    std::uint64_t at = OffsetOf(directories_[kImports]);
    for (std::uint64_t i = 0; i < kMostEntries; ++i, at += 20) {
      const auto name = bytes_.At<std::uint32_t>(at + 12);
      if (name == 0) {
        break;
      }
      image_.needed.push_back({bytes_.TextAt(OffsetOf(name)), false, {}});
    }
  }

  void ReadDelayedImports() {
    if (directories_[kDelayedImports] == 0) {
      return;
    }
    std::uint64_t at = OffsetOf(directories_[kDelayedImports]);
    for (std::uint64_t i = 0; i < kMostEntries; ++i, at += 32) {
      const auto name = bytes_.At<std::uint32_t>(at + 4);
      if (name == 0) {
        break;
      }
      image_.needed.push_back({bytes_.TextAt(OffsetOf(name)), true, {}});
    }
  }

  void ReadExports() {
    if (directories_[kExports] == 0) {
      return;
    }
    const std::uint64_t directory = OffsetOf(directories_[kExports]);
    const std::uint64_t count = bytes_.At<std::uint32_t>(directory + 24);
    if (count == 0) {
      return;
    }
    const std::uint64_t names = OffsetOf(bytes_.At<std::uint32_t>(directory + 32));
    for (std::uint64_t i = 0; i < std::min(count, kMostEntries); ++i) {
      image_.exports.push_back(bytes_.TextAt(OffsetOf(bytes_.At<std::uint32_t>(names + i * 4))));
    }
  }

  // The manifest is text in the section of the resources.
  void ReadManifest() {
    if (directories_[kResources] == 0) {
      return;
    }
    const Section& section = SectionAt(directories_[kResources]);
    const std::string_view resources = bytes_.Part(section.offset, section.size);
    const std::size_t level = resources.find("requestedExecutionLevel");
    image_.wantsElevation =
        level != std::string_view::npos &&
        resources.substr(level, 200).find("requireAdministrator") != std::string_view::npos;
  }

  const ImageBytes& bytes_;
  Image& image_;
  std::vector<Section> sections_;
  std::array<std::uint32_t, kDirectories> directories_{};
};

}  // namespace

void ParsePe(const ImageBytes& bytes, Image& image) {
  PeReader(bytes, image).Read();
}

}  // namespace vextrel::program
