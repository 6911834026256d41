// A proxy whose log configuration is not what it should be, and the question that counts then: do
// the consumer's calls still come through?
#ifndef VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H
#define VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H

#include <string>

#include "lifecycle/logging_fixture.h"

namespace vextrel_test {

class HostileConfigFixture : public LoggingFixture {
 protected:
  // Behind a GCInitLib: every function reaches the target, and its results come back.
  void ExpectCallsComeThrough() {
    const HeldTarget target;
    target.script().result = GC_ERR_TIMEOUT;
    ForEachFunction([&](const char* name, auto slot) {
      if (std::string(name) != "GCInitLib" && std::string(name) != "GCCloseLib") {
        EXPECT_EQ(CallWithZeros(proxy.*slot), -1011) << name;
      }
    });
    EXPECT_EQ(target.script().calls, 49);
    target.script().result = kResultOfClosing;
    EXPECT_EQ(proxy.GCCloseLib(), kResultOfClosing);
  }

 private:
  static constexpr GC_ERROR kResultOfClosing = -10042;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_HOSTILE_CONFIG_FIXTURE_H
