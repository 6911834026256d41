// SPDX-License-Identifier: MIT
// The library linked into the test program, with a log file, between a target that answers
// everything and the test's own calls.
#ifndef VEXTREL_TESTS_ALLOCATION_SESSION_FIXTURE_H
#define VEXTREL_TESTS_ALLOCATION_SESSION_FIXTURE_H

#include <algorithm>
#include <fstream>
#include <iterator>
#include <log4cpp/Appender.hh>
#include <string>
#include <vector>

#include "allocation/played_target.h"
#include "lifecycle/dll_main.h"
#include "support/proxy.h"

namespace vextrel_test {

class SessionFixture : public ProxyFiles {
 protected:
  SessionFixture() {
    UseTarget(ScriptedTargetPath());
    UseLogFile();
    PlayEverything(target_.Script());
  }

  // Does what the loader does to the library, including its static objects, such as log4cpp's list
  // of appenders.
  static void Attach() { vextrel::DllMain(nullptr, vextrel::kModuleLoaded, nullptr); }
  static void Detach() {
    vextrel::DllMain(nullptr, vextrel::kModuleUnloaded, nullptr);
    delete log4cpp::Appender::getAppender("file");
  }

  // "RESULT=Function" of each call-log line since the last call, without GCInitLib's.
  [[nodiscard]] std::vector<std::string> TakeCallLines() {
    std::ifstream file(LogFile(), std::ios::binary);
    file.seekg(taken_);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    taken_ += static_cast<std::streamoff>(text.size());
    std::vector<std::string> calls;
    for (const std::string& line : SplitLines(text)) {
      const std::size_t equals = line.find('=');
      const std::size_t bracket = line.find('(');
      if (line.starts_with("INFO ") && equals < bracket && bracket != std::string::npos) {
        calls.push_back(line.substr(5, bracket - 5));
      }
    }
    std::erase(calls, "GC_ERR_SUCCESS=GCInitLib");
    return calls;
  }

  [[nodiscard]] TargetScript& Target() const { return target_.Script(); }

  struct Difference {
    std::size_t missing;  // calls without a line
    std::size_t foreign;  // lines of no call, or not in its place
  };
  [[nodiscard]] static Difference Compare(const std::vector<std::string>& written,
                                          const std::vector<std::string>& made) {
    std::size_t matched = 0;
    auto next = made.begin();
    for (const std::string& each : written) {
      const auto found = std::find(next, made.end(), each);
      if (found != made.end()) {
        ++matched;
        next = found + 1;
      }
    }
    return {made.size() - matched, written.size() - matched};
  }

 private:
  HeldTarget target_;
  std::streamoff taken_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ALLOCATION_SESSION_FIXTURE_H
