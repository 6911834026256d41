#include "session/port_data.h"

#include <cstdint>
#include <string>

#include "session/reference_rendering.h"

namespace vextrel_test::session {

Value PortData::Dump() const {
  return Value::Text(RenderDump(pBuffer, *piSize));
}

PortData RandomPortData(Session& session, DataFrom from, std::size_t zerosBehind) {
  if (session.random.OneIn(8)) {
    return {nullptr, session.SizeOutput()};
  }
  const std::size_t capacity =
      session.random.OneIn(50) ? 600 + session.random.Below(100) : session.random.Below(71);
  const std::string before = session.random.Bytes(capacity);
  const std::string after = session.random.Bytes(capacity);
  unsigned char* data =
      session.memory.Add(before + std::string(zerosBehind, '\0'), session.random.Below(4));
  if (from == DataFrom::Target && !session.random.OneIn(5)) {
    session.memory.WriteLater(data, after);
  }
  return {data, session.Output([&]() -> std::size_t {
            return session.random.OneIn(3) ? session.random.Below(capacity + 1) : capacity;
          })};
}

PortData RandomEventData(Session& session) {
  if (session.random.OneIn(3)) {
    return RandomPortData(session, DataFrom::Target, 0);
  }
  void** delivered = session.HandleOutput(HandleKind::Buffer);
  return {delivered, session.Output([&]() -> std::size_t {
            return session.random.OneIn(5) ? session.random.Below(9) : 8;
          })};
}

}  // namespace vextrel_test::session
