// SPDX-License-Identifier: MIT
#include "program/made_images.h"

#include "launching/system.h"

namespace vextrel_test {
namespace {

class Bytes {
 public:
  template <typename Number>
  void Put(std::size_t offset, Number value) {
    Reserve(offset + sizeof value);
    for (std::size_t i = 0; i < sizeof value; ++i) {
      bytes_[offset + i] = static_cast<char>(value >> (8 * i));
    }
  }
  void PutText(std::size_t offset, const std::string& text) {
    Reserve(offset + text.size() + 1);
    bytes_.replace(offset, text.size(), text);
  }
  // Where the text begins.
  std::size_t AppendText(const std::string& text) {
    const std::size_t offset = bytes_.size();
    PutText(offset, text);
    return offset;
  }
  void Align(std::size_t size) { Reserve((bytes_.size() + size - 1) / size * size); }
  void Reserve(std::size_t size) {
    if (bytes_.size() < size) {
      bytes_.resize(size);
    }
  }
  [[nodiscard]] std::size_t Size() const { return bytes_.size(); }
  [[nodiscard]] const std::string& All() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace

// Loaded at the address 0, so that an address is an offset: the header, two program headers, the
// dynamic section at 0x100, and behind it the texts and the tables.
std::string MadeElf(const MadeImage& image) {
  Bytes file;
  file.PutText(0, std::string("\x7F"
                              "ELF\x02\x01\x01"));
  file.Put<std::uint16_t>(16, 3);
  const std::uint16_t machine = image.machine == 0 ? std::uint16_t{62} : image.machine;
  file.Put<std::uint16_t>(18, machine);
  if (machine == 3) {
    file.Put<std::uint8_t>(4, 1);
  }
  file.Put<std::uint64_t>(32, 64);
  file.Put<std::uint16_t>(54, 56);
  file.Put<std::uint16_t>(56, image.isLibrary ? 2 : 3);
  file.Reserve(0x400);
  const std::size_t strings = 0x400;
  file.PutText(strings, "");
  const auto text = [&](const std::string& each) { return file.AppendText(each) - strings; };
  std::vector<std::pair<std::uint64_t, std::uint64_t>> dynamic;
  std::vector<std::size_t> names;
  for (const std::string& each : image.needed) {
    dynamic.emplace_back(1, text(each));
  }
  if (!image.runPath.empty()) {
    dynamic.emplace_back(29, text(image.runPath));
  }
  for (const std::string& each : image.exports) {
    names.push_back(text(each));
  }
  const std::size_t version = image.neededVersion.empty() ? 0 : text(image.neededVersion);
  file.Align(8);
  const std::size_t symbols = file.Size();
  file.Reserve(symbols + 24 * (names.size() + 1));
  for (std::size_t i = 0; i < names.size(); ++i) {
    file.Put<std::uint32_t>(symbols + 24 * (i + 1), static_cast<std::uint32_t>(names[i]));
    file.Put<std::uint8_t>(symbols + 24 * (i + 1) + 4, 0x12);  // a global function
    file.Put<std::uint16_t>(symbols + 24 * (i + 1) + 6, 1);
  }
  const std::size_t hash = file.Size();
  file.Put<std::uint32_t>(hash, 1);
  file.Put<std::uint32_t>(hash + 4, static_cast<std::uint32_t>(names.size() + 1));
  dynamic.insert(dynamic.end(), {{4, hash}, {5, strings}, {6, symbols}});
  if (version != 0) {
    const std::size_t need = file.Size();
    file.Reserve(need + 32);
    file.Put<std::uint16_t>(need + 2, 1);
    file.Put<std::uint32_t>(need + 4, static_cast<std::uint32_t>(dynamic.front().second));
    file.Put<std::uint32_t>(need + 8, 16);
    file.Put<std::uint32_t>(need + 24, static_cast<std::uint32_t>(version));
    dynamic.insert(dynamic.end(), {{0x6FFFFFFE, need}, {0x6FFFFFFF, 1}});
  }
  for (std::size_t i = 0; i < dynamic.size(); ++i) {
    file.Put<std::uint64_t>(0x100 + 16 * i, dynamic[i].first);
    file.Put<std::uint64_t>(0x108 + 16 * i, dynamic[i].second);
  }
  file.Reserve(file.Size() + 16);
  file.Put<std::uint32_t>(64, 1);
  file.Put<std::uint64_t>(64 + 32, file.Size());
  file.Put<std::uint32_t>(120, 2);
  file.Put<std::uint64_t>(120 + 8, 0x100);
  file.Put<std::uint64_t>(120 + 16, 0x100);
  file.Put<std::uint64_t>(120 + 32, 16 * (dynamic.size() + 1));
  if (!image.isLibrary) {
    file.Put<std::uint32_t>(176, 3);
  }
  return file.All();
}

// One section, at the address 0x1000 and the offset 0x400, that holds everything.
std::string MadePe(const MadeImage& image) {
  constexpr std::size_t header = 0x80;
  constexpr std::size_t optional = header + 24;
  constexpr std::size_t directories = optional + 112;
  constexpr std::size_t section = optional + 240;
  constexpr std::size_t moved = 0x1000 - 0x400;  // from an offset to its address
  Bytes file;
  file.PutText(0, "MZ");
  file.Put<std::uint32_t>(0x3C, header);
  file.PutText(header, "PE");
  file.Put<std::uint16_t>(header + 4, image.machine == 0 ? std::uint16_t{0x8664} : image.machine);
  file.Put<std::uint16_t>(header + 6, 1);
  file.Put<std::uint16_t>(header + 20, 240);
  file.Put<std::uint16_t>(header + 22, image.isLibrary ? 0x2022 : 0x22);
  file.Put<std::uint16_t>(optional, 0x20B);
  file.Put<std::uint32_t>(optional + 108, 16);
  file.Reserve(0x400);
  const auto at = [&](std::size_t offset) { return static_cast<std::uint32_t>(offset + moved); };
  const auto directory = [&](std::size_t index, std::size_t offset) {
    file.Put<std::uint32_t>(directories + 8 * index, at(offset));
  };
  const auto imports = [&](std::size_t index, const std::vector<std::string>& names,
                           std::size_t size, std::size_t nameAt) {
    if (names.empty()) {
      return;
    }
    file.Align(8);
    const std::size_t table = file.Size();
    file.Reserve(table + size * (names.size() + 1));
    directory(index, table);
    for (std::size_t i = 0; i < names.size(); ++i) {
      file.Put<std::uint32_t>(table + size * i + nameAt, at(file.AppendText(names[i])));
    }
  };
  imports(1, image.needed, 20, 12);
  imports(13, image.delayed, 32, 4);
  if (!image.exports.empty()) {
    file.Align(8);
    const std::size_t table = file.Size();
    file.Reserve(table + 40 + 4 * image.exports.size());
    directory(0, table);
    file.Put<std::uint32_t>(table + 24, static_cast<std::uint32_t>(image.exports.size()));
    file.Put<std::uint32_t>(table + 32, at(table + 40));
    for (std::size_t i = 0; i < image.exports.size(); ++i) {
      file.Put<std::uint32_t>(table + 40 + 4 * i, at(file.AppendText(image.exports[i])));
    }
  }
  if (!image.manifest.empty()) {
    directory(2, file.AppendText(image.manifest));
  }
  if (image.dotNetFlags != 0) {
    file.Align(8);
    const std::size_t table = file.Size();
    file.Reserve(table + 72);
    directory(14, table);
    file.Put<std::uint32_t>(table + 16, image.dotNetFlags);
  }
  file.Reserve(file.Size() + 16);
  file.Put<std::uint32_t>(section + 12, 0x1000);
  file.Put<std::uint32_t>(section + 16, static_cast<std::uint32_t>(file.Size() - 0x400));
  file.Put<std::uint32_t>(section + 20, 0x400);
  return file.All();
}

std::string MadeForThisSystem(const MadeImage& image) {
  return vextrel::program::kOwnImageKind == vextrel::program::ImageKind::Pe ? MadePe(image)
                                                                            : MadeElf(image);
}

}  // namespace vextrel_test
