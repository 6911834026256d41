// SPDX-License-Identifier: MIT
// Calls through the real modules, "call/CASE/MODE", "call/CASE/extended-MODE" and
// "call/CASE/timed-MODE", and the same lines written by log4cpp alone, "call/CASE/bare-MODE"; also
// "threads/..." and "buffers/...".
#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bare_line.h"
#include "benchmarks.h"
#include "calls.h"
#include "session.h"

namespace vextrel_bench {

struct CallSessions {
  Session direct{Mode::Direct};
  Session off{Mode::Off};
  Session basic{Mode::Basic};
  Session pattern{Mode::Pattern};
  Session fast{Mode::Fast};
  Session oneBuffer{Mode::Off, Edition::Plain, 1};
  Session manyBuffers{Mode::Off, Edition::Plain, 1024};
  Session extendedOff{Mode::Off, Edition::Extended};
  Session extendedBasic{Mode::Basic, Edition::Extended};
  Session extendedPattern{Mode::Pattern, Edition::Extended};
  Session extendedFast{Mode::Fast, Edition::Extended};
  Session timedBasic{Mode::Basic, Edition::Timed};
  Session timedPattern{Mode::Pattern, Edition::Timed};
  Session timedFast{Mode::Fast, Edition::Timed};
  BareLogger bareBasic{Mode::Basic};
  BareLogger barePattern{Mode::Pattern};
  BareLogger bareFast{Mode::Fast};
};

void DeleteCallSessions::operator()(CallSessions* sessions) const {
  delete sessions;
}

namespace {

// Keeps log files in the page cache, and repetitions short.
constexpr std::size_t kLogBytesBeforeEmptying = std::size_t{48} << 20;

void RunCalls(benchmark::State& state, const Session& session, const Case& call,
              std::size_t firstBuffer) {
  if (state.thread_index() == 0) {
    EmptyLogFile(session.LogFile());
  }
  Consumer consumer(session, firstBuffer + static_cast<std::size_t>(state.thread_index()));
  consumer.SetPortSize(call.portSize);
  for (auto _ : state) {
    (consumer.*call.run)();
  }
  if (state.thread_index() == 0) {
    EmptyLogFile(session.LogFile());
  }
}

void RunBareLines(benchmark::State& state, BareLogger& logger,
                  const std::vector<std::string>& messages) {
  if (state.thread_index() == 0) {
    EmptyLogFile(logger.LogFile());
  }
  for (auto _ : state) {
    logger.Write(messages);
  }
  if (state.thread_index() == 0) {
    EmptyLogFile(logger.LogFile());
  }
}

// Reads them from the log at the first use.
const std::vector<std::string>& MessagesOnce(const Case& call, Session& session) {
  static std::map<std::string_view, std::vector<std::string>> messages;
  const auto [entry, isNew] = messages.try_emplace(call.name);
  if (isNew) {
    entry->second = MessagesOf(call, session);
  }
  return entry->second;
}

// Whatever the layout.
bool TakesSeconds(const Case& call) {
  return call.portSize > kLogBytesBeforeEmptying / 4;
}

// Google Benchmark chooses the number of iterations by time, and would log gigabytes.
void LimitIterations(benchmark::internal::Benchmark& benchmark, const Case& call, bool logs) {
  benchmark.UseRealTime();
  const std::size_t lineBytes = 10 * call.portSize + 256;
  if (logs && lineBytes > kLogBytesBeforeEmptying / 128) {
    benchmark.Iterations(
        static_cast<benchmark::IterationCount>(kLogBytesBeforeEmptying / lineBytes + 1));
  }
  if (TakesSeconds(call)) {
    benchmark.Repetitions(1);
  }
}

void RegisterCall(const Case& call, CallSessions& sessions) {
  const std::string name = "call/" + std::string(call.name) + "/";
  const auto add = [&](std::string_view mode, bool logs, auto run) {
    LimitIterations(*benchmark::RegisterBenchmark((name + std::string(mode)).c_str(), run), call,
                    logs);
  };
  const auto addSession = [&](Mode mode, const Session& session, bool logs,
                              Edition edition = Edition::Plain) {
    add(SessionName(mode, edition), logs,
        [&call, &session](benchmark::State& state) { RunCalls(state, session, call, 0); });
  };
  const auto addBare = [&](std::string_view mode, BareLogger& logger) {
    add(mode, true, [&call, &logger, &session = sessions.basic](benchmark::State& state) {
      RunBareLines(state, logger, MessagesOnce(call, session));
    });
  };
  addSession(Mode::Direct, sessions.direct, false);
  addSession(Mode::Off, sessions.off, false);
  addSession(Mode::Basic, sessions.basic, true);
  addBare("bare-basic", sessions.bareBasic);
  if (TakesSeconds(call)) {
    return;
  }
  addSession(Mode::Pattern, sessions.pattern, true);
  addSession(Mode::Fast, sessions.fast, true);
  addBare("bare-pattern", sessions.barePattern);
  addBare("bare-fast", sessions.bareFast);
  if (call.portSize > kPortSizeOfSmallCalls) {
    return;  // rendering the data takes so long that the modules do not differ
  }
  addSession(Mode::Off, sessions.extendedOff, false, Edition::Extended);
  addSession(Mode::Basic, sessions.extendedBasic, true, Edition::Extended);
  addSession(Mode::Pattern, sessions.extendedPattern, true, Edition::Extended);
  addSession(Mode::Fast, sessions.extendedFast, true, Edition::Extended);
  addSession(Mode::Basic, sessions.timedBasic, true, Edition::Timed);
  addSession(Mode::Pattern, sessions.timedPattern, true, Edition::Timed);
  addSession(Mode::Fast, sessions.timedFast, true, Edition::Timed);
}

void RegisterThreads(const Case& call, CallSessions& sessions) {
  const std::string name = "threads/" + std::string(call.name) + "/";
  const auto add = [&](std::string_view mode, auto run) {
    benchmark::RegisterBenchmark((name + std::string(mode)).c_str(), run)
        ->Threads(1)
        ->Threads(2)
        ->Threads(4)
        ->UseRealTime();
  };
  for (const auto& [mode, session] :
       {std::pair(Mode::Direct, &sessions.direct), std::pair(Mode::Off, &sessions.off),
        std::pair(Mode::Basic, &sessions.basic), std::pair(Mode::Pattern, &sessions.pattern)}) {
    add(ModeName(mode), [&call, session = session](benchmark::State& state) {
      RunCalls(state, *session, call, 0);
    });
  }
  for (const auto& [mode, logger] : {std::pair("bare-basic", &sessions.bareBasic),
                                     std::pair("bare-pattern", &sessions.barePattern)}) {
    add(mode, [&messages = MessagesOnce(call, sessions.basic), logger = logger](
                  benchmark::State& state) { RunBareLines(state, *logger, messages); });
  }
}

void RegisterBuffers(const Case& call, const Session& session) {
  benchmark::RegisterBenchmark(("buffers/" + std::to_string(session.Buffers()) + "/off").c_str(),
                               [&call, &session](benchmark::State& state) {
                                 RunCalls(state, session, call, session.Buffers() - 1);
                               })
      ->UseRealTime();
}

}  // namespace

std::unique_ptr<CallSessions, DeleteCallSessions> RegisterCallBenchmarks() {
  std::unique_ptr<CallSessions, DeleteCallSessions> sessions(new CallSessions);
  for (const Case& call : Cases()) {
    RegisterCall(call, *sessions);
  }
  // The calls that threads of a consumer with several streams make concurrently.
  for (const Case& call : Cases().first(4)) {
    RegisterThreads(call, *sessions);
  }
  const Case& queue = Cases().front();
  for (const Session* session : {&sessions->oneBuffer, &sessions->off, &sessions->manyBuffers}) {
    RegisterBuffers(queue, *session);
  }
  return sessions;
}

}  // namespace vextrel_bench
