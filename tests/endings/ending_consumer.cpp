// SPDX-License-Identifier: MIT
// A consumer that ends the way its arguments say.
//   ending_consumer FOLDER ENDING COMPANY CALLS
//   ending_consumer FOLDER REPETITION - ROUNDS
#include "endings/ending_consumer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "support/process.h"
#include "support/proxy.h"
#include "support/resources.h"

namespace vextrel_test {
namespace {

struct Failure {
  std::string what;
};

void Require(bool condition, const std::string& what) {
  if (!condition) {
    throw Failure{what};
  }
}

// The proxy, loaded.
class Proxy {
 public:
  Proxy() : module_(ProxyPath()) { Require(module_.IsLoaded(), "the module is not loaded"); }

  const GenTLFunctions* operator->() const { return &functions_; }

  void Init() const { Require(functions_.GCInitLib() == GC_ERR_SUCCESS, "GCInitLib"); }
  void Close() const { Require(functions_.GCCloseLib() == GC_ERR_SUCCESS, "GCCloseLib"); }
  void Call(std::uintptr_t number) const {
    Require(functions_.EventFlush(Handle(kFirstNumber + number)) == GC_ERR_SUCCESS, "EventFlush");
  }

 private:
  const Module module_;
  const GenTLFunctions functions_ = FunctionsOf(module_);
};

std::atomic<bool> isBlocked = false;
std::array<std::atomic<std::size_t>, kBusyThreads> busyCalls;

template <typename Condition>
void WaitUntil(Condition condition) {
  while (!condition()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

// Starts a thread that is inside a call when the process ends.
void Block(const Proxy& proxy) {
  const Module target(ScriptedTargetPath());
  target.Find<GetTargetScriptFunction>("GetTargetScript")()->functions.EventGetData =
      [](EVENT_HANDLE, void*, size_t*, uint64_t) -> GC_ERROR {
    isBlocked = true;
    for (;;) {
      std::this_thread::sleep_for(std::chrono::hours(1));
    }
  };
  std::thread([&proxy] {
    size_t size = 0;
    proxy->EventGetData(nullptr, nullptr, &size, ~uint64_t{0});
  }).detach();
  WaitUntil([] { return isBlocked.load(); });
}

// Starts threads that keep calling while the process ends.
void KeepBusy(const Proxy& proxy) {
  for (std::size_t thread = 0; thread < kBusyThreads; ++thread) {
    std::thread([&proxy, thread] {
      for (;;) {
        proxy->EventKill(Handle(kBusyHandle + thread));
        ++busyCalls[thread];
      }
    }).detach();
  }
  WaitUntil([] {
    return std::ranges::all_of(busyCalls, [](std::size_t calls) { return calls >= kBusyCalls; });
  });
}

// Waits until the test lets all consumers go at the same time.
void Meet(const std::filesystem::path& folder) {
  WriteFile(folder / kReadyFile, "");
  WaitUntil([&] { return std::filesystem::exists(folder / kGoFile); });
}

// Makes one more call when the process ends. Registered before the module's own cleanup, it runs
// after it, if the system runs both in one go.
const Proxy* lateCaller = nullptr;
std::uintptr_t lateNumber = 0;
void CallLate() {
  if (lateCaller != nullptr) {
    lateCaller->Call(lateNumber);
  }
}

int End(const std::string& ending, const std::string& company, std::uintptr_t calls,
        const std::filesystem::path& folder) {
  if (ending == "call_late") {
    std::atexit(CallLate);
  }
  auto proxy = std::make_unique<Proxy>();
  proxy->Init();
  if (company == "blocked") {
    Block(*proxy);
  } else if (company == "busy") {
    KeepBusy(*proxy);
  } else if (company == "another") {
    Meet(folder);
  }
  for (std::uintptr_t number = 0; number < calls; ++number) {
    proxy->Call(number);
  }
  if (ending == "close") {
    proxy->Close();
  }
  if (ending == "close" || ending == "unload") {
    proxy.reset();
    Require(!IsModuleLoaded(ProxyPath()), "the module is still there");
    return kConsumerDone;
  }
  // Stays loaded, because its threads are still in it.
  static const Proxy* const left = proxy.release();
  if (ending == "call_late") {
    lateCaller = left;
    lateNumber = calls;
  }
  if (ending == "exit" || ending == "call_late") {
    std::exit(kConsumerDone);  // NOLINT(concurrency-mt-unsafe): with other threads is the point
  }
  if (ending == "exit_at_once") {
    ExitThisProcess(kConsumerDone);
  }
  if (ending == "kill") {
    KillThisProcess();
  }
  Require(ending == "return", ending);
  return kConsumerDone;
}

// Runs the rounds, and writes to a file what the process holds after a tenth of them and at the
// end.
int Repeat(std::uintptr_t rounds, const std::filesystem::path& folder,
           const std::function<void(std::uintptr_t)>& round) {
  Resources early;
  for (std::uintptr_t number = 0; number < rounds; ++number) {
    if (number == rounds / 10) {
      early = UsedResources();
    }
    round(number);
  }
  const Resources late = UsedResources();
  std::ofstream(folder / kResourcesFile) << early.residentBytes << ' ' << late.residentBytes << ' '
                                         << early.handles << ' ' << late.handles << '\n';
  return kConsumerDone;
}

void CloseAndUnload(std::uintptr_t number) {
  const Proxy proxy;
  proxy.Init();
  proxy.Call(number);
  proxy.Close();
}

void UnloadOnly(std::uintptr_t number) {
  const Proxy proxy;
  proxy.Init();
  proxy.Call(number);
}

int Run(const std::filesystem::path& folder, const std::string& ending, const std::string& company,
        std::uintptr_t count) {
  SetVariable(kProducerVariable, ScriptedTargetPath().string().c_str());
  SetVariable(kLogConfigVariable, (folder / kConfigFile).string().c_str());
  if (ending == "load_repeatedly") {
    return Repeat(count, folder, CloseAndUnload);
  }
  if (ending == "unload_repeatedly") {
    return Repeat(count, folder, UnloadOnly);
  }
  if (ending == "init_repeatedly") {
    const Proxy proxy;
    return Repeat(count, folder, [&](std::uintptr_t number) {
      proxy.Init();
      proxy.Call(number);
      proxy.Close();
    });
  }
  return End(ending, company, count, folder);
}

}  // namespace
}  // namespace vextrel_test

int main(int argc, char** argv) {
  if (argc != 5) {
    return vextrel_test::kConsumerFailed;
  }
  try {
    return vextrel_test::Run(argv[1], argv[2], argv[3], std::stoul(argv[4]));
  } catch (const vextrel_test::Failure& failure) {
    std::cerr << failure.what << '\n';
    return vextrel_test::kConsumerFailed;
  }
}
