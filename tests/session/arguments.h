// SPDX-License-Identifier: MIT
// Random arguments of calls, each with the values that a line shows for it.
#ifndef VEXTREL_TESTS_SESSION_ARGUMENTS_H
#define VEXTREL_TESTS_SESSION_ARGUMENTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <tuple>
#include <vector>

#include "session/session.h"

namespace vextrel_test::session {

using model::NameTable;
using Values = std::vector<Value>;

// Any type, mostly one that there is.
[[nodiscard]] INFO_DATATYPE RandomType(Session& session);

// One argument of a call, or several that belong together.
template <typename... Parameters>
struct Argument {
  std::tuple<Parameters...> given;
  std::function<Values()> show;  // to be called when the call is over: it reads the outputs
  bool isMissing = false;        // an optional output that is null
};

template <typename... Parameters>
using Generator = std::function<Argument<Parameters...>(Session&)>;

// --- Inputs -------------------------------------------------------------------------------------

[[nodiscard]] Generator<void*> OfHandle(HandleKind kind);
// Of any kind: for what is not a handle to the proxy.
[[nodiscard]] Generator<void*> AnyAddress();
// Shown as its address and its text, or as the text alone.
[[nodiscard]] Generator<const char*> Text();
[[nodiscard]] Generator<const char*> TextWithoutAddress();
// A value of the table mostly, shown by name.
[[nodiscard]] Generator<std::int32_t> Named(const NameTable& names);

template <typename T>
[[nodiscard]] Generator<T> Number() {
  return [](Session& session) -> Argument<T> {
    const T number = static_cast<T>(session.random.Number());
    return {{number}, [=] { return Values{number}; }};
  };
}
// In the call, not in the line.
[[nodiscard]] Generator<std::size_t> UnshownSize();

// --- Outputs ------------------------------------------------------------------------------------

[[nodiscard]] Generator<void**> HandleOutput(HandleKind kind);
[[nodiscard]] Generator<void**> HandleOutputOrNull(HandleKind kind);
[[nodiscard]] Generator<std::uint32_t*> CountOutput();
[[nodiscard]] Generator<bool8_t*> ChangeFlagOrNull();
// A pointer slot, null now and then.
[[nodiscard]] Generator<void**> PointerSlot();
// An ID or URL with its size.
[[nodiscard]] Generator<char*, std::size_t*> TextOutput();
// Everything of GCGetLastError.
[[nodiscard]] Generator<GC_ERROR*, char*, std::size_t*> LastError();

// What a line shows of an info query.
enum class InfoShows { Everything, NoBufferAddress };
// The outputs of an info query. `zerosAfter` puts zero bytes after type and size, for a line that
// shows their memory as text.
[[nodiscard]] Generator<INFO_DATATYPE*, void*, std::size_t*> Info(
    InfoShows shows = InfoShows::Everything, std::size_t zerosAfter = 0);
// The same, but now and then without a type.
[[nodiscard]] Generator<INFO_DATATYPE*, void*, std::size_t*> InfoWithOptionalType();

// --- Data ---------------------------------------------------------------------------------------

// Up to 70 bytes mostly, and any size for a null buffer.
[[nodiscard]] Generator<void*, std::size_t*> DataRead();
[[nodiscard]] Generator<const void*, std::size_t*> DataWritten();
// Eight bytes mostly: the handle of a buffer.
[[nodiscard]] Generator<void*, std::size_t*> EventData();
// Up to twenty register accesses. The line shows where their text lies, and no more of it.
[[nodiscard]] Generator<PORT_REGISTER_STACK_ENTRY*, std::size_t*> Stack();

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_ARGUMENTS_H
