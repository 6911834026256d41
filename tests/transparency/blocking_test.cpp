// SPDX-License-Identifier: MIT
// While one call waits in the target, all others go through: the proxy holds no lock meanwhile.
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/proxy.h"
#include "transparency/consumer_call.h"

namespace vextrel_test {
namespace {

constexpr std::chrono::seconds kLimit(20);

// Where the target's calls arrive. The first waits for the second.
class Gate {
 public:
  void Arrive() {
    std::unique_lock lock(mutex_);
    if (waiting_) {
      open_ = true;
    }
    waiting_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
  }
  void Open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }
  // Returns false if nobody arrives in time.
  [[nodiscard]] bool AwaitArrival() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kLimit, [this] { return waiting_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool waiting_ = false;
  bool open_ = false;
};

// What another thread calls while `blocked` waits. Not GCInitLib and GCCloseLib, which a consumer
// must not call concurrently with anything. While one of these two is itself the one that waits,
// the others are called all the same, to reveal a lock that is held; they return before it goes on.
// For the same reason opening and closing don't race: the waiting call updates the registry later.
std::vector<const UniformFunction*> OthersThan(const std::string& blocked) {
  std::vector<const UniformFunction*> others;
  for (const UniformFunction& function : UniformFunctions()) {
    if (function.name != blocked && function.name != "GCInitLib" && function.name != "GCCloseLib") {
      others.push_back(&function);
    }
  }
  // Closing comes last, so that the others find their records.
  std::stable_partition(others.begin(), others.end(), [](const UniformFunction* function) {
    return !function->name.ends_with("Close");
  });
  return others;
}

GC_ERROR MakeCall(const GenTLFunctions& proxy, const UniformFunction& function) {
  const ConsumerCall call(function, Shape::Unanswered);
  return function.call(proxy, call.Arguments());
}

// Returns the indices of the lines of successful calls of the function.
std::vector<std::size_t> PlacesOf(const std::vector<std::string>& lines, const std::string& name) {
  const std::string begin = "INFO GC_ERR_SUCCESS=" + name + "(";
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with(begin)) {
      places.push_back(i);
    }
  }
  return places;
}

class Blocking : public BoundProxy, public ::testing::WithParamInterface<std::string> {
 protected:
  Blocking() {
    onTargetCall = [this](const Patterns& /*arguments*/) {
      gate_.Arrive();
      return GC_ERR_SUCCESS;
    };
  }
  ~Blocking() override {
    ReleaseAndJoin();
    // The base class calls GCCloseLib, which must not wait any more.
    script.functions = {};
    onTargetCall = nullptr;
  }

  void BlockIn(const UniformFunction& function) {
    function.play(script.functions);
    blocked_ = std::thread([this, &function] { result_ = MakeCall(proxy, function); });
    ASSERT_TRUE(gate_.AwaitArrival()) << "the call did not reach the target";
  }
  void ReleaseAndJoin() {
    gate_.Open();
    if (blocked_.joinable()) {
      blocked_.join();
    }
  }

  // Calls the functions one after the other on another thread. Returns true iff all return in time.
  [[nodiscard]] bool CallOnAnotherThread(const std::vector<const UniformFunction*>& functions) {
    std::packaged_task<void()> task([&] {
      for (const UniformFunction* function : functions) {
        EXPECT_EQ(MakeCall(proxy, *function), GC_ERR_SUCCESS) << function->name;
      }
    });
    auto done = task.get_future();
    std::thread caller(std::move(task));
    const bool inTime = done.wait_for(kLimit) == std::future_status::ready;
    if (!inTime) {
      gate_.Open();
    }
    caller.join();
    return inTime;
  }

  [[nodiscard]] GC_ERROR Result() const { return result_; }

 private:
  Gate gate_;
  std::thread blocked_;
  GC_ERROR result_ = GC_ERR_ERROR;
};

TEST_P(Blocking, AllOtherCallsGoThroughAndAreLogged) {
  const std::string& name = GetParam();
  if (name == "GCInitLib") {
    proxy.GCCloseLib();
  }
  const auto others = OthersThan(name);
  // All but itself, GCInitLib and GCCloseLib.
  ASSERT_EQ(others.size(), kFunctionCount - (name == "GCInitLib" || name == "GCCloseLib" ? 2 : 3));
  static_cast<void>(TakeLines());
  BlockIn(FindFunction(name));

  ASSERT_TRUE(CallOnAnotherThread(others)) << "a call is held up by the one that waits";
  const std::vector<std::string> lines = TakeLines();
  for (const UniformFunction* other : others) {
    EXPECT_EQ(PlacesOf(lines, other->name).size(), 1U) << other->name;
  }
  EXPECT_EQ(PlacesOf(lines, name).size(), 0U);

  // GenTL has these calls for the purpose; any other would do.
  const UniformFunction& releasing = FindFunction(name == "EventKill" ? "EventFlush" : "EventKill");
  releasing.play(script.functions);
  EXPECT_EQ(MakeCall(proxy, releasing), GC_ERR_SUCCESS);
  ReleaseAndJoin();
  EXPECT_EQ(Result(), GC_ERR_SUCCESS);
  const std::vector<std::string> later = TakeLines();
  EXPECT_EQ(PlacesOf(later, name).size(), 1U);
  EXPECT_EQ(PlacesOf(later, releasing.name).size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(EachFunction, Blocking, ::testing::ValuesIn(FunctionNames()),
                         [](const auto& tested) { return tested.param; });

}  // namespace
}  // namespace vextrel_test
