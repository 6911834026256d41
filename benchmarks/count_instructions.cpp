// Makes calls under callgrind, which writes one file of counts for each case: so many instructions
// for `calls` calls. Run by scripts/bench --instructions.
#include <valgrind/callgrind.h>

#include <list>
#include <string>

#include "bare_line.h"
#include "calls.h"
#include "session.h"

namespace vextrel_benchmark {
namespace {

constexpr int kCalls = 100;

template <typename Call>
void Count(const std::string& name, Call call) {
  // Callgrind reads the texts when it writes the files.
  static std::list<std::string> names;
  names.push_back(name + " " + std::to_string(kCalls));
  call();  // what is done once only is not counted
  CALLGRIND_ZERO_STATS;
  for (int i = 0; i < kCalls; ++i) {
    call();
  }
  CALLGRIND_DUMP_STATS_AT(names.back().c_str());
}

void CountCase(const Case& call, Session& session, Mode mode) {
  Consumer consumer(session, 0);
  consumer.SetPortSize(call.portSize);
  Count(std::string(call.name) + "/" + std::string(ModeName(mode)),
        [&] { (consumer.*call.run)(); });
}

}  // namespace
}  // namespace vextrel_benchmark

int main() {
  using namespace vextrel_benchmark;
  Session off(Mode::Off);
  Session basic(Mode::Basic);
  BareLogger bare(Mode::Basic);
  for (const Case& call : Cases()) {
    if (call.portSize > 4096) {
      continue;  // the same code as for 4 KiB
    }
    CountCase(call, off, Mode::Off);
    CountCase(call, basic, Mode::Basic);
    const auto messages = MessagesOf(call, basic);
    Count(std::string(call.name) + "/bare-basic", [&] { bare.Write(messages); });
  }
}
