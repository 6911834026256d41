// SPDX-License-Identifier: MIT
// A producer that does what a test tells it to.
#include "support/target_script.h"

namespace {

using vextrel_test::GenTLFunctions;
using vextrel_test::TargetScript;

TargetScript script;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

template <typename Function, typename... Arguments>
GC_ERROR Play(Function GenTLFunctions::*slot, Arguments... arguments) {
  script.calls.fetch_add(1);
  const auto function = script.functions.*slot;
  return function != nullptr ? function(arguments...) : script.result.load();
}

}  // namespace

vextrel_test::TargetScript* GetTargetScript() {
  return &script;
}

// One function for each export, made from the interface's header when the build is configured.
#include "scripted_exports.inc"
