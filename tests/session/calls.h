// SPDX-License-Identifier: MIT
// Random calls of every function, with the lines that the log must get for them.
#ifndef VEXTREL_TESTS_SESSION_CALLS_H
#define VEXTREL_TESTS_SESSION_CALLS_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace vextrel_test::session {

struct RandomCall {
  std::string_view function;
  std::function<void(Session&)> make;
  unsigned weight;
};

// GCInitLib and GCCloseLib.
[[nodiscard]] std::vector<RandomCall> LifecycleCalls();
// The line for an export that a target lacks.
[[nodiscard]] std::string NotExported(const std::string& function);
// The same for those of GenTL 1.3 to 1.6, all in one.
extern const char* const kNewerNotExported;
// The others.
[[nodiscard]] std::vector<RandomCall> ForwardedCalls();
// Those of GenTL 1.3 to 1.6; none for a module without them.
[[nodiscard]] std::vector<RandomCall> NewerCalls();
[[nodiscard]] std::vector<RandomCall> CallsOfHandlesAndCounts();

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_CALLS_H
