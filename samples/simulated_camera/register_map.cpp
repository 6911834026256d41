// SPDX-License-Identifier: MIT
#include "register_map.h"

#include <algorithm>

#include "failure.h"

namespace simulated_camera {
namespace {

[[noreturn]] void RefuseAddress(uint64_t address) {
  throw Failure(GC_ERR_INVALID_ADDRESS,
                "no register holds all bytes from address " + std::to_string(address));
}

}  // namespace

void RegisterMap::AddText(std::string_view feature, uint64_t address, size_t size,
                          std::string_view text, Register::Access access) {
  std::string content(text.substr(0, size));
  content.resize(size, '\0');
  registers_.push_back(
      {std::string(feature), address, Register::Kind::Text, access, std::move(content)});
}

const Register* RegisterMap::At(uint64_t address) const {
  const auto found = std::ranges::find_if(registers_, [address](const Register& candidate) {
    return address >= candidate.address && address - candidate.address < candidate.content.size();
  });
  return found != registers_.end() ? &*found : nullptr;
}

void RegisterMap::Read(uint64_t address, void* buffer, size_t size) const {
  std::string read;
  uint64_t cursor = address;
  while (read.size() < size) {
    const Register* const source = At(cursor);
    if (source == nullptr) {
      RefuseAddress(address);
    }
    const auto offset = static_cast<size_t>(cursor - source->address);
    read.append(source->content, offset, size - read.size());
    cursor = source->address + source->content.size();
  }
  read.copy(static_cast<char*>(buffer), size);
}

const Register& RegisterMap::WriteTarget(uint64_t address, size_t size) const {
  const Register* const target = At(address);
  if (target == nullptr) {
    RefuseAddress(address);
  }
  const auto offset = static_cast<size_t>(address - target->address);
  if (size > target->content.size() - offset) {
    RefuseAddress(address);
  }
  if (target->access != Register::Access::ReadWrite) {
    throw Failure(GC_ERR_ACCESS_DENIED, target->feature + " cannot be written");
  }
  if (target->kind == Register::Kind::Number && size != target->content.size()) {
    throw Failure(GC_ERR_INVALID_PARAMETER, target->feature + " can only be written as a whole");
  }
  return *target;
}

void RegisterMap::Store(uint64_t address, const void* data, size_t size) {
  if (size == 0) {
    return;  // `data` may be null.
  }
  for (Register& target : registers_) {
    if (address >= target.address && address - target.address < target.content.size()) {
      const auto offset = static_cast<size_t>(address - target.address);
      std::memcpy(target.content.data() + offset, data,
                  std::min(size, target.content.size() - offset));
    }
  }
}

}  // namespace simulated_camera
