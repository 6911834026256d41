// SPDX-License-Identifier: MIT
#include "session/session.h"

namespace vextrel_test::session {

Played& CurrentCall() {
  static Played call;
  return call;
}

std::string_view NameAt(std::size_t offset) {
  static const std::vector<std::string> names = FunctionNames();
  return names.at(offset / sizeof(void*));
}

void* Session::Handle(HandleKind kind) {
  const std::uint64_t choice = random.Below(100);
  if (choice < 3) {
    return nullptr;
  }
  if (choice < 5) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(random.Bits()));
  }
  std::uint64_t pool = static_cast<std::uint64_t>(kind);
  std::uint64_t members = kind == HandleKind::Buffer ? 4 : 3;
  if (choice < 9) {
    pool = random.Below(kHandleKinds);
  } else if (choice < 30) {
    pool = kHandleKinds;
    members = 2;
  }
  return reinterpret_cast<void*>(
      static_cast<std::uintptr_t>((pool + 1) * 0x0A0000C000001000U + random.Below(members) * 0x18));
}

void* Session::AnyHandle() {
  return Handle(static_cast<HandleKind>(random.Below(kHandleKinds)));
}

const char* Session::InText() {
  if (random.OneIn(8)) {
    return nullptr;
  }
  return reinterpret_cast<const char*>(memory.Add(random.Text() + '\0'));
}

char* Session::OutText() {
  return static_cast<char*>(InfoBuffer());
}

void* Session::InfoBuffer() {
  if (random.OneIn(8)) {
    return nullptr;
  }
  const std::size_t size = random.OneIn(50) ? 3000 : 8 + random.Below(60);
  const std::string before = random.Bytes(size);
  const std::size_t written = random.Below(size + 1);
  const std::string after = random.Bytes(written);
  unsigned char* buffer = memory.Add(before + '\0', random.Below(4));
  if (!random.OneIn(5)) {
    memory.WriteLater(buffer, after);
  }
  return buffer;
}

GC_ERROR Session::RandomResult() {
  const std::uint64_t choice = random.Below(100);
  if (choice < 70) {
    return GC_ERR_SUCCESS;
  }
  if (choice < 92) {
    return -1001 - static_cast<GC_ERROR>(random.Below(15));
  }
  if (choice < 95) {
    return GC_ERR_CUSTOM_ID;
  }
  return random.Pick({1, 5, 1000, INT32_MAX, -1, -999, -1000, -1016, -1022, -9999, -10001,
                      INT32_MIN, static_cast<GC_ERROR>(random.Bits())});
}

}  // namespace vextrel_test::session
