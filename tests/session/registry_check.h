// What the calls with a registry step share.
#ifndef VEXTREL_TESTS_SESSION_REGISTRY_CHECK_H
#define VEXTREL_TESTS_SESSION_REGISTRY_CHECK_H

#include "session/session.h"

namespace vextrel_test::session {

// Expects the error of a call that needs an open transport layer if there is none.
[[nodiscard]] inline bool HasRegistry(Session& session) {
  if (!session.registry.IsOpen()) {
    session.log.Error(kNoTransportLayer);
  }
  return session.registry.IsOpen();
}

// Null as often as not.
[[nodiscard]] inline bool8_t* RandomChangeFlag(Session& session) {
  if (session.random.OneIn(2)) {
    return nullptr;
  }
  return session.Output([&session] {
    return static_cast<bool8_t>(session.random.OneIn(3) ? session.random.Below(256)
                                                        : session.random.Below(2));
  });
}

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_REGISTRY_CHECK_H
