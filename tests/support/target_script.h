// SPDX-License-Identifier: MIT
// What a scripted target plays, and what it saw. A test reaches it by loading the target's file
// again, which yields the module that the proxy loaded.
#ifndef VEXTREL_TESTS_SUPPORT_TARGET_SCRIPT_H
#define VEXTREL_TESTS_SUPPORT_TARGET_SCRIPT_H

#include <atomic>

#include "gentl/gentl.h"
#include "support/gentl_functions.h"

namespace vextrel_test {

struct TargetScript {
  // What a call does; without one it returns `result` and touches nothing.
  GenTLFunctions functions;
  std::atomic<GC_ERROR> result = GC_ERR_SUCCESS;
  std::atomic<int> calls = 0;
};

using GetTargetScriptFunction = TargetScript*();

}  // namespace vextrel_test

#if defined(__GNUC__) && !defined(_WIN32)
#pragma GCC visibility push(default)
#endif
extern "C" vextrel_test::TargetScript* GetTargetScript();
#if defined(__GNUC__) && !defined(_WIN32)
#pragma GCC visibility pop
#endif

#endif  // VEXTREL_TESTS_SUPPORT_TARGET_SCRIPT_H
