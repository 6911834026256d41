// SPDX-License-Identifier: MIT
#include "session/memory.h"

#include <cstring>
#include <utility>

namespace vextrel_test::session {

unsigned char* Memory::Add(std::string_view bytes, std::size_t misalignment) {
  const std::size_t size = misalignment + bytes.size();
  blocks_.push_back({std::make_unique<unsigned char[]>(size), size});
  unsigned char* begin = blocks_.back().bytes.get() + misalignment;
  std::memcpy(begin, bytes.data(), bytes.size());
  return begin;
}

void Memory::WriteLater(void* to, std::string bytes) {
  writes_.push_back({to, std::move(bytes)});
}

void Memory::WriteNow() {
  for (const Write& write : writes_) {
    std::memcpy(write.to, write.bytes.data(), write.bytes.size());
  }
}

std::string Memory::Snapshot() const {
  std::string all;
  for (const Block& block : blocks_) {
    all.append(reinterpret_cast<const char*>(block.bytes.get()), block.size);
  }
  return all;
}

void Memory::Clear() {
  blocks_.clear();
  writes_.clear();
}

}  // namespace vextrel_test::session
