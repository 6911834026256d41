// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>

#include "images/image_parts.h"

namespace vextrel::program {
namespace {

// Of the dynamic section.
enum Tag : std::uint64_t {
  Needed = 1,
  Hash = 4,
  StringTable = 5,
  SymbolTable = 6,
  RPath = 15,
  RunPath = 29,
  GnuHash = 0x6FFFFEF5,
  VersionsDefined = 0x6FFFFFFC,
  NumberOfVersionsDefined = 0x6FFFFFFD,
  VersionsNeeded = 0x6FFFFFFE,
  NumberOfVersionsNeeded = 0x6FFFFFFF,
};

constexpr std::uint32_t kLoad = 1;
constexpr std::uint32_t kDynamic = 2;
constexpr std::uint32_t kInterpreter = 3;
constexpr std::uint64_t kSymbolSize = 24;

class ElfReader {
 public:
  ElfReader(const ImageBytes& bytes, Image& image) : bytes_(bytes), image_(image) {}

  void Read() {
    constexpr std::uint8_t is64Bit = 2;
    constexpr std::uint8_t isLittleEndian = 1;
    image_.kind = ImageKind::Elf;
    image_.machine = MachineOf(bytes_.At<std::uint16_t>(18));
    if (bytes_.At<std::uint8_t>(4) != is64Bit || bytes_.At<std::uint8_t>(5) != isLittleEndian) {
      image_.machine = image_.machine == Machine::X64 ? Machine::Other : image_.machine;
      image_.isLibrary = bytes_.At<std::uint16_t>(16) == kSharedObject;
      return;
    }
    ReadSegments();
    image_.isLibrary = bytes_.At<std::uint16_t>(16) == kSharedObject && !hasInterpreter_;
    ReadDynamicSection();
    ReadExports();
    ReadVersionsNeeded();
    ReadVersionsDefined();
  }

 private:
  static constexpr std::uint16_t kSharedObject = 3;

  struct Segment {
    std::uint64_t address;
    std::uint64_t offset;
    std::uint64_t size;
  };

  static Machine MachineOf(std::uint16_t number) {
    switch (number) {
      case 62:
        return Machine::X64;
      case 3:
        return Machine::X86;
      case 183:
        return Machine::Arm64;
      default:
        return Machine::Other;
    }
  }

  void ReadSegments() {
    const auto table = bytes_.At<std::uint64_t>(32);
    const auto size = bytes_.At<std::uint16_t>(54);
    const auto count = bytes_.At<std::uint16_t>(56);
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t at = table + i * size;
      const Segment segment{bytes_.At<std::uint64_t>(at + 16), bytes_.At<std::uint64_t>(at + 8),
                            bytes_.At<std::uint64_t>(at + 32)};
      switch (bytes_.At<std::uint32_t>(at)) {
        case kLoad:
          segments_.push_back(segment);
          break;
        case kDynamic:
          dynamic_ = segment;
          break;
        case kInterpreter:
          hasInterpreter_ = true;
          break;
        default:
          break;
      }
    }
  }

  // Where the file has what lies at this address in memory.
  [[nodiscard]] std::uint64_t OffsetOf(std::uint64_t address) const {
    for (const Segment& segment : segments_) {
      if (address >= segment.address && address - segment.address < segment.size) {
        return address - segment.address + segment.offset;
      }
    }
    throw DamagedImage();
  }

  [[nodiscard]] std::string Text(std::uint64_t index) const {
    return bytes_.TextAt(strings_ + index);
  }

  void ReadDynamicSection() {
    std::vector<std::uint64_t> needed;
    for (std::uint64_t i = 0; i < dynamic_.size / 16; ++i) {
      const auto tag = bytes_.At<std::uint64_t>(dynamic_.offset + i * 16);
      const auto value = bytes_.At<std::uint64_t>(dynamic_.offset + i * 16 + 8);
      if (tag == 0) {
        break;
      }
      if (tag == Needed) {
        needed.push_back(value);
      } else {
        tags_.emplace(tag, value);
      }
    }
    if (const auto at = tags_.find(StringTable); at != tags_.end()) {
      strings_ = OffsetOf(at->second);
    }
    for (const std::uint64_t name : needed) {
      image_.needed.push_back({Text(name), false, {}});
    }
    if (const auto at = tags_.find(RunPath); at != tags_.end()) {
      image_.runPath = Text(at->second);
    } else if (const auto old = tags_.find(RPath); old != tags_.end()) {
      image_.runPath = Text(old->second);
      image_.isRunPathFirst = true;
    }
  }

  [[nodiscard]] std::uint64_t NumberOfSymbols() const {
    if (const auto at = tags_.find(Hash); at != tags_.end()) {
      return bytes_.At<std::uint32_t>(OffsetOf(at->second) + 4);
    }
    const auto at = tags_.find(GnuHash);
    if (at == tags_.end()) {
      return 0;
    }
    // The chain of the last bucket ends with the last symbol.
    const std::uint64_t table = OffsetOf(at->second);
    const std::uint64_t buckets = bytes_.At<std::uint32_t>(table);
    const std::uint64_t first = bytes_.At<std::uint32_t>(table + 4);
    const std::uint64_t bucketsAt =
        table + 16 + bytes_.At<std::uint32_t>(table + 8) * std::uint64_t{8};
    const std::uint64_t chains = bucketsAt + buckets * 4;
    std::uint64_t last = 0;
    for (std::uint64_t i = 0; i < std::min(buckets, kMostEntries); ++i) {
      last = std::max(last, std::uint64_t{bytes_.At<std::uint32_t>(bucketsAt + i * 4)});
    }
    if (last < first) {
      return first;
    }
    while ((bytes_.At<std::uint32_t>(chains + (last - first) * 4) & 1U) == 0) {
      ++last;
    }
    return last + 1;
  }

  void ReadExports() {
    const auto table = tags_.find(SymbolTable);
    if (table == tags_.end()) {
      return;
    }
    const std::uint64_t symbols = OffsetOf(table->second);
    const std::uint64_t count = std::min(NumberOfSymbols(), kMostEntries);
    for (std::uint64_t i = 1; i < count; ++i) {
      const std::uint64_t at = symbols + i * kSymbolSize;
      const unsigned binding = bytes_.At<std::uint8_t>(at + 4) >> 4U;
      const bool isDefined = bytes_.At<std::uint16_t>(at + 6) != 0;
      if (isDefined && binding != 0) {
        image_.exports.push_back(Text(bytes_.At<std::uint32_t>(at)));
      }
    }
  }

  void ReadVersionsNeeded() {
    const auto table = tags_.find(VersionsNeeded);
    if (table == tags_.end()) {
      return;
    }
    std::uint64_t at = OffsetOf(table->second);
    for (std::uint64_t left = std::min(tags_[NumberOfVersionsNeeded], kMostEntries); left > 0;
         --left) {
      const std::string library = Text(bytes_.At<std::uint32_t>(at + 4));
      const auto needed =
          std::find_if(image_.needed.begin(), image_.needed.end(),
                       [&](const NeededLibrary& each) { return each.name == library; });
      std::uint64_t version = at + bytes_.At<std::uint32_t>(at + 8);
      for (unsigned count = bytes_.At<std::uint16_t>(at + 2); count > 0; --count) {
        constexpr unsigned isWeak = 2;
        if (needed != image_.needed.end() &&
            (bytes_.At<std::uint16_t>(version + 4) & isWeak) == 0) {
          needed->versions.push_back(Text(bytes_.At<std::uint32_t>(version + 8)));
        }
        version += bytes_.At<std::uint32_t>(version + 12);
      }
      at += bytes_.At<std::uint32_t>(at + 12);
    }
  }

  void ReadVersionsDefined() {
    const auto table = tags_.find(VersionsDefined);
    if (table == tags_.end()) {
      return;
    }
    std::uint64_t at = OffsetOf(table->second);
    for (std::uint64_t left = std::min(tags_[NumberOfVersionsDefined], kMostEntries); left > 0;
         --left) {
      image_.versions.push_back(
          Text(bytes_.At<std::uint32_t>(at + bytes_.At<std::uint32_t>(at + 12))));
      at += bytes_.At<std::uint32_t>(at + 16);
    }
  }

  const ImageBytes& bytes_;
  Image& image_;
  std::vector<Segment> segments_;
  Segment dynamic_{};
  std::map<std::uint64_t, std::uint64_t> tags_;
  std::uint64_t strings_ = 0;
  bool hasInterpreter_ = false;
};

}  // namespace

void ParseElf(const ImageBytes& bytes, Image& image) {
  ElfReader(bytes, image).Read();
}

}  // namespace vextrel::program
