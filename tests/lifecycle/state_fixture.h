// SPDX-License-Identifier: MIT
// The library linked into the test program itself, so that its state can be looked at and set.
#ifndef VEXTREL_TESTS_LIFECYCLE_STATE_FIXTURE_H
#define VEXTREL_TESTS_LIFECYCLE_STATE_FIXTURE_H

#include <log4cpp/Category.hh>
#include <log4cpp/OstreamAppender.hh>
#include <log4cpp/PatternLayout.hh>
#include <sstream>
#include <string>
#include <vector>

#include "calllog/logger_setup.h"
#include "lifecycle/library_fixture.h"
#include "lifecycle/proxy_state.h"

namespace vextrel_test {

// Every test begins and ends with an untouched state. The lines of the category "Vextrel" are kept
// as "PRIORITY message", whatever log4cpp is configured to do with them otherwise.
class StateFixture : public LibraryFixture {
 protected:
  StateFixture() : appender_("lines", &stream_) {
    auto* layout = new log4cpp::PatternLayout;
    layout->setConversionPattern("%p %m%n");
    appender_.setLayout(layout);
    Category().setPriority(log4cpp::Priority::DEBUG);
    Category().setAdditivity(false);
    Category().addAppender(appender_);
    Reset();
  }
  ~StateFixture() override {
    vextrel::ShutdownLogging();
    Category().removeAllAppenders();
    vextrel::DeleteTables();
    Reset();
  }

  [[nodiscard]] static log4cpp::Category& Category() { return vextrel::GetLogger("Vextrel"); }

  [[nodiscard]] std::vector<std::string> Lines() const { return SplitLines(stream_.str()); }

 private:
  static void Reset() { vextrel::proxyState = {}; }

  std::ostringstream stream_;
  log4cpp::OstreamAppender appender_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LIFECYCLE_STATE_FIXTURE_H
