// SPDX-License-Identifier: MIT
#include "session/arguments.h"

#include <cstring>
#include <string>

#include "model/rendering.h"

namespace vextrel_test::session {
namespace {

using model::RenderDump;
using model::RenderInfo;
using model::RenderSlot;
using model::TextOrNull;

// An output shows as where it lies and what it holds.
template <typename T>
Argument<T*> Shown(T* output) {
  return {{output}, [=] { return Values{output, *output}; }};
}

template <typename T>
Argument<T*> ShownOrMissing(T* output) {
  if (output == nullptr) {
    return {{output}, [=] { return Values{output}; }, true};
  }
  return Shown(output);
}

Argument<INFO_DATATYPE*, void*, std::size_t*> RandomInfo(Session& session, InfoShows shows,
                                                         std::size_t zerosAfter) {
  INFO_DATATYPE* piType = session.Output([&] { return RandomType(session); }, zerosAfter);
  void* pBuffer = session.InfoBuffer();
  std::size_t* piSize = session.SizeOutput(zerosAfter);
  return {{piType, pBuffer, piSize}, [=] {
            Values values = {piType, model::kInfoDatatypes.NameOf(*piType)};
            if (shows == InfoShows::Everything) {
              values.emplace_back(pBuffer);
            }
            values.insert(values.end(), {RenderInfo(*piType, pBuffer), piSize, *piSize});
            return values;
          }};
}

struct Data {
  void* pBuffer;
  std::size_t* piSize;
};

enum class DataFrom { Target, Consumer };

Data RandomData(Session& session, DataFrom from, std::size_t zerosAfter) {
  if (session.random.OneIn(8)) {
    return {nullptr, session.SizeOutput()};
  }
  const std::size_t capacity =
      session.random.OneIn(50) ? 600 + session.random.Below(100) : session.random.Below(71);
  const std::string before = session.random.Bytes(capacity);
  const std::string after = session.random.Bytes(capacity);
  unsigned char* data =
      session.memory.Add(before + std::string(zerosAfter, '\0'), session.random.Below(4));
  if (from == DataFrom::Target && !session.random.OneIn(5)) {
    session.memory.WriteLater(data, after);
  }
  return {data, session.Output([&]() -> std::size_t {
            return session.random.OneIn(3) ? session.random.Below(capacity + 1) : capacity;
          })};
}

Data RandomEventData(Session& session) {
  if (session.random.OneIn(3)) {
    return RandomData(session, DataFrom::Target, 0);
  }
  void** delivered = session.HandleOutput(HandleKind::Buffer);
  return {delivered, session.Output([&]() -> std::size_t {
            return session.random.OneIn(5) ? session.random.Below(9) : 8;
          })};
}

std::vector<PORT_REGISTER_STACK_ENTRY> RandomEntries(Session& session, std::uint64_t count) {
  std::vector<PORT_REGISTER_STACK_ENTRY> entries;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t address = session.random.Number();
    if (session.random.OneIn(8)) {
      entries.push_back({address, nullptr, session.random.Number()});
      continue;
    }
    const std::size_t capacity = session.random.Below(71);
    unsigned char* data = session.memory.Add(session.random.Bytes(capacity));
    session.memory.WriteLater(data, session.random.Bytes(capacity));
    entries.push_back({address, data, session.random.Below(capacity + 1)});
  }
  return entries;
}

// Only the low half counts, as a signed number.
std::size_t RandomEntryCount(Session& session, std::uint64_t most) {
  switch (session.random.Below(8)) {
    case 0:
      return 0x80000000U + session.random.Below(0x80000000U);
    case 1:
      return (session.random.Bits() << 32U) + session.random.Below(most + 1);
    default:
      return session.random.Below(most + 1);
  }
}

}  // namespace

INFO_DATATYPE RandomType(Session& session) {
  return session.random.OneIn(20) ? 1000 : static_cast<INFO_DATATYPE>(session.random.Below(17)) - 1;
}

// --- Inputs -------------------------------------------------------------------------------------

Generator<void*> OfHandle(HandleKind kind) {
  return [=](Session& session) -> Argument<void*> {
    void* handle = session.Handle(kind);
    return {{handle}, [=] { return Values{handle}; }};
  };
}

Generator<void*> AnyAddress() {
  return [](Session& session) -> Argument<void*> {
    void* address = session.AnyHandle();
    return {{address}, [=] { return Values{address}; }};
  };
}

Generator<const char*> Text() {
  return [](Session& session) -> Argument<const char*> {
    const char* text = session.InText();
    return {{text}, [=] { return Values{text, TextOrNull(text)}; }};
  };
}

Generator<const char*> TextWithoutAddress() {
  return [](Session& session) -> Argument<const char*> {
    const char* text = session.InText();
    return {{text}, [=] { return Values{TextOrNull(text)}; }};
  };
}

Generator<std::int32_t> Named(const NameTable& names) {
  std::int32_t last = 0;
  for (const model::ValueName& each : names.names) {
    last = each.value < 1000 ? each.value : last;
  }
  return [&names, last](Session& session) -> Argument<std::int32_t> {
    const std::int32_t value = session.random.Command(last);
    return {{value}, [&names, value] { return Values{names.NameOf(value)}; }};
  };
}

Generator<std::size_t> UnshownSize() {
  return [](Session& session) -> Argument<std::size_t> {
    return {{session.random.Number()}, [] { return Values{}; }};
  };
}

// --- Outputs ------------------------------------------------------------------------------------

Generator<void**> HandleOutput(HandleKind kind) {
  return [=](Session& session) { return Shown(session.HandleOutput(kind)); };
}

Generator<void**> HandleOutputOrNull(HandleKind kind) {
  return [=](Session& session) {
    return ShownOrMissing(session.random.OneIn(12) ? nullptr : session.HandleOutput(kind));
  };
}

Generator<std::uint32_t*> CountOutput() {
  return [](Session& session) {
    return Shown(
        session.Output([&] { return static_cast<std::uint32_t>(session.random.Number()); }));
  };
}

Generator<bool8_t*> ChangeFlagOrNull() {
  return [](Session& session) {
    if (session.random.OneIn(2)) {
      return ShownOrMissing<bool8_t>(nullptr);
    }
    return ShownOrMissing(session.Output([&] {
      return static_cast<bool8_t>(session.random.OneIn(3) ? session.random.Below(256)
                                                          : session.random.Below(2));
    }));
  };
}

Generator<void**> PointerSlot() {
  return [](Session& session) -> Argument<void**> {
    void** slot = session.random.OneIn(3) ? nullptr : session.HandleOutput(HandleKind::Port);
    return {{slot}, [=] { return Values{RenderSlot(slot)}; }};
  };
}

Generator<char*, std::size_t*> TextOutput() {
  return [](Session& session) -> Argument<char*, std::size_t*> {
    char* text = session.OutText();
    std::size_t* piSize = session.SizeOutput();
    return {{text, piSize}, [=] { return Values{text, TextOrNull(text), piSize, *piSize}; }};
  };
}

Generator<GC_ERROR*, char*, std::size_t*> LastError() {
  return [](Session& session) -> Argument<GC_ERROR*, char*, std::size_t*> {
    GC_ERROR* piErrorCode = session.Output([&]() -> GC_ERROR {
      return session.random.Pick({0, -1001, -1010, 7});
    });
    char* sErrText = session.OutText();
    std::size_t* piSize = session.SizeOutput(1);
    return {{piErrorCode, sErrText, piSize}, [=] {
              return Values{model::kGcErrors.NameOf(*piErrorCode), sErrText, TextOrNull(sErrText),
                            piSize, *piSize};
            }};
  };
}

Generator<INFO_DATATYPE*, void*, std::size_t*> Info(InfoShows shows, std::size_t zerosAfter) {
  return [=](Session& session) { return RandomInfo(session, shows, zerosAfter); };
}

Generator<INFO_DATATYPE*, void*, std::size_t*> InfoWithOptionalType() {
  return [](Session& session) {
    auto info = RandomInfo(session, InfoShows::Everything, 0);
    if (session.random.OneIn(6)) {
      const auto [unused, pBuffer, piSize] = info.given;
      INFO_DATATYPE* none = nullptr;
      info = {{none, pBuffer, piSize}, [none, pBuffer = pBuffer, piSize = piSize] {
                return Values{none, "NULL", pBuffer, RenderInfo(0, pBuffer), piSize, *piSize};
              }};
    }
    return info;
  };
}

// --- Data ---------------------------------------------------------------------------------------

Generator<void*, std::size_t*> DataRead() {
  return [](Session& session) -> Argument<void*, std::size_t*> {
    const auto [pBuffer, piSize] = RandomData(session, DataFrom::Target, 1);
    return {{pBuffer, piSize}, [pBuffer = pBuffer, piSize = piSize] {
              return Values{pBuffer, pBuffer, RenderDump(pBuffer, *piSize), piSize, *piSize};
            }};
  };
}

Generator<const void*, std::size_t*> DataWritten() {
  return [](Session& session) -> Argument<const void*, std::size_t*> {
    const auto [pBuffer, piSize] = RandomData(session, DataFrom::Consumer, 0);
    return {{pBuffer, piSize}, [pBuffer = pBuffer, piSize = piSize] {
              return Values{pBuffer, RenderDump(pBuffer, *piSize), piSize, *piSize};
            }};
  };
}

Generator<void*, std::size_t*> EventData() {
  return [](Session& session) -> Argument<void*, std::size_t*> {
    const auto [pBuffer, piSize] = RandomEventData(session);
    return {{pBuffer, piSize}, [pBuffer = pBuffer, piSize = piSize] {
              return Values{pBuffer, RenderDump(pBuffer, *piSize), piSize, *piSize};
            }};
  };
}

Generator<PORT_REGISTER_STACK_ENTRY*, std::size_t*> Stack() {
  return [](Session& session) -> Argument<PORT_REGISTER_STACK_ENTRY*, std::size_t*> {
    const auto entries = RandomEntries(session, session.random.Below(21));
    std::string bytes(entries.size() * sizeof(PORT_REGISTER_STACK_ENTRY), '\0');
    PORT_REGISTER_STACK_ENTRY* pEntries = nullptr;
    if (!entries.empty()) {
      std::memcpy(bytes.data(), entries.data(), bytes.size());
    }
    if (!entries.empty() || !session.random.OneIn(3)) {
      pEntries = reinterpret_cast<PORT_REGISTER_STACK_ENTRY*>(session.memory.Add(bytes));
    }
    std::size_t* piNumEntries =
        session.Output([&] { return RandomEntryCount(session, entries.size()); });
    return {{pEntries, piNumEntries}, [=] {
              return Values{std::string("only its address shows"), piNumEntries, *piNumEntries};
            }};
  };
}

}  // namespace vextrel_test::session
