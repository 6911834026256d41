// SPDX-License-Identifier: MIT
// Makes calls under callgrind, which writes one file of instruction counts for each case. Run by
// scripts/bench --instructions.
#include <valgrind/callgrind.h>

#include <list>
#include <string>

#include "bare_line.h"
#include "calls.h"
#include "session.h"

namespace vextrel_bench {
namespace {

constexpr int kCalls = 100;

template <typename Call>
void Count(const std::string& name, Call call) {
  // Callgrind reads the names when it writes the files.
  static std::list<std::string> names;
  names.push_back(name + " " + std::to_string(kCalls));
  call();  // leaves out what only the first call does
  CALLGRIND_ZERO_STATS;
  for (int i = 0; i < kCalls; ++i) {
    call();
  }
  CALLGRIND_DUMP_STATS_AT(names.back().c_str());
}

void CountCase(const std::string& name, const Case& call, const Session& session, Mode mode) {
  Consumer consumer(session, 0);
  consumer.SetPortSize(call.portSize);
  Count(name + "/" + std::string(ModeName(mode)), [&] { (consumer.*call.run)(); });
}

// What one module needs for the case, and log4cpp for the same lines.
void CountModule(const std::string& name, const Case& call, const Session& off, Session& basic,
                 BareLogger& bare) {
  CountCase(name, call, off, Mode::Off);
  CountCase(name, call, basic, Mode::Basic);
  const auto messages = MessagesOf(call, basic);
  Count(name + "/bare-basic", [&] { bare.Write(messages); });
}

}  // namespace
}  // namespace vextrel_bench

int main() {
  using namespace vextrel_bench;
  Session off(Mode::Off);
  Session basic(Mode::Basic);
  Session extendedOff(Mode::Off, Edition::Extended);
  Session extendedBasic(Mode::Basic, Edition::Extended);
  BareLogger bare(Mode::Basic);
  for (const Case& call : Cases()) {
    if (call.portSize > 4096) {
      continue;  // the same code as for 4 KiB
    }
    const std::string name(call.name);
    CountModule(name, call, off, basic, bare);
    if (call.portSize == kPortSizeOfSmallCalls) {
      CountModule("extended/" + name, call, extendedOff, extendedBasic, bare);
    }
  }
}
