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
#include "platform/module_entry.h"
#include "support/proxy.h"

namespace vextrel_test {

class SessionFixture : public ProxyFiles {
 protected:
  SessionFixture() : target_(ScriptedTargetPath()) {
    UseTarget(ScriptedTargetPath());
    UseLogFile();
    PlayEverything(*target_.Find<GetTargetScriptFunction>("GetTargetScript")());
  }

  // What the loader does when the library comes and goes, with the library's static objects, among
  // which is log4cpp's list of appenders.
  static void Attach() { vextrel::DllMain(nullptr, vextrel::kReasonProcessAttach, nullptr); }
  static void Detach() {
    vextrel::DllMain(nullptr, vextrel::kReasonProcessDetach, nullptr);
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
  Module target_;
  std::streamoff taken_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ALLOCATION_SESSION_FIXTURE_H
