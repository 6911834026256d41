// SPDX-License-Identifier: MIT
// With a log configuration that is not what it should be, the consumer's calls still get through.
#ifndef VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H
#define VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H

#include <string>

#include "lifecycle/logging_fixture.h"

namespace vextrel_test {

class HostileConfigFixture : public LoggingFixture {
 protected:
  // Every function reaches the target, and its result the consumer. REQUIRES: GCInitLib was called.
  void ExpectCallsComeThrough() {
    const HeldTarget target;
    target.Script().result = GC_ERR_TIMEOUT;
    ForEachFunction([&](const std::string& name, auto slot) {
      if (name != "GCInitLib" && name != "GCCloseLib") {
        target.Script().calls = 0;
        EXPECT_EQ(CallWithZeros(proxy.*slot), -1011) << name;
        EXPECT_EQ(target.Script().calls, 1) << name;
      }
    });
    target.Script().result = kResultOfClosing;
    EXPECT_EQ(proxy.GCCloseLib(), kResultOfClosing);
  }

 private:
  static constexpr GC_ERROR kResultOfClosing = -10042;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H
