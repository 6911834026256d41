// SPDX-License-Identifier: MIT
// The exports linked into the test program, bound to a scripted target: for what no log file tells,
// such as the registry's records, or a line while its values still live.
#ifndef VEXTREL_TESTS_EXPORTS_LINKED_EXPORTS_H
#define VEXTREL_TESTS_EXPORTS_LINKED_EXPORTS_H

#include <functional>
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/LoggingEvent.hh>
#include <string>
#include <utility>
#include <vector>

#include "lifecycle/state_fixture.h"

namespace vextrel_test {

// Hands each line to the test from within the call that writes it.
class LineHook : public log4cpp::AppenderSkeleton {
 public:
  using Action = std::function<void(const log4cpp::LoggingEvent&)>;

  LineHook() : AppenderSkeleton("hook") {}
  void close() override {}
  [[nodiscard]] bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

  Action action = [](const log4cpp::LoggingEvent& /*event*/) {};

 protected:
  void _append(const log4cpp::LoggingEvent& event) override { action(event); }
};

class LinkedExports : public StateFixture {
 protected:
  LinkedExports() {
    UseTarget(ScriptedTargetPath());
    EXPECT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
    Category().addAppender(hook);
    static_cast<void>(TakeLines());
  }
  ~LinkedExports() override {
    Category().removeAppender(&hook);
    ::GCCloseLib();
  }

  // The lines written since the last call, as "PRIORITY message".
  [[nodiscard]] std::vector<std::string> TakeLines() {
    const std::vector<std::string> all = Lines();
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(std::exchange(taken_, all.size()));
    return {begin, all.end()};
  }

  HeldTarget target;
  LineHook hook;

 private:
  std::size_t taken_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_EXPORTS_LINKED_EXPORTS_H
