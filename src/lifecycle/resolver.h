// SPDX-License-Identifier: MIT
// Looking a target's functions up by their names.
#ifndef VEXTREL_LIFECYCLE_RESOLVER_H
#define VEXTREL_LIFECYCLE_RESOLVER_H

#include <log4cpp/Category.hh>

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "lifecycle/edition.h"
#include "lifecycle/timed_call.h"
#include "platform/platform.h"

namespace vextrel {

// Fills slots from the exports of one module, and reports what the module doesn't export. In the
// extended module a call through a slot is timed. Not thread-safe; runs inside GCInitLib.
class Resolver {
 public:
  Resolver(platform::ModuleHandle module, log4cpp::Category& logger)
      : module_(module), logger_(logger) {}

  // `reportedName` is what the line calls the function if it's missing.
  template <FormatText name, typename Function>
  void operator()(Function*& slot, FunctionName<name> function,
                  const char* reportedName = name.characters) const {
    if (!Find(slot, function)) {
      ReportError(logger_, report::kNotExported, reportedName);
    }
  }

  // Returns false, without a line, if the module doesn't export the function.
  template <FormatText name, typename Function>
  [[nodiscard]] bool Find(Function*& slot, FunctionName<name> /*function*/) const {
    slot = reinterpret_cast<Function*>(platform::FindExport(module_, name.characters));
    if constexpr (kIsExtended) {
      if (slot != nullptr) {
        slot = TimedCall<name, Function>::Around(slot);
      }
    }
    return slot != nullptr;
  }

 private:
  platform::ModuleHandle module_;
  log4cpp::Category& logger_;
};

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_RESOLVER_H
