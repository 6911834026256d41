// Data of a port or an event, and its size.
#ifndef VEXTREL_TESTS_SESSION_PORT_DATA_H
#define VEXTREL_TESTS_SESSION_PORT_DATA_H

#include <cstddef>

#include "session/session.h"

namespace vextrel_test::session {

struct PortData {
  void* pBuffer;
  std::size_t* piSize;

  [[nodiscard]] Value Dump() const;
};

enum class DataFrom { Target, Consumer };

// Up to 70 bytes mostly, and any size for a null buffer. `zerosBehind` as in Session::Info.
[[nodiscard]] PortData RandomPortData(Session& session, DataFrom from, std::size_t zerosBehind);
// Eight bytes mostly: the handle of a buffer.
[[nodiscard]] PortData RandomEventData(Session& session);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_PORT_DATA_H
